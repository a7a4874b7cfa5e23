// Draws a moment on the stage: base, then overlays by layer, each mixed in as it says, and two scenes into each other.
#pragma once

#include "effects/stage.h"
#include "timeline/moment.h"

// Make the effects of the flat timeline, or of one scene of a list, as a further part of the stage, for an output of
// width x height pixels, and give the timeline of those that can play. What fails is logged and left out. The log of
// a timeline is said and kept, that of a scene only kept: to be said when the scene begins.
Timeline loadTimeline(Stage& stage, const RuntimeConfig& config, int width, int height);
Timeline loadScene(Stage& stage, const RuntimeConfig& config, int index, int width, int height);

// Draws into framebuffer 0, width x height pixels, which has been cleared.
void drawMoment(Stage& stage, StagePart& part, const Moment& moment, int width, int height);

// Draws one pixel of everything that the timeline may show, in the states that occur, so that no frame waits for the
// driver: see effects/warm_up.h. The pixels are left behind for the next clear.
void warmUpTimeline(Stage& stage, StagePart& part, const Timeline& timeline, int width, int height);
void warmUpScene(Stage& stage, StagePart& part, const Timeline& timeline, int width, int height);
