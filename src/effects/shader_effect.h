// Full-screen shader effects and their buffer pass.
#pragma once

#include "effects/effect.h"

// Draws the main pass. The draw's input, where given, is the picture on its channel; without one an effect with a
// buffer pass gets that pass's picture on channel 0.
void drawShaderEffect(const Device& device, Effect& effect, const Draw& draw);

// Draws the buffer pass into the effect's own target and makes it the latest picture.
void drawBufferPass(const Device& device, Effect& effect, const Draw& draw);

// Makes the buffer pass's targets for an output size, cleared to 0 when they are new.
void ensureBufferTargets(Effect& effect, int width, int height);

// Clears them to 0, as before the first frame. Leaves the latest one current.
void clearBufferTargets(Effect& effect);
