// What a show says of a shape text, a vector logo.
#pragma once

#include "config/blend_mode.h"

constexpr int kMinRaster = 64; // pixels a side
constexpr int kMaxRaster = 4096;

enum class ShapeAnchor {
    left,   // x is the left edge, y the top edge
    right,  // x is the right edge, y the top edge
    center, // x and y are the centre
};

enum class ShapeAnimation {
    still,  // every other name, "wave" too: the wave is there whenever its amount is
    pulse,  // the size swings about the centre
    reveal, // drawn in from the left
};

// An entry's "params". Lengths are shares of the output, x and y counted from its top left.
struct ShapeTextParams {
    std::string svgPath = "assets/logos/demo_shape_text.svg";
    float x = 0.5f;
    float y = 0.45f;
    float width = 0.58f; // at least 0.001
    float height = 0.0f; // 0: as the mask's aspect has it
    ShapeAnchor anchor = ShapeAnchor::center;
    float rotation = 0.0f; // degrees, counter-clockwise about the centre
    float alpha = 1.0f;    // 0..1
    BlendMode blendMode = BlendMode::additive;
    ShapeAnimation animation = ShapeAnimation::pulse;
    float glow = 1.0f; // these are 0 or more
    float edge = 1.0f;
    float pulseAmount = 0.06f; // share of the size
    float pulseSpeed = 2.0f;   // radians a second
    float waveAmount = 0.0f;
    float waveSpeed = 3.0f;
    float scanSpeed = 4.0f;
    float revealSpeed = 1.2f; // widths a second
    int rasterWidth = 1024;   // pixels, kMinRaster..kMaxRaster
    int rasterHeight = 512;
    std::array<float, 4> fillColor = {0.95f, 1.0f, 1.0f, 1.0f};
    std::array<float, 4> glowColor = {0.1f, 0.88f, 1.0f, 0.85f};
};

// Values of another kind keep their defaults, and so do the missing numbers of a colour that has fewer than
// four.
ShapeTextParams parseShapeTextParams(const JsonValue& params, const Reading& at = {});
