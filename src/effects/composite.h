// What the kinds of effect share that build one picture from other effects.
#pragma once

#include "effects/effect.h"

// The effect of a composite's child. May not be runnable; one that lies too deep is not, with a line in the log.
std::unique_ptr<Effect> createChild(const Materials& materials, const TimelineEntry& child);

// The program that shows a child's picture; false, with the driver's words in the log, when there is none.
bool createBlit(Device& device, Effect& effect);

// A child's draw: its clock is `parentTime`, times its own time scale, its frame the composite's, its opacity its own.
Draw childDraw(const Effect& child, const Draw& parent, double parentTime);

// Draws a child over transparent black into a target as large as the parent's.
void renderChild(Device& device, Effect& child, RenderTarget& target, const Draw& parent, double parentTime);

// The same for a target of another size.
void renderChild(Device& device, Effect& child, RenderTarget& target, int width, int height, const Draw& parent,
                 double parentTime);

// Shows a texture over the whole viewport; the target and its blending are set.
void drawPicture(const Device& device, const Effect& effect, GLuint texture, float alpha);
