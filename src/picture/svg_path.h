// What the player reads of an SVG file: the path data of its path elements, flattened into contours, and its
// view box.
//
// The file is no XML to it. Four patterns say which text counts, and the functions here match them as an
// ECMAScript engine would, in time linear in the text and with a constant stack, where such engines recurse
// once a character.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

struct SvgPoint {
    float x = 0.0f; // units of the file; y down
    float y = 0.0f;
};

using SvgContour = std::vector<SvgPoint>; // the last point connects to the first; at least 3 points

struct SvgBounds {
    float minX = 0.0f;
    float minY = 0.0f;
    float maxX = 1.0f;
    float maxY = 1.0f;
};

// A file stops being read at so many points: 32 MB of them, a hundred times what a busy logo has.
constexpr size_t kMaxSvgPoints = 1 << 22;

// The next match at or behind `position`, which then moves to the match's end. False when there is none.
//   <path\b[^>]*\bd\s*=\s*["']([^"']+)["'][^>]*                 `data`: capture 1
bool nextPathData(std::string_view text, size_t& position, std::string_view& data);
//   [-+]?(?:(?:\d*\.\d+)|(?:\d+\.?))(?:[eE][-+]?\d+)?           `number`: the match
bool nextNumber(std::string_view text, size_t& position, std::string_view& number);
//   one letter of AaCcHhLlMmQqSsTtVvZz, or a number             `token`: the match
bool nextPathToken(std::string_view text, size_t& position, std::string_view& token);

// Capture 1 of the first match of the name followed by \s*=\s*["']([^"']+)["']; empty when there is none.
std::string_view findAttribute(std::string_view text, std::string_view name);

// The nearest float of a match of the number pattern. Beyond the range of floats: the largest one of that
// sign; beyond the range of doubles 0.
float svgNumber(std::string_view number);

// Appends the contours of path data. Curves become 24 (cubic) and 18 (quadratic) lines of equal parameter
// steps; arcs are skipped, and so are groups of numbers that are cut short and numbers without a command.
// Contours of fewer than 3 points are dropped. `points` counts on from its value; false when it went past
// kMaxSvgPoints, where parsing stops.
bool parsePathData(std::string_view data, std::vector<SvgContour>& contours, size_t& points);

// False when the text has no "viewBox" attribute; with fewer than four numbers in it `bounds` becomes the
// unit square.
bool readViewBox(std::string_view text, SvgBounds& bounds);
