#include "config/timeline_entry.h"

#include "config/runtime_config.h"
#include "foundation/text.h"

#include <algorithm>
#include <cmath>

namespace {

std::string readName(const JsonValue& value) {
    return keptName(getString(value, ""));
}

void readParams(TimelineEntry& entry, const JsonValue& params) {
    entry.params = params;
    if (params.kind != JsonKind::object) return;
    entry.alpha = getFinite(find(params, "alpha"), 1.0f);
    entry.timeScale = getFinite(find(params, "timeScale"), 1.0f);
    entry.blendMode = getString(find(params, "blendMode"), "alpha");
    bindChannelFromKeys(
        entry, 0,
        {"image", "imagePath", "texture", "channel0", "iChannel0", "uTex", "uTexture", "uBackground", "uTexA"});
    bindChannelFromKeys(entry, 1, {"channel1", "iChannel1", "uTexB"});
    bindChannelFromKeys(entry, 2, {"channel2", "iChannel2"});
    bindChannelFromKeys(entry, 3, {"channel3", "iChannel3"});
    entry.imagePath = entry.channels[0];
}

void resolveShaders(TimelineEntry& entry) {
    if (entry.shaders.resolve) entry.shaders.resolve(entry);
}

} // namespace

std::string keptName(const std::string& name) {
    return printableName(name.substr(0, kMaxNameBytes));
}

TimelineEntry parseTimelineEntry(const JsonValue& json, const RuntimeConfig& config, const std::string& baseDir) {
    TimelineEntry entry;
    entry.baseDir = baseDir;
    entry.fallbackImage = config.fallbackImagePath;
    entry.assets = config.assets;
    entry.shaders = config.shaders;

    entry.id = readName(find(json, "id"));
    entry.type = readName(find(json, "type"));
    entry.scene = readName(find(json, "scene"));
    entry.start = getFinite(find(json, "start"), entry.start);
    entry.delay = getFinite(find(json, "delay"), entry.delay);
    entry.duration = getFinite(find(json, "duration"), entry.duration);
    entry.overlay = getBool(find(json, "overlay"), entry.overlay);
    entry.layer = getInt(find(json, "layer"), entry.layer);
    entry.enabled = getBool(find(json, "enabled"), entry.enabled);

    readParams(entry, find(json, "params"));
    resolveShaders(entry);
    return entry;
}

TimelineEntry deriveChildEntry(const JsonValue& json, const TimelineEntry& parent, const std::string& suffix) {
    TimelineEntry entry;
    entry.baseDir = parent.baseDir;
    entry.fallbackImage = parent.fallbackImage;
    entry.assets = parent.assets;
    entry.shaders = parent.shaders;

    entry.id = parent.id + "_" + suffix;
    entry.type = readName(find(json, "type"));
    entry.scene = parent.scene;
    entry.start = parent.start;
    entry.duration = parent.duration;
    entry.layer = parent.layer;
    entry.depth = parent.depth + 1;
    entry.outerTimeScale = parent.outerTimeScale * parent.timeScale;

    readParams(entry, find(json, "params"));
    resolveShaders(entry);
    return entry;
}

float clockLength(const TimelineEntry& entry) {
    const float length = entry.duration * entry.timeScale * entry.outerTimeScale;
    return std::isfinite(length) ? std::max(length, 0.0f) : 0.0f;
}

void bindChannelFromKeys(TimelineEntry& entry, int index, std::initializer_list<const char*> keys) {
    if (index < 0 || index >= kChannelCount || !entry.channels[index].empty()) return;
    for (const char* key : keys) {
        const JsonValue& value = find(entry.params, key);
        if (value.kind != JsonKind::string) continue;
        entry.channels[index] = resolveAssetPath(value.text, *entry.assets, entry.baseDir);
        return;
    }
}
