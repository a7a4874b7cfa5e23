// Draws programs once while a show loads, so that no frame pays for what drivers put off.
#pragma once

#include "effects/effect.h"

// What is current while a program is drawn; drivers compile code for each.
enum class DrawTarget {
    screen,    // framebuffer 0
    offscreen, // a render target
};

// Draws one pixel of every pass as `draw` says, into a target of the kind given, unless the effect's programs have
// been drawn in that state before. Drivers compile code at the first draw, for the blending, the formats of target
// and textures, their filters, some even for whether a side is a power of two: so targets and textures are the very
// ones of the show. The pixel is left behind, the caller's next clear takes it; buffers are left cleared.
void warmUpEffect(Device& device, Effect& effect, DrawTarget target, const Draw& draw);

// The same for the mix of two pictures.
void warmUpTransition(Device& device, const TransitionRenderer& renderer, DrawTarget target, const Draw& draw,
                      GLuint from, GLuint to);
