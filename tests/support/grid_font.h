// Colour fonts that no file describes.
#pragma once

#include "text/color_font.h"

#include <algorithm>

// Cells of 10 x 20 texels, the first character's at the picture's upper left; the space advances by 5.
inline ColorFont gridFont(const std::string& chars, int columns, int rows) {
    ColorFont font;
    font.cellWidth = 10;
    font.cellHeight = 20;
    font.columns = columns;
    font.rows = rows;
    font.textureWidth = columns * 10;
    font.textureHeight = rows * 20;
    font.spaceWidth = 5.0f;
    font.chars = chars;
    const float width = static_cast<float>(columns), height = static_cast<float>(rows);
    for (int i = 0; i < std::min(columns * rows, static_cast<int>(chars.size())); ++i) {
        const char c = chars[static_cast<size_t>(i)];
        const float x = static_cast<float>(i % columns), y = static_cast<float>(i / columns);
        const float u0 = x / width, u1 = (x + 1) / width, v0 = 1 - (y + 1) / height, v1 = 1 - y / height;
        font.glyphs[static_cast<unsigned char>(c)] = {u0, v0, u1, v1, c == ' ' ? font.spaceWidth : 10.0f};
    }
    return font;
}
