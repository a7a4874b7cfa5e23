// What the kinds of effect share that build one picture from other effects.
#pragma once

#include "effects/effect.h"

// Effects within effects, the outermost not counted; what lies deeper is left out with a line in the log.
constexpr int kMaxNesting = 16;

// The child that `json` describes; one that is no object stands for the entry's fallback image. May not be
// runnable. The name is the parent's with "_" and the suffix.
std::unique_ptr<Effect> createChild(const JsonValue& json, const TimelineEntry& parent, const std::string& suffix);

// The type of the child that `json` describes, as written; "(none)" without one.
std::string childType(const JsonValue& json);

// The program that shows a child's picture.
GLuint borrowBlitProgram();

// A child's clock is the composite's, times its own time scale; its frame the composite's.
void propagateClock(const Effect& parent, Effect& child, float parentTime);

// Draws the effect at its clock over transparent black into a target of that size, blending off; restores
// what was current.
void renderToTarget(Effect& effect, RenderTarget& target, int width, int height, const InputTexture* input);

// Shows a texture over the whole viewport with the blending that is set.
void drawPicture(GLuint program, GLuint texture, float alpha);
