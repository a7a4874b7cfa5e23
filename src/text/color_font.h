// Colour fonts: an RGBA glyph atlas laid out as a grid of equal cells, and its JSON description.
#pragma once

#include "platform/gl.h"

#include <string>
#include <unordered_map>

struct ColorGlyph {
    float u0 = 0.0f, v0 = 0.0f, u1 = 0.0f, v1 = 0.0f; // texture coordinates: left, bottom, right, top
    float advance = 0.0f;                             // pixels
};

struct ColorFont {
    GLuint texture = 0; // owned; 0: not loaded
    int cellWidth = 32; // pixels
    int cellHeight = 32;
    int columns = 16; // cells
    int rows = 4;
    int textureWidth = 0; // pixels
    int textureHeight = 0;
    int baseline = 32;          // pixels from the cell's top
    float lineAdvance = 32.0f;  // pixels from one line to the next
    float spaceWidth = 16.0f;   // pixels
    std::string chars;          // in atlas order, one byte a cell
    std::string jsonPath;
    std::string texturePath;
    std::unordered_map<unsigned char, ColorGlyph> glyphs;
};

// Paths of the description and of its atlas; empty when nothing exists there.
std::string resolveColorFontPath(const std::string& fontPath, const std::string& baseDir);
std::string resolveFontTexturePath(const std::string& texture, const std::string& jsonPath, const std::string& baseDir);

// True at once when the font is loaded already. False, with one line in the log and the texture 0, when it
// cannot be loaded. Needs a current context.
bool loadColorFont(const std::string& baseDir, const std::string& fontPath, ColorFont& font);

// Deletes the texture and resets the record.
void releaseColorFont(ColorFont& font);
