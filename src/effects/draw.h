// Draws an effect of any kind into the current target.
#pragma once

#include "effects/effect.h"

// All passes of the effect at its local time, `width` x `height` pixels, with the blending that is set.
// `input` (may be null) is the picture of another effect for one of its channels. Leaves the viewport
// over the whole output.
void drawEffectPasses(Effect& effect, int width, int height, const InputTexture* input);
