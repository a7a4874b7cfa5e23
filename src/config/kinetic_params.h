// What a show says about a kinetic text: the keys of its "params", their defaults and limits.
#pragma once

#include "config/blend_mode.h"

#include <array>
#include <cstddef>
#include <string>

// Longer texts are cut: every character costs up to twelve vertices a frame, and no screen holds so many.
constexpr size_t kKineticMaxBytes = 16384;

enum class KineticAlign {
    left,   // lines start at the anchor
    center, // lines are centred about it
    right,  // lines end at it
};

enum class KineticReveal {
    character, // one character after the other
    word,      // one word after the other
    none,      // all at once, unless the animation types on
};

enum class KineticAnimation {
    none,
    wave,     // a sine up and down
    punch,    // each glyph starts large and settles
    typeOn,   // as punch, and always revealed over time
    explode,  // glyphs fly apart, spin, grow and fade
    scramble, // fresh glyphs show random letters for a while
};

enum class KineticGlitch {
    digital, // glyph by glyph, sideways
    vhs,     // bands of six characters together, like a tape that loses tracking
    corrupt, // glyph by glyph, in all directions, some nearly gone
};

struct KineticTextParams {
    std::string text = "WE ARE\nTHE SIGNAL"; // never empty once it is parsed
    size_t uncutBytes = 0;                   // of a text that was cut; 0: it was not
    std::string fontPath = "assets/fonts/color/demo_neon_32.json";
    float positionX = 0.5f;    // from the left; 0..1 of the output's width, beyond that pixels
    float positionY = 0.42f;   // from the top, likewise
    float scale = 2.75f;       // pixels a texel, at least 0.01
    float tracking = -1.5f;    // pixels between characters
    float lineSpacing = 0.95f; // cell heights, at least 0.1
    KineticAlign align = KineticAlign::center;
    float alpha = 1.0f; // 0..1
    BlendMode blendMode = BlendMode::additive;
    KineticReveal reveal = KineticReveal::character;
    KineticAnimation animation = KineticAnimation::wave;
    float stagger = 0.035f;         // seconds a character, at least 0
    float writeSpeed = 22.0f;       // characters or words a second, at least 0.01
    float waveAmount = 10.0f;       // pixels
    float waveSpeed = 4.5f;         // radians a second
    float punchAmount = 0.45f;      // of the size, at least 0
    float punchDecay = 8.0f;        // a second, at least 0.01
    float scrambleDuration = 0.45f; // seconds, at least 0
    float scrambleRate = 24.0f;     // letters a second, at least 1
    float explodeAmount = 220.0f;   // pixels, at least 0
    float explodeSpeed = 1.2f;      // a second, at least 0.01
    float explodeSpin = 1.5f;       // turns
    float explodeFade = 0.75f;      // 0..1
    bool glowEnabled = false;
    float glowIntensity = 1.2f; // at least 0
    float glowRadius = 1.5f;    // texels, at least 0
    std::array<float, 3> glowColor = {0.2f, 0.95f, 1.0f};
    bool glitchEnabled = false;
    KineticGlitch glitch = KineticGlitch::digital;
    float glitchAmount = 1.0f;   // at least 0; more than 3 acts as 3
    float glitchJitter = 4.0f;   // pixels, at least 0
    float glitchFlicker = 0.25f; // 0..1
    float glitchRate = 18.0f;    // steps a second, at least 0.1
};

// Reads an entry's "params". What is missing, of another kind or not finite keeps its default; a word that
// is not known acts like the default of its key, but for "align" (left), "blendMode" (alpha) and "animation"
// (none). A backslash before an n in the text breaks the line.
KineticTextParams parseKineticTextParams(const JsonValue& params, const Reading& at = {});

// False when every glyph is there from the start.
inline bool revealsOverTime(const KineticTextParams& params) {
    return params.reveal != KineticReveal::none || params.animation == KineticAnimation::typeOn;
}
