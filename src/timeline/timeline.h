// The runtime timeline: the entries that loaded, each with the effect that draws it, and their scenes.
#pragma once

#include "config/runtime_config.h"
#include "effects/effect.h"
#include "effects/warm_up.h"

#include <string>
#include <vector>

struct RuntimeEntry {
    const TimelineEntry* entry = nullptr; // the configuration's, which outlives the timeline
    float start = 0.0f;                   // seconds
    float duration = 0.0f;                // seconds; 0 or less is open-ended
    int layer = 0;
    bool overlay = false;
    int scene = -1; // index into Timeline::scenes; -1 without a scene name
    Effect effect;  // owned
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

// Rebuild the timeline from the configuration's flat entries, or from the entries of one scene (an index
// past the last loads nothing). Effects are destroyed first and created anew; each is drawn once for an
// output of that size, so that its first frame is a steady one. What fails is logged and left out.
void loadTimeline(Timeline& timeline, const RuntimeConfig& config, int width, int height);
void loadScene(Timeline& timeline, const RuntimeConfig& config, int index, int width, int height);

// Destroys every effect and empties the timeline.
void releaseTimeline(Timeline& timeline);

// Seconds until the last entry of a scene ends, delays included; 0 for an empty scene.
float sceneDuration(const RuntimeConfig& config, int index);

// The span of an entry's scene, the unnamed one included.
const SceneSpan& sceneOf(const Timeline& timeline, const RuntimeEntry& entry);

// The blending that an entry is drawn with: overlays on the flat timeline; in a scene of the list every
// entry but the first one, and that too when it is an overlay.
DrawState timelineDrawState(const RuntimeEntry& entry);
DrawState sceneDrawState(const Timeline& timeline, const RuntimeEntry& entry);
