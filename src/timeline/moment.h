// The moment: what plays at a time, as data. Whoever knows the show fills it in, whoever knows the stage draws it.
#pragma once

#include "config/blend_mode.h"
#include "timeline/clocks.h"
#include "timeline/playback.h"

#include <vector>

// One entry to draw.
struct MomentEntry {
    int entry = 0;     // index into Timeline::entries
    double time = 0.0; // seconds on its own clock
    int frame = 0;     // its frame counter
    float opacity = 1.0f;
    BlendMode blending = BlendMode::opaque; // how its picture is mixed into what lies below it
};

// The lists keep their memory from frame to frame.
struct Moment {
    std::vector<MomentEntry> entries; // in drawing order; in a transition those of the outgoing scene
    bool inTransition = false;
    std::vector<MomentEntry> incoming; // in a transition: those of the incoming scene
    float progress = 0.0f;             // of the transition, 0..1
    TransitionLook look;
};

// What plays at t on the flat timeline, base first, then the overlays, each mixed in as its entry says; where two
// scenes overlap and `canMix` a transition between them. Every clock of an entry that plays runs on by `delta` seconds.
// The log says what plays when that has changed.
struct PlayScratch {
    PlayState state;
    TransitionState transition;
};
void resolveMoment(const Timeline& timeline, float t, bool canMix, PlayScratch& scratch, Moment& moment);

// The entries of a scene of a list that play `sceneTime` seconds into it, in the order of the list; both ends of an
// entry's time count as playing. The first of the list is the base unless it is an overlay.
void resolveSceneMoment(const Timeline& timeline, float sceneTime, Moment& moment);

// Lets a frame of `delta` seconds pass for the entries that play, and tells each the time.
void runClocks(Clocks& clocks, const Timeline& timeline, float delta, Moment& moment);
