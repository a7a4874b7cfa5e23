// Draws programs once while a show loads, so that no frame pays for what drivers put off.
#pragma once

#include "effects/effect.h"

#include <cstdint>

// Blending that a draw meets; each is one bit of a program's warm states.
enum class DrawState : uint32_t {
    opaque = 1,   // blending off
    alpha = 2,    // source alpha, one minus source alpha
    additive = 4, // source alpha, one
};

// The state in which the effect is blended over what lies below it.
DrawState blendedState(const Effect& effect);

// Sets blending for a draw.
void applyDrawState(DrawState state);

// What is current while a program is drawn; drivers compile code for each.
enum class DrawTarget {
    screen,    // framebuffer 0
    offscreen, // a render target
};

// Draws one pixel of every pass into the current target, which is of the kind given, unless the effect's
// programs have been drawn in this state before. Drivers compile code at the first draw, for the blending,
// the formats of target and textures, their filters, some even for whether a side is a power of two: so
// targets and textures are the very ones of the show. The pixel is left behind, the caller's next clear
// takes it; buffers are left cleared.
void warmUpEffect(Effect& effect, DrawState state, DrawTarget target, int width, int height);

// The same for a program that draws the quad with textures of the show.
void warmUpProgram(GLuint program, DrawState state, DrawTarget target);
