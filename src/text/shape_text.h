// Shape text: a vector logo, rasterized once into a mask that its shader fills, lights and reveals.
#pragma once

#include "foundation/json.h"
#include "gpu/blending.h"
#include "gpu/uniforms.h"
#include "text/pictures.h"

#include <array>
#include <string>

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
    int rasterWidth = 1024;   // pixels, 64..4096
    int rasterHeight = 512;
    std::array<float, 4> fillColor = {0.95f, 1.0f, 1.0f, 1.0f};
    std::array<float, 4> glowColor = {0.1f, 0.88f, 1.0f, 0.85f};
};

// Of a shape text's program, resolved when the effect is made.
struct ShapeTextUniforms {
    UniformInfo rect, rotation, fillColor, glowColor, glow, edge, reveal, waveAmount, waveSpeed, scanSpeed, texelSize;
    UniformInfo mask, glowMask, glowMap;
};

struct ShapeText {
    ShapeTextParams params;
    ShapeTextUniforms uniforms;
    LogoTextures logo; // textures belong to the cache
};

// A rectangle of the output in shares of it, y up.
struct ShapeRect {
    float left = 0.0f;
    float bottom = 0.0f;
    float width = 0.0f;
    float height = 0.0f;
};

// Values of another kind keep their defaults, and so do the missing numbers of a colour that has fewer than
// four.
ShapeTextParams parseShapeTextParams(const JsonValue& params);

// Reads an entry's "params" and rasterizes the logo for a linked program; false when there is none.
bool createShapeText(ShapeText& shape, const JsonValue& params, const std::string& baseDir, GLuint program);

// Where the logo is at `time` seconds in an output of width x height pixels, before it is rotated.
ShapeRect shapeTextRect(const ShapeText& shape, float time, int width, int height);

// How much of the logo is there at `time` seconds: 0 nothing, kFullReveal all of it. The rest above 1 is the way
// that a soft front needs to pass the right edge.
constexpr float kFullReveal = 1.08f;
float shapeTextReveal(const ShapeText& shape, float time);

// Draws the logo at `time` seconds, in frame `frame`, into the current target, `width` x `height` pixels. Sets
// blending. The shader gets the standard uniforms and
//   uRect (left, bottom, width, height; shares of the output, y up), uRotation (degrees), uReveal,
//   uFillColor, uGlowColor, uGlow, uEdge, uWaveAmount, uWaveSpeed, uScanSpeed as in "params",
//   uMask (first texel row: the logo's top), uTexelSize (1 / its size),
//   uGlowMask (GlowMask; black when it has none), uGlowMap (GlowPlace: scale, offset).
void drawShapeText(const ShapeText& shape, GLuint program, float time, int frame, int width, int height);
