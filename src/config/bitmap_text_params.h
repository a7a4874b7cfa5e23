// What a show says of a bitmap text.
#pragma once

#include "config/keys.h"

struct BitmapTextParams {
    std::string text = "HELLO";
    std::array<float, 4> textColor = {1.0f, 1.0f, 1.0f, 1.0f}; // R, G, B, A
    std::array<float, 4> bgColor = {0.0f, 0.0f, 0.0f, 0.0f};
    float textPosX = 50.0f;   // pixels from the left of the output
    float textPosY = 50.0f;   // pixels from its top
    float scale = 8.0f;       // pixels a glyph's pixel
    float spacing = 1.0f;     // of the usual advance
    float lineSpacing = 1.2f; // of a glyph's height
    float alpha = 1.0f;       // 0..1, over both colours
};

// Every key that is missing, of another kind or not finite keeps its default, and so does a component of a colour
// that is no number. A colour needs an array of at least four elements.
BitmapTextParams parseBitmapTextParams(const JsonValue& params, const Reading& at = {});
