// Draws a moment on the stage: base, then overlays by layer, each mixed in as it says, and two scenes into each other.
#pragma once

#include "effects/stage.h"
#include "timeline/moment.h"

// Draws into framebuffer 0, width x height pixels, which has been cleared.
void drawMoment(Stage& stage, StagePart& part, const Moment& moment, int width, int height);

// Draws one pixel of everything that the timeline may show, in the states that occur, so that no frame waits for the
// driver: see effects/warm_up.h. The pixels are left behind for the next clear.
void warmUpTimeline(Stage& stage, StagePart& part, const Timeline& timeline, int width, int height);
void warmUpScene(Stage& stage, StagePart& part, const Timeline& timeline, int width, int height);
