// Draws one frame from what plays: base, then overlays by layer, each blended as its entry says.
#pragma once

#include "timeline/playback.h"

// Advances the effect's clock by the frame delta (seconds) and draws it into the current target.
void drawEffect(Effect& effect, float delta, int width, int height);

// The base with blending off, then the overlays over it.
void drawTimelineFrame(const PlayState& state, float delta, int width, int height);

// What a transition needs beside the scenes: its shader, and a target for each side.
struct TransitionStage {
    TransitionRenderer renderer; // without a program scenes cut
    RenderTarget outgoing;
    RenderTarget incoming;
};

// The timeline frame of one scene, over transparent black, into a target of the output's size. Leaves
// framebuffer 0 and a viewport over the output current.
void renderSceneToTarget(const PlayState& state, RenderTarget& target, float delta, int width, int height);

// Both scenes into their targets, and the transition between them into framebuffer 0.
void drawTransitionFrame(TransitionStage& stage, const Timeline& timeline, const TransitionState& state, float delta,
                         int width, int height);

// Finds the show's transition shader, makes the targets and draws one pixel of a transition, so that the
// first one does not stall; false, with a line in the log, when there is no shader.
bool initTransitionStage(TransitionStage& stage, const std::string& baseDir, int width, int height);

void releaseTransitionStage(TransitionStage& stage);

// Every entry of the loaded scene that plays `sceneTime` seconds into it, in the order of the list; both
// ends of an entry's time count as playing.
void drawSceneFrame(Timeline& timeline, float sceneTime, float delta, int width, int height);
