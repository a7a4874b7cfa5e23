// What plays at a time: the base entry, the overlays in drawing order, the active scenes; and the log of it.
#pragma once

#include "timeline/timeline.h"

#include <string>
#include <vector>

constexpr int kAllScenes = -2; // filter: entries of every scene and of none

// What plays at a time. The lists keep their memory from frame to frame.
struct PlayState {
    const RuntimeEntry* base = nullptr;
    std::vector<const RuntimeEntry*> overlays; // in drawing order
};

// Two scenes, one passing into the other.
struct TransitionState {
    int outgoing = 0; // indices into Timeline::scenes
    int incoming = 0;
    float progress = 0.0f; // 0..1
    PlayState out;
    PlayState in;
    std::vector<int> active; // scratch
};

// What was logged last; clear `lastKey` to have the next state logged anew.
struct PlayLog {
    std::string lastKey;
    std::string key; // the frame's, kept for its memory
};

// From the start, inclusive, to the end, exclusive; a duration of 0 or less never ends.
bool isTimeActive(const RuntimeEntry& entry, float t);

// The base entry at t among the non-overlay entries of `scene` (an index into Timeline::scenes, or
// kAllScenes); null when there is none. Latest start that plays, else latest start that is past, else
// earliest start; the first in the list on ties.
const RuntimeEntry* selectBaseEntry(const Timeline& timeline, float t, int scene = kAllScenes);

// The overlays that play at t, by layer, then by start, then in the order of the list.
void selectOverlays(const Timeline& timeline, float t, std::vector<const RuntimeEntry*>& overlays,
                    int scene = kAllScenes);

void resolvePlayState(const Timeline& timeline, float t, PlayState& state, int scene = kAllScenes);

// Indices into Timeline::scenes of the scenes with an entry that plays at t, in the table's order.
void activeScenes(const Timeline& timeline, float t, std::vector<int>& scenes);

// The transition at t between the two scenes that play and start first; false when fewer than two play.
bool resolveTransition(const Timeline& timeline, float t, TransitionState& state);

void logTransition(PlayLog& log, const Timeline& timeline, float t, const TransitionState& state);

// Logs the state when it differs from the last one logged. Allocates nothing once the key has grown.
void logPlayState(PlayLog& log, const Timeline& timeline, float t, const PlayState& state);

// Logs the last picture of a show that ends.
void logFinalFrame(const Timeline& timeline, float t, const PlayState& state);
