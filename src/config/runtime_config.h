// The show's description (config.json) as records: every key is optional and has a default.
#pragma once

#include "config/timeline_entry.h"

#include <string>
#include <unordered_map>
#include <vector>

struct SceneSpec {
    std::string id;
    bool enabled = true;
    std::vector<TimelineEntry> entries; // enabled ones, document order
};

// A transition preset, stored under the name of the scene that it leads out of.
struct TransitionSpec {
    TransitionLook look;
    float duration = 0.0f; // seconds; 0 takes the overlap of the two scenes
};

struct RuntimeConfig {
    int width = 1280; // pixels, as written: may be zero or negative
    int height = 720;
    bool fullscreen = false;
    bool loop = true;
    bool nativeSchema = false;     // the description names the schema of flat timelines
    bool nativeRuntime = false;    // flat timeline of entries instead of a list of scenes
    std::string audioPath;         // resolved; empty without music
    float volume = 1.0f;           // 0..1
    float startOffset = 0.0f;      // seconds into the music at timeline time 0, at least 0
    std::string fallbackImagePath; // resolved; never empty once it is read
    AssetMap assets;
    std::unordered_map<std::string, TransitionSpec> transitions;
    std::vector<SceneSpec> scenes;      // enabled ones that hold an entry, document order
    std::vector<TimelineEntry> entries; // enabled ones, by start, base before overlay, layer
    std::string leftOut;                // what of the text was too much to read, and why; empty: nothing
    int cutLists = 0;                   // lists of entries that did not fit as a whole
    std::string baseDir = ".";          // directory of the description
    std::vector<Oddity> oddities;       // what was odd about the description, at most kMaxOddities
};

// Reads a whole description. No file is opened for it (whether a path that begins with a slash leads somewhere is
// asked) and nothing is logged; whatever is no description gives the default configuration.
RuntimeConfig readShow(const std::string& bytes, const std::string& baseDir);

// Reads the description at `path` and logs what it finds; `loadPack`, if any, is called for the shader pack of the
// base directory in between. A file that cannot be read or is empty gives the default configuration with an empty
// baseDir and a line in the log.
RuntimeConfig loadRuntimeConfig(const std::string& path, void (*loadPack)(const std::string& baseDir) = nullptr);
