// The triangles of a caption: plain and soft rectangles and lines of letters, cut to a rectangle.
#pragma once

#include "config/caption_params.h"
#include "text/caption_font.h"

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

// Pixels from the output's top left.
struct CaptionRect {
    float x0 = 0.0f, y0 = 0.0f, x1 = 0.0f, y1 = 0.0f;
};

// One line of letters, laid out.
struct CaptionLine {
    std::string text; // as captionLines gives it
    float x = 0.0f;   // left
    float top = 0.0f; // of the capitals
    float capPixels = 0.0f;
    CaptionColor color;
};

// What the "kind" of a vertex means to the shader.
enum class CaptionKind { solid = 0, glyph = 1, soft = 2 };

constexpr size_t kCaptionVertexFloats = 10; // position 2, texture coordinate 2, alpha 1, colour 4, kind 1
constexpr size_t kCaptionQuadFloats = 6 * kCaptionVertexFloats;

constexpr float kEverywhere = std::numeric_limits<float>::max();

// How a piece of a caption stands at a moment.
struct CaptionPose {
    float dx = 0.0f, dy = 0.0f; // pixels
    float alpha = 1.0f;
    CaptionRect clip = {-kEverywhere, -kEverywhere, kEverywhere, kEverywhere}; // after the move
    // Rows fade towards the output's top and bottom over so many pixels; 0: they do not.
    float edgeFade = 0.0f;
    float outputHeight = 0.0f;
};

// A rectangle with smooth edges at any fraction of a pixel.
void appendSolid(std::vector<float>& vertices, const CaptionRect& rect, const CaptionColor& color,
                 const CaptionPose& pose);

// A rectangle that runs out softly over `radiusX` and `radiusY` pixels around it.
void appendSoft(std::vector<float>& vertices, const CaptionRect& rect, float radiusX, float radiusY,
                const CaptionColor& color, const CaptionPose& pose);

// A line of letters.
void appendLine(std::vector<float>& vertices, const CaptionFont& font, const CaptionLine& line,
                const CaptionPose& pose);

// One quad that shows nothing, for a frame without any: every draw draws.
void appendNothing(std::vector<float>& vertices);
