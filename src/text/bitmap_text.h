// Bitmap text: a string that its shader draws glyph by glyph, out of the bitmap font.
#pragma once

#include "foundation/json.h"
#include "platform/gl.h"

struct BitmapText {
    GLuint codeTexture = 0;
};

// Reads an entry's "params" and uploads the text for a linked program.
bool createBitmapText(BitmapText& text, const JsonValue& params, GLuint program);

// Draws into the current target, `width` x `height` pixels, with the blending that is set.
void drawBitmapText(const BitmapText& text, GLuint program, int width, int height);

void releaseBitmapText(BitmapText& text);
