// The glitch of kinetic text: now and then a glyph is thrown aside, dimmed, and cut from beside its cell.
#pragma once

#include "config/kinetic_params.h"
#include "text/kinetic_layout.h"

#include <cstdint>

// What the glitch does to one glyph; the defaults are those of a glyph that is not hit.
struct GlitchOffset {
    float x = 0.0f, y = 0.0f; // pixels
    float u = 0.0f, v = 0.0f; // texture coordinates
    float alpha = 1.0f;       // factor
};

// A style's formula with a show's amounts put in: the same for all glyphs of a frame.
struct GlitchFrame {
    KineticGlitch style = KineticGlitch::digital;
    bool isOn = false;
    uint32_t step = 0; // of time; everything is redrawn by lot with the next one
    float hitChance = 0.0f;
    float strongAbove = 1.0f; // a lot above this hits harder
    float amplitude = 0.0f;   // pixels
    float dimming = 0.0f;     // most that the alpha may lose
    float shiftU = 0.0f;      // texture coordinates
    float shiftV = 0.0f;
};

GlitchFrame glitchFrame(const KineticTextParams& params, const KineticLayout& layout, float time);

GlitchOffset glitchOffset(const GlitchFrame& frame, const KineticGlyph& glyph);
