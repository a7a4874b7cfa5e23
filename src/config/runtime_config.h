// The show's description (config.json) as a model: every key is optional and has a default.
#pragma once

#include "config/timeline_entry.h"

#include <string>
#include <unordered_map>
#include <vector>

struct SceneSpec {
    std::string id;
    bool enabled = true;
    std::string transitionType = "cut";
    float transitionDuration = 0.0f;    // seconds
    std::vector<TimelineEntry> entries; // enabled ones, document order
};

// A transition preset, stored under the name of the scene that it leads out of.
struct TransitionSpec {
    std::string type = "fade";
    float duration = 0.0f; // seconds; 0 takes the overlap of the two scenes
    JsonValue params;
};

struct RuntimeConfig {
    int width = 1280; // pixels, as written: may be zero or negative
    int height = 720;
    bool fullscreen = false;
    bool loop = true;
    bool nativeRuntime = false;    // flat timeline of entries instead of a list of scenes
    std::string audioPath;         // resolved; empty without music
    float volume = 1.0f;           // 0..1
    float startOffset = 0.0f;      // seconds into the music at timeline time 0, at least 0
    std::string fallbackImagePath; // resolved; never empty after loading
    std::shared_ptr<const AssetMap> assets = std::make_shared<AssetMap>();
    std::unordered_map<std::string, TransitionSpec> transitions;
    std::vector<SceneSpec> scenes;      // enabled ones that hold an entry, document order
    std::vector<TimelineEntry> entries; // enabled ones, by start, base before overlay, layer
    std::string baseDir = ".";          // directory of the description
    ShaderLookup shaders;
};

// Loads the description at `path` and, as soon as the base directory is known, the shader pack. Logs what
// it finds. A file that cannot be read or is empty gives the default configuration with an empty baseDir
// and a line in the log; anything else that is readable gives a configuration, if need be an empty one.
RuntimeConfig loadRuntimeConfig(const std::string& path, const ShaderLookup& shaders = {});
