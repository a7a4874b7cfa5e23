#include "picture/svg_mask.h"

#include "config/paths.h"
#include "foundation/log.h"
#include "gpu/shader_pack.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

constexpr float kLeastExtent = 0.001f; // units of the file
constexpr float kLeastRise = 0.0001f;  // pixels; flatter edges cross no row
constexpr float kMarginShare = 0.03f;  // of the shorter side
constexpr float kLeastMargin = 4.0f;   // pixels

// Crossings of edges with rows, in all: a fraction of a second. A busy logo has a tenth of it.
constexpr int64_t kMaxCrossings = 1 << 26;

// What a crossing at x leaves in its row: behind x the inside is the outside; a column right at x is inside
// whichever way.
constexpr uint8_t kToggle = 1;
constexpr uint8_t kTouch = 2;

struct Row {
    int count = 0;     // crossings
    int left = 0;      // of them left of column 0
    float last = 0.0f; // the rightmost
    int lastCount = 0; // crossings there
};

// Crossings need no sorting: a pixel is inside when the number of those before it is odd, which toggles and
// a running sum tell. One column more than the mask takes the toggles behind its last one.
struct Plane {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> marks; // (width + 1) a row
    std::vector<Row> rows;
    int64_t crossings = 0;
};

uint8_t* rowMarks(Plane& plane, int row) {
    return plane.marks.data() + static_cast<size_t>(row) * static_cast<size_t>(plane.width + 1);
}

// The column where the toggle of a crossing goes, and whether the crossing touches the column before that.
// False when it lies behind the last column.
bool crossingColumn(const Plane& plane, float x, int& column, bool& touches) {
    if (x > static_cast<float>(plane.width - 1)) return false;
    column = x < 0.0f ? 0 : static_cast<int>(std::ceil(x));
    touches = x >= 0.0f && static_cast<float>(column) == x;
    if (touches) ++column;
    return true;
}

void addCrossing(Plane& plane, int rowIndex, float x) {
    if (std::isnan(x)) return;
    Row& row = plane.rows[static_cast<size_t>(rowIndex)];
    if (row.count == 0 || x > row.last) {
        row.last = x;
        row.lastCount = 0;
    }
    row.lastCount += x == row.last;
    row.left += x < 0.0f;
    ++row.count;

    int column = 0;
    bool touches = false;
    if (!crossingColumn(plane, x, column, touches)) return;
    uint8_t* marks = rowMarks(plane, rowIndex);
    marks[column] ^= kToggle;
    if (touches) marks[column - 1] |= kTouch;
}

// An edge that is too flat to count can leave a row with an odd number of crossings. The rightmost then has
// no partner.
void dropUnpaired(Plane& plane, int rowIndex) {
    Row& row = plane.rows[static_cast<size_t>(rowIndex)];
    if (row.count % 2 == 0) return;
    row.left -= row.last < 0.0f;
    int column = 0;
    bool touches = false;
    if (!crossingColumn(plane, row.last, column, touches)) return;
    uint8_t* marks = rowMarks(plane, rowIndex);
    marks[column] ^= kToggle;
    if (touches && row.lastCount == 1) marks[column - 1] &= static_cast<uint8_t>(~kTouch);
}

// The first row whose centre lies at or below y; at most `height`. In double, where the half is exact.
int firstRowFrom(float y, int height) {
    const double row = std::ceil(static_cast<double>(y) - 0.5);
    return static_cast<int>(std::clamp(row, 0.0, static_cast<double>(height)));
}

void addEdge(Plane& plane, SvgPoint p, SvgPoint q) {
    if (!(std::fabs(q.y - p.y) >= kLeastRise)) return;
    const int first = firstRowFrom(std::min(p.y, q.y), plane.height);
    const int end = firstRowFrom(std::max(p.y, q.y), plane.height);
    plane.crossings += std::max(end - first, 0);
    if (plane.crossings > kMaxCrossings) return;
    for (int row = first; row < end; ++row) {
        const float yc = static_cast<float>(row) + 0.5f;
        addCrossing(plane, row, p.x + (q.x - p.x) * (yc - p.y) / (q.y - p.y));
    }
}

// One row of marks as pixels.
void writeRow(const Plane& plane, int rowIndex, const uint8_t* marks, uint8_t* pixels) {
    constexpr size_t kBlock = 8; // columns that are looked at together
    const size_t width = static_cast<size_t>(plane.width);
    uint8_t inside = 0;
    for (size_t c = 0; c < width;) {
        uint64_t block = 1;
        if (c + kBlock <= width) std::memcpy(&block, marks + c, kBlock);
        if (block == 0) {
            if (inside) std::memset(pixels + 4 * c, 255, 4 * kBlock);
            c += kBlock;
            continue;
        }
        for (const size_t end = std::min(c + kBlock, width); c < end; ++c) {
            inside ^= marks[c] & kToggle;
            if (inside || (marks[c] & kTouch)) std::memset(pixels + 4 * c, 255, 4);
        }
    }
    if (plane.rows[static_cast<size_t>(rowIndex)].left >= 2) std::memset(pixels, 255, 4);
}

SvgBounds extentOf(const std::vector<SvgContour>& contours) {
    constexpr float kFar = std::numeric_limits<float>::infinity();
    SvgBounds extent = {kFar, kFar, -kFar, -kFar};
    for (const SvgContour& contour : contours) {
        for (const SvgPoint point : contour) {
            extent.minX = std::min(extent.minX, point.x);
            extent.minY = std::min(extent.minY, point.y);
            extent.maxX = std::max(extent.maxX, point.x);
            extent.maxY = std::max(extent.maxY, point.y);
        }
    }
    return extent;
}

