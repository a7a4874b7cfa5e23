// Bitmap text: a string that its shader draws glyph by glyph, out of the bitmap font.
#pragma once

#include "config/bitmap_text_params.h"
#include "gpu/uniforms.h"
#include "platform/gl.h"

constexpr int kMaxBitmapText = 512; // bytes that reach the shader

// Of the text's program, resolved when it is made.
struct BitmapTextUniforms {
    UniformInfo textColor, bgColor, textPos, scale, spacing, lineSpacing, textLength, textTex, glyphTex;
};

struct BitmapText {
    BitmapTextParams params;
    BitmapTextUniforms uniforms;
    GLuint codeTexture = 0; // owned; R32I, 1D, kMaxBitmapText texels: the text's bytes, then spaces
    int textLength = 0;     // bytes, of all the text
};

// Uploads the text for a linked program.
bool createBitmapText(BitmapText& text, const BitmapTextParams& params, GLuint program);

// Draws at `time` seconds, in frame `frame`, into the current target, `width` x `height` pixels, with the blending that
// is set. Uses texture units 0 (the text) and 1 (the font).
void drawBitmapText(const BitmapText& text, GLuint program, float time, int frame, int width, int height);

// Deletes the texture and resets the record.
void releaseBitmapText(BitmapText& text);
