// One thing that plays on the timeline, as the show describes it.
#pragma once

#include "config/paths.h"
#include "foundation/json.h"

#include <array>
#include <initializer_list>
#include <memory>
#include <string>

constexpr int kChannelCount = 4;
constexpr size_t kMaxNameBytes = 1024; // of ids, types and scene names

struct RuntimeConfig;
struct TimelineEntry;

// Finds shader files; it lives in a folder above this one, so the loader is handed its entry points.
// Either may be null: then there is no pack, or the entries' shader paths stay empty.
struct ShaderLookup {
    void (*loadPack)(const std::string& baseDir) = nullptr;
    void (*resolve)(TimelineEntry& entry) = nullptr; // fills vertPath, fragPath and bufferPath
};

struct TimelineEntry {
    std::string id;
    std::string type;      // effect kind, as written
    std::string scene;     // empty: belongs to no scene
    float start = 0.0f;    // seconds on the timeline
    float delay = 0.0f;    // seconds into the scene; scene-list shows only
    float duration = 5.0f; // seconds; 0 or less is open-ended
    bool overlay = false;
    bool enabled = true;
    int layer = 0; // stacking order among overlays, ascending
    float alpha = 1.0f;
    float timeScale = 1.0f;
    float outerTimeScale = 1.0f; // product of the time scales of the effects around this one
    std::string blendMode = "alpha";
    int depth = 0;        // effects around this one: 0 on the timeline itself
    std::string vertPath; // shader sources; empty when none was found
    std::string fragPath;
    std::string bufferPath;
    std::string imagePath;                           // copy of channel 0
    std::array<std::string, kChannelCount> channels; // resolved image paths; empty when unbound
    std::string fallbackImage;
    std::string baseDir;
    std::shared_ptr<const AssetMap> assets =
        std::make_shared<AssetMap>(); // the show's, shared: a copy an entry would be quadratic
    ShaderLookup shaders;
    JsonValue params; // deep copy, whatever its kind
};

// A name that a show gives, as the player keeps, compares and logs it: cut to a length that log and memory bear,
// however often it is copied, and kept to one line.
std::string keptName(const std::string& name);

// Reads one element of an "entries" array. Never fails: what is missing or of the wrong kind (a number
// that is not finite included) takes its default.
TimelineEntry parseTimelineEntry(const JsonValue& json, const RuntimeConfig& config, const std::string& baseDir);

// The entry of a nested effect, named parent id + "_" + suffix: scene, start, duration and layer are the
// parent's whatever `json` says, the rest is read from `json`.
TimelineEntry deriveChildEntry(const JsonValue& json, const TimelineEntry& parent, const std::string& suffix);

// The entry's length in seconds on its effect's clock; 0 where it has no end, or its clock never comes there.
float clockLength(const TimelineEntry& entry);

// Binds channel `index` (others than 0 to 3 are ignored) to the first of `keys` that "params" holds as a
// string. A channel that is bound already keeps its path.
void bindChannelFromKeys(TimelineEntry& entry, int index, std::initializer_list<const char*> keys);
