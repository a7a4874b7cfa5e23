// Colour fonts: an RGBA glyph atlas laid out as a grid of equal cells, and its JSON description.
#pragma once

#include "platform/gl.h"

#include <string>
#include <unordered_map>

struct Fonts;

struct ColorGlyph {
    float u0 = 0.0f, v0 = 0.0f, u1 = 0.0f, v1 = 0.0f; // texture coordinates: left, bottom, right, top
    float advance = 0.0f;                             // pixels
};

// The metrics are the description's and may be anything, below zero included. A cell that lies outside the
// atlas has texture coordinates outside 0..1.
struct ColorFont {
    GLuint texture = 0; // belongs to the font cache; 0: not loaded
    int cellWidth = 32; // pixels
    int cellHeight = 32;
    int columns = 16; // cells
    int rows = 4;
    int textureWidth = 0; // pixels
    int textureHeight = 0;
    int baseline = 32;         // pixels from the cell's top
    float lineAdvance = 32.0f; // pixels from one line to the next
    float spaceWidth = 16.0f;  // pixels
    std::string chars;         // in atlas order, one byte a cell, at most kMaxFontChars
    std::string jsonPath;
    std::string texturePath;
    std::unordered_map<unsigned char, ColorGlyph> glyphs;
};

// Every effect keeps a copy of its font's characters, and there are only 256 to tell apart.
constexpr size_t kMaxFontChars = 1 << 16;

// Paths of the description and of its atlas; empty when nothing exists there.
std::string resolveColorFontPath(const std::string& fontPath, const std::string& baseDir);
std::string resolveFontTexturePath(const std::string& texture, const std::string& jsonPath, const std::string& baseDir);

// True at once when the font is loaded already. False, with one line in the log and the texture 0, when it
// cannot be loaded; a description that is empty or no object says nothing. The atlas is decoded once:
// effects that use the same font share its texture. Needs a current context.
bool loadColorFont(Fonts& fonts, const std::string& baseDir, const std::string& fontPath, ColorFont& font);

// Resets the record; the atlas stays for the next effect that uses it.
void releaseColorFont(ColorFont& font);
