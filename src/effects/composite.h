// What the kinds of effect share that build one picture from other effects.
#pragma once

#include "effects/effect.h"

// Effects within effects, the outermost not counted; what lies deeper is left out with a line in the log.
constexpr int kMaxNesting = 16;

// The child that `json` describes; one that is no object stands for the entry's fallback image. May not be
// runnable. The name is the parent's with "_" and the suffix.
std::unique_ptr<Effect> createChild(const Materials& materials, const JsonValue& json, const TimelineEntry& parent,
                                    const std::string& suffix);

// The type of the child that `json` describes, as written; "(none)" without one.
std::string childType(const JsonValue& json);

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