float widthOf(const SvgBounds& bounds) {
    return std::max(bounds.maxX - bounds.minX, kLeastExtent);
}

float heightOf(const SvgBounds& bounds) {
    return std::max(bounds.maxY - bounds.minY, kLeastExtent);
}

// A side that follows from the other one, to the nearest pixel. NaN, from bounds without end, is the least.
int derivedSide(float side) {
    const float most = static_cast<float>(kMaxRaster), least = static_cast<float>(kMinRaster);
    return side > least ? static_cast<int>(std::min(std::round(side), most)) : kMinRaster;
}

bool readContours(const std::string& text, SvgDrawing& drawing) {
    size_t position = 0, points = 0;
    std::string_view data;
    while (nextPathData(text, position, data)) {
        if (!parsePathData(data, drawing.contours, points)) return false;
    }
    return true;
}

} // namespace

std::string resolveSvgPath(const std::string& svgPath, const std::string& baseDir) {
    const std::string path = resolveAssetPath(svgPath, {}, "");
    for (const std::string& candidate :
         {joinPath(baseDir, path), joinPath(joinPath(baseDir, "DemoSceneResources"), path), path}) {
        if (fileExists(candidate)) return candidate;
    }
    return {};
}

bool loadSvg(const std::string& svgPath, const std::string& baseDir, SvgDrawing& drawing) {
    drawing = {};
    drawing.path = resolveSvgPath(svgPath, baseDir);
    if (drawing.path.empty()) {
        logLine("[SHAPETEXT] SVG not found: %.1024s\n", svgPath.c_str());
        return false;
    }
    const std::string text = readTextFile(drawing.path);
    if (!readContours(text, drawing)) {
        const int most = static_cast<int>(kMaxSvgPoints);
        logLine("[SHAPETEXT] SVG has more than %d points: %s\n", most, drawing.path.c_str());
        return false;
    }
    if (drawing.contours.empty()) {
        logLine("[SHAPETEXT] SVG has no supported paths: %s\n", drawing.path.c_str());
        return false;
    }
    if (!readViewBox(text, drawing.bounds)) drawing.bounds = extentOf(drawing.contours);
    return true;
}

void fitMask(const SvgBounds& bounds, int requestedWidth, int requestedHeight, int& width, int& height) {
    const float aspect = std::max(widthOf(bounds) / heightOf(bounds), kLeastExtent);
    const int mostWidth = std::clamp(requestedWidth, kMinRaster, kMaxRaster);
    const int mostHeight = std::clamp(requestedHeight, kMinRaster, kMaxRaster);
    width = mostWidth;
    height = std::min(mostHeight, derivedSide(static_cast<float>(width) / aspect));
    if (requestedHeight >= height) return;
    height = mostHeight;
    width = std::min(mostWidth, derivedSide(static_cast<float>(height) * aspect));
}

bool fillMask(const SvgDrawing& drawing, int width, int height, SvgMask& mask) {
    const SvgBounds& bounds = drawing.bounds;
    const float w = static_cast<float>(width), h = static_cast<float>(height);
    const float margin = std::max(std::min(w, h) * kMarginShare, kLeastMargin);
    const float scale = std::min((w - 2.0f * margin) / widthOf(bounds), (h - 2.0f * margin) / heightOf(bounds));
    const auto map = [&](SvgPoint p) {
        return SvgPoint{(p.x - bounds.minX) * scale + margin, (p.y - bounds.minY) * scale + margin};
    };

    const size_t columns = static_cast<size_t>(width), rows = static_cast<size_t>(height);
    Plane plane = {width, height, std::vector<uint8_t>((columns + 1) * rows), std::vector<Row>(rows), 0};
    for (const SvgContour& contour : drawing.contours) {
        SvgPoint from = map(contour.front());
        for (size_t i = 1; i <= contour.size(); ++i) {
            const SvgPoint to = map(i < contour.size() ? contour[i] : contour.front());
            addEdge(plane, from, to);
            from = to;
        }
        if (plane.crossings > kMaxCrossings) return false;
    }

    mask = {width, height, std::vector<uint8_t>(columns * rows * 4)};
    for (int row = 0; row < height; ++row) {
        dropUnpaired(plane, row);
        writeRow(plane, row, rowMarks(plane, row), mask.pixels.data() + static_cast<size_t>(row) * columns * 4);
    }
    return true;
}

bool rasterizeDrawing(const SvgDrawing& drawing, int requestedWidth, int requestedHeight, SvgMask& mask) {
    int width = 0, height = 0;
    fitMask(drawing.bounds, requestedWidth, requestedHeight, width, height);
    if (!fillMask(drawing, width, height, mask)) {
        logLine("[SHAPETEXT] SVG is too dense to fill: %s\n", drawing.path.c_str());
        return false;
    }
    logLine("[SHAPETEXT] Rasterized %s (%dx%d, %d contours)\n", drawing.path.c_str(), width, height,
            static_cast<int>(drawing.contours.size()));
    return true;
}

bool rasterizeSvg(const std::string& svgPath, const std::string& baseDir, int requestedWidth, int requestedHeight,
                  SvgMask& mask) {
    SvgDrawing drawing;
    return loadSvg(svgPath, baseDir, drawing) && rasterizeDrawing(drawing, requestedWidth, requestedHeight, mask);
}
