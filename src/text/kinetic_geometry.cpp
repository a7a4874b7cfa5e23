#include "text/kinetic_geometry.h"

#include "text/kinetic_glitch.h"
#include "text/kinetic_random.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr size_t kQuadFloats = kKineticVertexFloats * kKineticQuadVertices;
constexpr float kLongRevealed = 1e9f; // progress of what needs no revealing
constexpr float kLeastAppear = 0.15f; // alpha with which a glyph sets out

struct Quad {
    float x = 0.0f, y = 0.0f; // top left, in pixels
    float width = 0.0f, height = 0.0f;
    float u0 = 0.0f, v0 = 0.0f, u1 = 0.0f, v1 = 0.0f; // left, bottom, right, top
    float alpha = 1.0f;
    float angle = 0.0f; // radians about the centre, clockwise as seen
};

// What is the same for all glyphs of a frame.
struct Frame {
    const KineticTextParams& params;
    const KineticLayout& layout;
    GlitchFrame glitch;
    float time = 0.0f;
    float written = 0.0f;                 // characters or words
    float anchorX = 0.0f, anchorY = 0.0f; // pixels
    float lineStep = 0.0f;
    float glowPad = 0.0f;                 // of the text
    float waveSin = 0.0f, waveCos = 1.0f; // of the wave at the first glyph
    int limit = 0;                        // units before this one are there
    bool overTime = true;
};

float anchorOf(float position, int size) {
    return position >= 0.0f && position <= 1.0f ? position * static_cast<float>(size) : position;
}

Frame makeFrame(const KineticTextParams& params, const KineticLayout& layout, float time, int width, int height) {
    Frame frame = {params, layout, glitchFrame(params, layout, time)};
    frame.time = time;
    frame.written = time * params.writeSpeed;
    frame.anchorX = anchorOf(params.positionX, width);
    frame.anchorY = anchorOf(params.positionY, height);
    frame.lineStep = layout.cellHeight * params.lineSpacing;
    frame.glowPad = glowPad(params);
    frame.waveSin = std::sin(time * params.waveSpeed);
    frame.waveCos = std::cos(time * params.waveSpeed);
    frame.overTime = revealsOverTime(params);
    constexpr int kMost = std::numeric_limits<int>::max();
    const int whole = floorToInt(frame.written);
    frame.limit = !frame.overTime || whole == kMost ? kMost : whole + 1;
    return frame;
}

float lineStart(const Frame& frame, int line) {
    const float width = frame.layout.lineWidths[static_cast<size_t>(line)];
    switch (frame.params.align) {
    case KineticAlign::left: return frame.anchorX;
    case KineticAlign::center: return frame.anchorX - width * 0.5f;
    case KineticAlign::right: return frame.anchorX - width;
    }
    return frame.anchorX;
}

// The cell that is shown: while a glyph scrambles, one of another letter.
const ColorGlyph& shownCell(const Frame& frame, const KineticGlyph& glyph, float progress) {
    const KineticLayout& layout = frame.layout;
    if (layout.letters.empty()) return glyph.cell;
    const float age = progress / frame.params.writeSpeed; // seconds
    if (!(age >= 0.0f && age < frame.params.scrambleDuration)) return glyph.cell;
    const uint32_t step = static_cast<uint32_t>(floorToInt(age * frame.params.scrambleRate));
    uint32_t n = glyph.seed + step * kStepSeed + glyph.code;
    n ^= n >> 16;
    n *= 0x7feb352du;
    n ^= n >> 16;
    const ScrambleLetter& letter = layout.letters[n % layout.letters.size()];
    const int code = letter.first != glyph.code ? letter.first : letter.second;
    return code >= 0 ? layout.cells[static_cast<size_t>(code)] : glyph.cell;
}

struct Explosion {
    float x = 0.0f, y = 0.0f; // pixels
    float size = 1.0f;        // factor
    float alpha = 1.0f;
    float angle = 0.0f;
};

