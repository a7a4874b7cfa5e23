// Bitmap text: a string that its shader draws glyph by glyph, out of the bitmap font.
#pragma once

#include "foundation/json.h"
#include "gpu/uniforms.h"
#include "platform/gl.h"

#include <array>
#include <string>

constexpr int kMaxBitmapText = 512; // bytes that reach the shader

struct BitmapTextParams {
    GLuint program = 0; // borrowed
    std::string text = "HELLO";
    std::array<float, 4> textColor = {1.0f, 1.0f, 1.0f, 1.0f}; // R, G, B, A
    std::array<float, 4> bgColor = {0.0f, 0.0f, 0.0f, 0.0f};
    float textPosX = 50.0f;   // pixels from the left of the output
    float textPosY = 50.0f;   // pixels from its top
    float scale = 8.0f;       // pixels a glyph's pixel
    float spacing = 1.0f;     // of the usual advance
    float lineSpacing = 1.2f; // of a glyph's height
};

// Of the text's program, resolved when it is made.
struct BitmapTextUniforms {
    UniformInfo textColor, bgColor, textPos, scale, spacing, lineSpacing, textLength, textTex, glyphTex;
};

struct BitmapText {
    BitmapTextParams params;
    BitmapTextUniforms uniforms;
    float alpha = 1.0f;     // 0..1, over both colours
    GLuint codeTexture = 0; // owned; R32I, 1D, kMaxBitmapText texels: the text's bytes, then spaces
    int textLength = 0;     // bytes, of all the text
};

// Every key that is missing, of another kind or not finite keeps its default. A colour needs an array of at
// least four elements; one of them that is no number is 1 for the text and 0 behind it.
BitmapTextParams parseBitmapTextParams(const JsonValue& params);

// Reads an entry's "params" and uploads the text for a linked program.
bool createBitmapText(BitmapText& text, const JsonValue& params, GLuint program);

// Draws at `time` seconds, in frame `frame`, into the current target, `width` x `height` pixels, with the blending that
// is set. Uses texture units 0 (the text) and 1 (the font).
void drawBitmapText(const BitmapText& text, GLuint program, float time, int frame, int width, int height);

// Deletes the texture and resets the record.
void releaseBitmapText(BitmapText& text);
