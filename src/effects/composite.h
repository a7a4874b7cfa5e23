// What the kinds of effect share that build one picture from other effects.
#pragma once

#include "effects/effect.h"

// The effect of a composite's child. May not be runnable; one that lies too deep is not, with a line in the log.
std::unique_ptr<Effect> createChild(const TimelineEntry& child, const RuntimeConfig& show);

// The program that shows a child's picture.
GLuint borrowBlitProgram();

// A child's clock is the composite's, times its own time scale; its frame the composite's.
void propagateClock(const Effect& parent, Effect& child, float parentTime);

// Draws the effect at its clock over transparent black into a target of that size, blending off; restores
// what was current.
void renderToTarget(Effect& effect, RenderTarget& target, int width, int height, const InputTexture* input);

// Shows a texture over the whole viewport with the blending that is set.
void drawPicture(GLuint program, GLuint texture, float alpha);