Explosion explosionOf(const KineticGlyph& glyph, const KineticTextParams& params, float localTime) {
    const float e = std::clamp(1.0f - std::exp(-localTime * params.explodeSpeed), 0.0f, 1.0f);
    const float s = (3.0f - 2.0f * e) * e * e;
    Explosion explosion;
    explosion.x = glyph.flightX * s;
    explosion.y = glyph.flightY * s;
    explosion.size = glyph.growth * s + 1.0f;
    explosion.alpha = std::clamp(1.0f - s * params.explodeFade, 0.0f, 1.0f);
    explosion.angle = glyph.spin * s;
    return explosion;
}

Quad glyphQuad(const Frame& frame, const KineticGlyph& glyph, float penX, float baseY, float progress) {
    const KineticTextParams& params = frame.params;
    const float localTime = std::max(frame.time - static_cast<float>(glyph.charIndex) * params.stagger, 0.0f);
    float wave = 0.0f, punch = 0.0f;
    float appear = frame.overTime ? std::clamp(progress, kLeastAppear, 1.0f) : 1.0f;
    Explosion explosion;
    switch (params.animation) {
    case KineticAnimation::none: break;
    case KineticAnimation::wave:
        // The sine of a sum, for the price of two products.
        wave = (frame.waveSin * glyph.phaseCos + frame.waveCos * glyph.phaseSin) * params.waveAmount;
        break;
    case KineticAnimation::punch:
    case KineticAnimation::typeOn: punch = std::exp(-localTime * params.punchDecay) * params.punchAmount; break;
    case KineticAnimation::explode:
        if (params.explodeAmount > 0.0f) explosion = explosionOf(glyph, params, localTime);
        break;
    case KineticAnimation::scramble: appear = std::clamp(progress + kLeastAppear, kLeastAppear, 1.0f); break;
    }
    const GlitchOffset glitch = frame.glitch.isOn ? glitchOffset(frame.glitch, glyph) : GlitchOffset{};
    const ColorGlyph& cell = shownCell(frame, glyph, progress);

    const float cellWidth = frame.layout.cellWidth, cellHeight = frame.layout.cellHeight;
    const float factor = (punch + 1.0f) * explosion.size;
    Quad quad;
    quad.width = factor * cellWidth;
    quad.height = factor * cellHeight;
    quad.x = penX - (quad.width - cellWidth) * 0.5f + explosion.x + glitch.x;
    quad.y = wave + baseY - punch * cellHeight * 0.35f - (quad.height - cellHeight) * 0.5f + explosion.y + glitch.y;
    quad.u0 = cell.u0 + glitch.u;
    quad.v0 = cell.v0 + glitch.v;
    quad.u1 = cell.u1 + glitch.u;
    quad.v1 = cell.v1 + glitch.v;
    quad.alpha = appear * explosion.alpha * glitch.alpha;
    quad.angle = explosion.angle;
    return quad;
}

bool isFinite(const Quad& quad) {
    return std::isfinite(quad.x + quad.y + quad.width + quad.height + quad.angle) &&
           std::isfinite(quad.u0 + quad.v0 + quad.u1 + quad.v1 + quad.alpha);
}

Quad grown(Quad quad, float pad) {
    quad.x -= pad;
    quad.y -= pad;
    quad.width += pad * 2.0f;
    quad.height += pad * 2.0f;
    return quad;
}

float* putVertex(float* out, float x, float y, float u, float v, float alpha) {
    out[0] = x;
    out[1] = y;
    out[2] = u;
    out[3] = v;
    out[4] = alpha;
    return out + kKineticVertexFloats;
}

