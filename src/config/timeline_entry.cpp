#include "config/timeline_entry.h"

#include "config/entry_kinds.h"
#include "foundation/json.h"

#include <algorithm>
#include <cmath>

namespace {

using Entry = TimelineEntry;

constexpr KeyOf<Entry> kEntryKeys[] = {
    key<&Entry::id>("id").as(TextForm::name),
    key<&Entry::type>("type").as(TextForm::name),
    key<&Entry::scene>("scene").as(TextForm::name),
    key<&Entry::start>("start"),
    key<&Entry::delay>("delay"),
    key<&Entry::duration>("duration"),
    key<&Entry::overlay>("overlay"),
    key<&Entry::layer>("layer"),
    key<&Entry::enabled>("enabled"),
};

// An effect within another one is given its name and its place in time by that one.
constexpr KeyOf<Entry> kChildKeys[] = {key<&Entry::type>("type").as(TextForm::name)};

constexpr const char* kChannel0[] = {"imagePath", "texture",  "channel0",    "iChannel0",
                                     "uTex",      "uTexture", "uBackground", "uTexA"};
constexpr const char* kChannel1[] = {"iChannel1", "uTexB"};
constexpr const char* kChannel2[] = {"iChannel2"};
constexpr const char* kChannel3[] = {"iChannel3"};

// Keys of every effect's params.
constexpr KeyOf<Entry> kEffectKeys[] = {
    key<&Entry::alpha>("alpha"),
    key<&Entry::timeScale>("timeScale"),
    key<&Entry::blendMode>("blendMode", kBlendModes, BlendMode::alpha),
    element<&Entry::channels, 0>("image").as(TextForm::assetPath).also(kChannel0),
    element<&Entry::channels, 1>("channel1").as(TextForm::assetPath).also(kChannel1),
    element<&Entry::channels, 2>("channel2").as(TextForm::assetPath).also(kChannel2),
    element<&Entry::channels, 3>("channel3").as(TextForm::assetPath).also(kChannel3),
};

EffectKind kindOf(const Entry& entry) {
    // An entry without a type that has an image stands for that image.
    const bool isImage = entry.type.empty() && !entry.channels[0].empty();
    return isImage ? EffectKind::image : valueOfWord(entry.type, kEffectTypes, EffectKind::shader);
}

void readParams(Entry& entry, const JsonValue& params, const Reading& at) {
    readKeys(params, kEffectKeys, entry, at);
    entry.kind = kindOf(entry);
    readKindParams(entry, params, at);
}

} // namespace

TimelineEntry parseTimelineEntry(const JsonValue& json, const Reading& at) {
    TimelineEntry entry;
    readKeys(json, kEntryKeys, entry, at);
    readParams(entry, find(json, "params"), inside(at, "params"));
    return entry;
}

TimelineEntry deriveChildEntry(const JsonValue& json, const TimelineEntry& parent, const std::string& suffix,
                               const Reading& at) {
    TimelineEntry entry;
    entry.id = parent.id + "_" + suffix;
    entry.scene = parent.scene;
    entry.start = parent.start;
    entry.duration = parent.duration;
    entry.layer = parent.layer;
    entry.depth = parent.depth + 1;
    entry.outerTimeScale = parent.outerTimeScale * parent.timeScale;

    readKeys(json, kChildKeys, entry, at);
    if (entry.depth > kMaxNesting) {
        noteOddity(at, OddKind::tooDeep);
        entry.presence = Presence::tooDeep;
    } else if (json.kind != JsonKind::object) {
        entry.presence = Presence::missing;
        entry.kind = EffectKind::image;
    } else {
        readParams(entry, find(json, "params"), inside(at, "params"));
    }
    return entry;
}

float clockLength(const TimelineEntry& entry) {
    const float length = entry.duration * entry.timeScale * entry.outerTimeScale;
    return std::isfinite(length) ? std::max(length, 0.0f) : 0.0f;
}
