// A chain: the picture of one child, processed by another.
#pragma once

#include "effects/effect.h"

// Fills in an effect whose identity is set; false, with a line in the log, when it cannot run.
bool createChain(const TimelineEntry& entry, const RuntimeConfig& show, Effect& effect);

void drawChain(Effect& effect, int width, int height, const InputTexture* input);
