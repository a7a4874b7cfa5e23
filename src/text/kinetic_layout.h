// What of a kinetic text does not change from frame to frame: where its glyphs stand in their lines, what
// they show, and their random values.
#pragma once

#include "config/kinetic_params.h"
#include "text/color_font.h"

#include <cstdint>
#include <string>
#include <vector>

// One character that is no space.
struct KineticGlyph {
    ColorGlyph cell;  // the character's, or its stand-in's
    float pen = 0.0f; // pixels from the line's start
    int line = 0;
    int charIndex = 0; // characters before it in the whole text, spaces aside
    int wordIndex = 0; // words before it
    uint32_t seed = 0; // of charIndex and wordIndex, for all that is random
    unsigned char code = 0;
    float phaseSin = 0.0f; // of its place along a wave
    float phaseCos = 1.0f;
    float flightX = 0.0f; // pixels of a whole explosion
    float flightY = 0.0f;
    float spin = 0.0f;   // radians of it, clockwise
    float growth = 0.0f; // of the size
};

// Letters to show in place of another one, looked up by where the walk through the font's characters
// starts: a walk of its own for every glyph of every frame could be as long as a stranger's font file.
struct ScrambleLetter {
    int16_t first = -1;  // code of the first character from here on that can be shown; -1: none
    int16_t second = -1; // and of the first one that differs from it
};

struct KineticLayout {
    std::vector<float> lineWidths;       // pixels
    std::vector<KineticGlyph> glyphs;    // in the text's order
    std::vector<ScrambleLetter> letters; // one a character of the font; empty where nothing scrambles
    std::vector<ColorGlyph> cells;       // by code, for the letters; empty likewise
    float cellWidth = 0.0f;              // pixels
    float cellHeight = 0.0f;
    float texelU = 1.0f; // of the atlas, in texture coordinates
    float texelV = 1.0f;
};

// Lays the text out in a font. A character without a glyph stands as '?', else as the font's first glyph,
// else as nothing, and does not count in its line's width.
KineticLayout layoutKineticText(const KineticTextParams& params, const ColorFont& font);
