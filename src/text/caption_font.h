// A colour font as captions set it: letters as wide as their ink, sized by the height of the capitals.
#pragma once

#include "text/color_font.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct CaptionGlyph {
    bool exists = false;
    // What of the cell is to be drawn, in cell pixels from its top left, and its texture coordinates: left,
    // top, right, bottom. No area: nothing is.
    float x0 = 0.0f, y0 = 0.0f, x1 = 0.0f, y1 = 0.0f;
    float u0 = 0.0f, v0 = 0.0f, u1 = 0.0f, v1 = 0.0f;
    float left = 0.0f;    // cell pixels from the cell's left to the pen
    float advance = 0.0f; // cell pixels from this pen to the next
};

struct CaptionFont {
    std::array<CaptionGlyph, 256> glyphs;
    float cellWidth = 0.0f; // pixels
    float cellHeight = 0.0f;
    float capTop = 0.0f;    // cell pixels from the cell's top to the capitals' top
    float capHeight = 1.0f; // cell pixels, positive
    float gap = 0.0f;       // cell pixels, of the advance: half of it on either side of the ink
};

// Measures where the ink of each glyph lies in RGBA pixels of the font's size, bottom row first as in the
// texture. Without pixels (empty) every glyph keeps its cell and its advance.
CaptionFont measureCaptionFont(const ColorFont& font, const std::vector<uint8_t>& pixels);

// A text's lines, at most `maxLines`, as bytes that all have a glyph: backslash + 'n' breaks the line as a
// newline does, a tab is a space, and what the font lacks is '?' (one for a character of several bytes) or,
// where it has none, nothing.
std::vector<std::string> captionLines(const CaptionFont& font, std::string_view text, size_t maxLines);

// Width in pixels of a line of captionLines whose capitals are `capPixels` high, from ink to ink.
float captionWidth(const CaptionFont& font, std::string_view line, float capPixels);

// Makes a line fit: its letters shrink, by half at most, and what is then still too wide is cut and ends in
// dots. Gives the capitals' height in pixels.
float fitCaptionLine(const CaptionFont& font, std::string& line, float capPixels, float maxWidth);
