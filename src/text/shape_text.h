// Shape text: a vector logo, rasterized once into a mask that its shader fills, lights and reveals.
#pragma once

#include "config/shape_text_params.h"
#include "gpu/device.h"
#include "gpu/draw.h"
#include "gpu/uniform_values.h"
#include "picture/pictures.h"

#include <string>

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

// Rasterizes the logo for a linked program; false when there is none.
bool createShapeText(TextureCache& textures, ShapeText& shape, const ShapeTextParams& params,
                     const std::string& baseDir, const Program& program);

// Where the logo is at `time` seconds in an output of width x height pixels, before it is rotated.
ShapeRect shapeTextRect(const ShapeText& shape, float time, int width, int height);

// How much of the logo is there at `time` seconds: 0 nothing, kFullReveal all of it. The rest above 1 is the way
// that a soft front needs to pass the right edge.
constexpr float kFullReveal = 1.08f;
float shapeTextReveal(const ShapeText& shape, float time);

// Blends as the logo's own params say. The shader gets the standard uniforms and
//   uRect (left, bottom, width, height; shares of the output, y up), uRotation (degrees), uReveal,
//   uFillColor, uGlowColor, uGlow, uEdge, uWaveAmount, uWaveSpeed, uScanSpeed as in "params",
//   uMask (first texel row: the logo's top), uTexelSize (1 / its size),
//   uGlowMask (GlowMask; black when it has none), uGlowMap (GlowPlace: scale, offset).
void drawShapeText(Device& device, const ShapeText& shape, Program& program, const UniformValues& values,
                   const Draw& draw);
