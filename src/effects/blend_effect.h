// A blend: one child mixed into another by a transition style, once, on the blend's clock.
#pragma once

#include "effects/effect.h"

// Fills in an effect whose identity is set; false, with a line in the log, when it cannot run.
bool createBlend(const Materials& materials, const TimelineEntry& entry, Effect& effect);

void drawBlend(Device& device, Effect& effect, const Draw& draw);