// Writes the six vertices of corners given as top left, bottom left, bottom right, top right; returns what
// lies behind them.
float* putCorners(float* out, const Quad& q, float x0, float y0, float x1, float y1, float x2, float y2, float x3,
                  float y3) {
    out = putVertex(out, x0, y0, q.u0, q.v1, q.alpha);
    out = putVertex(out, x1, y1, q.u0, q.v0, q.alpha);
    out = putVertex(out, x2, y2, q.u1, q.v0, q.alpha);
    out = putVertex(out, x0, y0, q.u0, q.v1, q.alpha);
    out = putVertex(out, x2, y2, q.u1, q.v0, q.alpha);
    return putVertex(out, x3, y3, q.u1, q.v1, q.alpha);
}

float* putQuad(float* out, const Quad& q) {
    const float right = q.x + q.width, bottom = q.y + q.height;
    if (q.angle == 0.0f) return putCorners(out, q, q.x, q.y, q.x, bottom, right, bottom, right, q.y);
    const float halfX = q.width * 0.5f, halfY = q.height * 0.5f;
    const float centerX = q.x + halfX, centerY = q.y + halfY;
    // The half axes, turned; the corners are their sums and differences.
    const float c = std::cos(q.angle), s = std::sin(q.angle);
    const float ax = halfX * c, ay = halfX * s, bx = -halfY * s, by = halfY * c;
    return putCorners(out, q, centerX - ax - bx, centerY - ay - by, centerX - ax + bx, centerY - ay + by,
                      centerX + ax + bx, centerY + ay + by, centerX + ax - bx, centerY + ay - by);
}

} // namespace

float glowPad(const KineticTextParams& params) {
    return params.glowEnabled ? params.glowRadius * params.scale * 1.5f : 0.0f;
}

void reserveKineticGeometry(const KineticTextParams& params, const KineticLayout& layout, KineticGeometry& geometry) {
    geometry.glyphs.reserve(layout.glyphs.size() * kQuadFloats);
    if (params.glowEnabled) geometry.glow.reserve(layout.glyphs.size() * kQuadFloats);
}

void buildKineticGeometry(const KineticTextParams& params, const KineticLayout& layout, float time, int width,
                          int height, KineticGeometry& geometry) {
    const Frame frame = makeFrame(params, layout, time, width, height);
    const bool hasGlow = frame.glowPad > 0.0f && std::isfinite(frame.glowPad);
    // Sized for the whole text first and cut afterwards: filling costs less than growing quad by quad.
    geometry.glyphs.resize(layout.glyphs.size() * kQuadFloats);
    geometry.glow.resize(hasGlow ? layout.glyphs.size() * kQuadFloats : 0);
    float* glyphEnd = geometry.glyphs.data();
    float* glowEnd = geometry.glow.data();

    int line = -1;
    float start = 0.0f, baseY = 0.0f;
    for (const KineticGlyph& glyph : layout.glyphs) {
        const int unit = params.reveal == KineticReveal::word ? glyph.wordIndex : glyph.charIndex;
        const float progress = frame.overTime ? frame.written - static_cast<float>(unit) : kLongRevealed;
        const bool revealed = params.animation == KineticAnimation::scramble ? progress >= 0.0f : unit < frame.limit;
        if (!revealed) break; // units only grow along the text
        if (glyph.line != line) {
            line = glyph.line;
            start = lineStart(frame, line);
            baseY = static_cast<float>(line) * frame.lineStep + frame.anchorY;
        }
        const Quad quad = glyphQuad(frame, glyph, start + glyph.pen, baseY, progress);
        if (!isFinite(quad)) continue;
        if (hasGlow) glowEnd = putQuad(glowEnd, grown(quad, frame.glowPad));
        glyphEnd = putQuad(glyphEnd, quad);
    }
    geometry.glyphs.resize(static_cast<size_t>(glyphEnd - geometry.glyphs.data()));
    geometry.glow.resize(static_cast<size_t>(glowEnd - geometry.glow.data()));
    geometry.glyphVertices = geometry.glyphs.size() / kKineticVertexFloats;
    geometry.glowVertices = geometry.glow.size() / kKineticVertexFloats;
}
