// A chain: the picture of one child, processed by another.
#pragma once

#include "effects/effect.h"

// Fills in an effect whose identity is set; false, with a line in the log, when it cannot run.
bool createChain(const Materials& materials, const TimelineEntry& entry, Effect& effect);

void drawChain(Device& device, Effect& effect, const Draw& draw);
