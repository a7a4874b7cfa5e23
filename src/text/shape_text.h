// Shape text: a vector logo, rasterized once into a mask that its shader fills, lights and reveals.
#pragma once

#include "foundation/json.h"
#include "platform/gl.h"

#include <string>

struct ShapeText {
    GLuint mask = 0; // belongs to the texture cache
};

// Reads an entry's "params" and rasterizes the logo for a linked program; false when there is none.
bool createShapeText(ShapeText& shape, const JsonValue& params, const std::string& baseDir, GLuint program);

// Draws the logo at `time` seconds into the current target, `width` x `height` pixels. Sets blending.
void drawShapeText(const ShapeText& shape, GLuint program, float time, int width, int height);
