// The timeline: the entries that can play, and their scenes. Nothing here knows GL.
#pragma once

#include "config/runtime_config.h"

#include <span>
#include <string>
#include <vector>

struct RuntimeEntry {
    const TimelineEntry* entry = nullptr; // the configuration's, which outlives the timeline
    float start = 0.0f;                   // seconds
    float duration = 0.0f;                // seconds; 0 or less is open-ended
    int layer = 0;
    bool overlay = false;
    int scene = -1; // index into Timeline::scenes; -1 without a scene name
};

// A scene's name with the time from its first entry's start to its last entry's end, never before 0.
struct SceneSpan {
    std::string name;
    float start = 0.0f; // seconds
    float end = 0.0f;
    // How the scene passes into the next one: the show's preset of its name.
    TransitionLook transition;
    float transitionDuration = 0.0f; // seconds; not above 0 takes the overlap of the two scenes
};

struct Timeline {
    std::vector<RuntimeEntry> entries; // configuration order
    std::vector<SceneSpan> scenes;     // named ones, by start, then by name
    SceneSpan unnamedScene;            // the entries without a scene name
};

// The timeline of those entries of a configuration that can play, the flat ones or one scene's.
Timeline buildTimeline(std::span<const TimelineEntry* const> entries, const RuntimeConfig& config);

// Seconds until the last entry of a scene ends, delays included; 0 for an empty scene.
float sceneDuration(const RuntimeConfig& config, int index);

// The span of an entry's scene, the unnamed one included.
const SceneSpan& sceneOf(const Timeline& timeline, const RuntimeEntry& entry);

// For each scene whether another one plays at the same time at some point.
std::vector<bool> findOverlaps(const Timeline& timeline);
