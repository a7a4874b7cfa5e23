// A timeline blend: children that play one after the other, mixed where two overlap.
#pragma once

#include "effects/effect.h"

// Fills in an effect whose identity is set; false, with a line in the log, when it cannot run.
bool createTimelineBlend(const TimelineEntry& entry, const RuntimeConfig& show, Effect& effect);

void drawTimelineBlend(Effect& effect, int width, int height, const InputTexture* input);
