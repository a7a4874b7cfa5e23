// Bitmap text: a string that its shader draws glyph by glyph, out of the bitmap font.
#pragma once

#include "config/bitmap_text_params.h"
#include "gpu/device.h"
#include "gpu/draw.h"
#include "gpu/uniform_values.h"
#include "text/fonts.h"

constexpr int kMaxBitmapText = 512; // bytes that reach the shader

// Of the text's program, resolved when it is made.
struct BitmapTextUniforms {
    UniformInfo textColor, bgColor, textPos, scale, spacing, lineSpacing, textLength, textTex, glyphTex;
};

struct BitmapText {
    BitmapTextParams params;
    BitmapTextUniforms uniforms;
    GLuint codeTexture = 0;  // owned; R32I, 1D, kMaxBitmapText texels: the text's bytes, then spaces
    GLuint glyphTexture = 0; // the font's, not owned; 0: none
    int textLength = 0;      // bytes, of all the text
};

// Uploads the text for a linked program.
bool createBitmapText(const Fonts& fonts, BitmapText& text, const BitmapTextParams& params, const Program& program);

// Uses texture units 0 (the text) and 1 (the font).
void drawBitmapText(const Device& device, const BitmapText& text, Program& program, const UniformValues& values,
                    const Draw& draw);

// Deletes the texture and resets the record.
void releaseBitmapText(BitmapText& text);
