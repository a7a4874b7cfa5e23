// A blend: one child mixed into another by a transition style, once, on the blend's clock.
#pragma once

#include "effects/effect.h"

// Fills in an effect whose identity is set; false, with a line in the log, when it cannot run.
bool createBlend(const TimelineEntry& entry, const RuntimeConfig& show, Effect& effect);

void drawBlend(Effect& effect, int width, int height, const InputTexture* input);
