// A dynamic split: two children on either side of an edge that moves.
#pragma once

#include "effects/effect.h"

// Fills in an effect whose identity is set; false, with a line in the log, when it cannot run.
bool createDynamicSplit(const Materials& materials, const TimelineEntry& entry, Effect& effect);

void drawDynamicSplit(Device& device, Effect& effect, const Draw& draw);
