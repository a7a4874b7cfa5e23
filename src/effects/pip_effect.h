// Picture in picture: a child with an inset, an image or another child, in one of its corners.
#pragma once

#include "effects/effect.h"

// Fills in an effect whose identity is set; false, with a line in the log, when it cannot run. A missing
// inset leaves it runnable.
bool createPip(const Materials& materials, const TimelineEntry& entry, Effect& effect);

void drawPip(Device& device, Effect& effect, const Draw& draw);

// A rectangle of the output in pixels, lower-left origin.
struct PipRect {
    int x = 0, y = 0;
    int width = 0, height = 0;
};

// Where the inset lies in an output of that size.
PipRect pipRect(const PipParams& pip, int width, int height);
