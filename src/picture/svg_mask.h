// Vector logos as masks: the contours of an SVG file, fitted into a raster and filled without softness.
#pragma once

#include "config/shape_text_params.h"
#include "picture/svg_path.h"

#include <cstdint>
#include <string>
#include <vector>

// What a file draws.
struct SvgDrawing {
    std::vector<SvgContour> contours; // of all paths, in file order; at least one
    SvgBounds bounds;                 // the view box, without one the extent of all points
    std::string path;                 // of the file
};

struct SvgMask {
    int width = 0; // pixels
    int height = 0;
    std::vector<uint8_t> pixels; // R, G, B, A, top row first; 255 four times inside, 0 four times outside
};

// The file under `baseDir`, then under its DemoSceneResources, then as written; empty when there is none.
std::string resolveSvgPath(const std::string& svgPath, const std::string& baseDir);

// Reads a file; false, with one line in the log, when there is none or nothing in it can be drawn.
bool loadSvg(const std::string& svgPath, const std::string& baseDir, SvgDrawing& drawing);

// Size of the mask for requested sides in pixels: what was asked for, clamped, the longer axis cut to the
// drawing's aspect.
void fitMask(const SvgBounds& bounds, int requestedWidth, int requestedHeight, int& width, int& height);

// Fits the drawing into a mask of that size and fills it by the even-odd rule. The shape keeps its aspect and
// sits at the top left, max(3 % of the shorter side, 4 pixels) from the edges. A pixel row is sampled at its
// centre, a column at its integer: column c is inside from crossing a to crossing b when a <= c <= b. A pair
// of crossings left of the mask lights column 0. False when the contours cross too many rows in all.
bool fillMask(const SvgDrawing& drawing, int width, int height, SvgMask& mask);

// All of it, with one line in the log for success and for each failure.
bool rasterizeSvg(const std::string& svgPath, const std::string& baseDir, int requestedWidth, int requestedHeight,
                  SvgMask& mask);
bool rasterizeDrawing(const SvgDrawing& drawing, int requestedWidth, int requestedHeight, SvgMask& mask);
