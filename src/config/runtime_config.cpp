#include "config/runtime_config.h"

#include "foundation/log.h"
#include "foundation/text.h"
#include "platform/files.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr const char* kNativeSchema = "native-runtime/v1";
constexpr size_t kMaxEntries = 16384; // each takes some kilobytes, and a shader to build
constexpr const char* kDefaultFallbackImage = "assets/images/Logo.png";

void readGlobals(RuntimeConfig& config, const JsonValue& globals) {
    config.width = getInt(find(globals, "width"), config.width);
    config.height = getInt(find(globals, "height"), config.height);
    config.fullscreen = getBool(find(globals, "fullscreen"), config.fullscreen);
    config.loop = getBool(find(globals, "loop"), config.loop);
}

void readAssets(RuntimeConfig& config, const JsonValue& json) {
    auto assets = std::make_shared<AssetMap>();
    for (const auto& [alias, path] : json.members) {
        if (path.kind == JsonKind::string) (*assets)[alias] = path.text;
    }
    config.assets = std::move(assets);
}

void readAudio(RuntimeConfig& config, const JsonValue& audio) {
    const std::string path = getString(find(audio, "path"), "");
    if (!path.empty()) config.audioPath = resolveAssetPath(path, *config.assets, config.baseDir);
    config.volume = getBounded(find(audio, "volume"), config.volume, 0.0f, 1.0f);
    config.startOffset = getBounded(find(audio, "startOffset"), config.startOffset, 0.0f, kNoBound);
}

void readFallbackImage(RuntimeConfig& config, const JsonValue& root) {
    std::string path = getString(find(root, "fallbackImage"), "");
    if (path.empty()) path = getString(find(root, "imagePath"), "");
    if (path.empty()) path = kDefaultFallbackImage;
    config.fallbackImagePath = resolveAssetPath(path, *config.assets, config.baseDir);
}

// `room` is what the show may still hold, in all its lists.
std::vector<TimelineEntry> readEntries(const RuntimeConfig& config, const JsonValue& list, size_t& room) {
    std::vector<TimelineEntry> entries;
    for (const JsonValue& item : list.items) {
        if (room == 0) {
            logLine("[WARN] More than %d entries; the rest is left out\n", static_cast<int>(kMaxEntries));
            break;
        }
        TimelineEntry entry = parseTimelineEntry(item, config, config.baseDir);
        if (!entry.enabled) continue;
        entries.push_back(std::move(entry));
        --room;
    }
    return entries;
}

void readScenes(RuntimeConfig& config, const JsonValue& scenes, size_t& room) {
    for (const JsonValue& item : scenes.items) {
        SceneSpec scene;
        scene.id = printableName(getString(find(item, "id"), ""));
        scene.enabled = getBool(find(item, "enabled"), true);
        const JsonValue& transition = find(item, "transition");
        scene.transitionType = getString(find(transition, "type"), "cut");
        scene.transitionDuration = getFinite(find(transition, "duration"), 0.0f);
        scene.entries = readEntries(config, find(item, "entries"), room);
        if (scene.enabled && !scene.entries.empty()) config.scenes.push_back(std::move(scene));
    }
}

void readRootEntries(RuntimeConfig& config, const JsonValue& list, size_t& room) {
    if (list.kind != JsonKind::array) return;
    config.nativeRuntime = true;
    config.entries = readEntries(config, list, room);
    std::stable_sort(config.entries.begin(), config.entries.end(), [](const TimelineEntry& a, const TimelineEntry& b) {
        if (a.start != b.start) return a.start < b.start;
        if (a.overlay != b.overlay) return b.overlay;
        return a.layer < b.layer;
    });
}

void readTransitions(RuntimeConfig& config, const JsonValue& transitions) {
    for (const auto& [name, value] : transitions.members) {
        TransitionSpec spec;
        spec.type = getString(find(value, "type"), "fade");
        spec.duration = getFinite(find(value, "duration"), 0.0f);
        spec.params = find(value, "params");
        config.transitions[keptName(name)] = std::move(spec); // as the scenes' names are kept
    }
    if (!config.transitions.empty()) {
        logLine("[CONFIG] %d transitions\n", static_cast<int>(config.transitions.size()));
    }
}

// Editors on Windows like to put a byte order mark in front of UTF-8.
const char* skipByteOrderMark(const std::string& bytes) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return bytes.c_str() + (std::string_view(bytes).substr(0, mark.size()) == mark ? mark.size() : 0);
}

} // namespace

RuntimeConfig loadRuntimeConfig(const std::string& path, const ShaderLookup& shaders) {
    RuntimeConfig config;
    config.shaders = shaders;

    const std::string file = fullFilePath(path);
    std::string bytes;
    if (!readFile(file, bytes) || bytes.empty()) {
        logLine("[ERROR] Cannot read %s\n", (file.empty() ? path : file).c_str());
        config.baseDir.clear();
        return config;
    }
    const JsonValue root = parseJsonFile(skipByteOrderMark(bytes), file);

    config.baseDir = directoryOfFile(file);
    // Of the root directory nothing is left before its slash.
    logLine("[CONFIG] baseDir = %s\n", config.baseDir == "/" ? "." : config.baseDir.c_str());
    if (shaders.loadPack) shaders.loadPack(config.baseDir);

    const std::string schema = getString(find(root, "schemaVersion"), "");
    if (schema == kNativeSchema) {
        config.nativeRuntime = true;
        logLine("[CONFIG] native runtime schema: %s\n", schema.c_str());
    }
    readGlobals(config, find(root, "globals"));
    readAssets(config, find(root, "assets"));
    readAudio(config, find(root, "audio"));
    readFallbackImage(config, root);
    size_t room = kMaxEntries;
    readScenes(config, find(root, "scenes"), room);
    readRootEntries(config, find(root, "entries"), room);
    readTransitions(config, find(root, "transitions"));

    logLine("[CONFIG] %d scenes, %d timeline entries, %dx%d %s%s\n", static_cast<int>(config.scenes.size()),
            static_cast<int>(config.entries.size()), config.width, config.height,
            config.fullscreen ? "fullscreen" : "windowed", config.loop ? " loop" : "");
    return config;
}
