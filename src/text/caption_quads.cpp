#include "text/caption_quads.h"

#include <algorithm>
#include <cmath>

namespace {

struct TextureRect {
    float u0 = 0.0f, v0 = 0.0f, u1 = 1.0f, v1 = 1.0f; // v0 at the rectangle's top
};

float smooth(float x) {
    const float t = std::clamp(x, 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

float alphaAt(const CaptionPose& pose, float y) {
    if (pose.edgeFade <= 0.0f) return pose.alpha;
    return pose.alpha * smooth(y / pose.edgeFade) * smooth((pose.outputHeight - y) / pose.edgeFade);
}

void appendVertex(std::vector<float>& vertices, float x, float y, float u, float v, float alpha,
                  const CaptionColor& color, CaptionKind kind) {
    const float vertex[kCaptionVertexFloats] = {x,       y,       u,       v,       alpha,
                                                color.r, color.g, color.b, color.a, static_cast<float>(kind)};
    vertices.insert(vertices.end(), std::begin(vertex), std::end(vertex));
}

float between(float a, float b, float share) {
    return a + (b - a) * share;
}

// Nothing for a rectangle without area or outside the clip.
void appendQuad(std::vector<float>& vertices, CaptionRect rect, TextureRect texture, const CaptionColor& color,
                CaptionKind kind, const CaptionPose& pose) {
    rect = {rect.x0 + pose.dx, rect.y0 + pose.dy, rect.x1 + pose.dx, rect.y1 + pose.dy};
    const CaptionRect& clip = pose.clip;
    const CaptionRect cut = {std::max(rect.x0, clip.x0), std::max(rect.y0, clip.y0), std::min(rect.x1, clip.x1),
                             std::min(rect.y1, clip.y1)};
    if (!(cut.x1 > cut.x0 && cut.y1 > cut.y0)) return;
    const float width = rect.x1 - rect.x0, height = rect.y1 - rect.y0;
    const float u0 = between(texture.u0, texture.u1, (cut.x0 - rect.x0) / width);
    const float u1 = between(texture.u0, texture.u1, (cut.x1 - rect.x0) / width);
    const float v0 = between(texture.v0, texture.v1, (cut.y0 - rect.y0) / height);
    const float v1 = between(texture.v0, texture.v1, (cut.y1 - rect.y0) / height);
    const float upper = alphaAt(pose, cut.y0), lower = alphaAt(pose, cut.y1);
    if (upper <= 0.0f && lower <= 0.0f) return;
    appendVertex(vertices, cut.x0, cut.y0, u0, v0, upper, color, kind);
    appendVertex(vertices, cut.x0, cut.y1, u0, v1, lower, color, kind);
    appendVertex(vertices, cut.x1, cut.y1, u1, v1, lower, color, kind);
    appendVertex(vertices, cut.x0, cut.y0, u0, v0, upper, color, kind);
    appendVertex(vertices, cut.x1, cut.y1, u1, v1, lower, color, kind);
    appendVertex(vertices, cut.x1, cut.y0, u1, v0, upper, color, kind);
}

} // namespace

void appendSolid(std::vector<float>& vertices, const CaptionRect& rect, const CaptionColor& color,
                 const CaptionPose& pose) {
    const float width = rect.x1 - rect.x0, height = rect.y1 - rect.y0;
    if (!(width > 0.0f && height > 0.0f)) return;
    // Half a pixel more on every side, for the pixels that the edges only touch.
    const float u = 0.5f / width, v = 0.5f / height;
    appendQuad(vertices, {rect.x0 - 0.5f, rect.y0 - 0.5f, rect.x1 + 0.5f, rect.y1 + 0.5f}, {-u, -v, 1.0f + u, 1.0f + v},
               color, CaptionKind::solid, pose);
}

void appendSoft(std::vector<float>& vertices, const CaptionRect& rect, float radiusX, float radiusY,
                const CaptionColor& color, const CaptionPose& pose) {
    const float x[] = {rect.x0 - radiusX, rect.x0, rect.x1, rect.x1 + radiusX};
    const float y[] = {rect.y0 - radiusY, rect.y0, rect.y1, rect.y1 + radiusY};
    constexpr float kDistance[] = {1.0f, 0.0f, 0.0f, 1.0f}; // from the rectangle, in radii
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column) {
            const CaptionRect part = {x[column], y[row], x[column + 1], y[row + 1]};
            const TextureRect distance = {kDistance[column], kDistance[row], kDistance[column + 1], kDistance[row + 1]};
            appendQuad(vertices, part, distance, color, CaptionKind::soft, pose);
        }
    }
}

void appendLine(std::vector<float>& vertices, const CaptionFont& font, const CaptionLine& line,
                const CaptionPose& pose) {
    const float scale = line.capPixels / font.capHeight;
    const float top = line.top - font.capTop * scale;
    float pen = line.x - 0.5f * font.gap * scale;
    for (const char c : line.text) {
        const CaptionGlyph& glyph = font.glyphs[static_cast<unsigned char>(c)];
        const float left = pen - glyph.left * scale;
        pen += glyph.advance * scale;
        const CaptionRect rect = {left + glyph.x0 * scale, top + glyph.y0 * scale, left + glyph.x1 * scale,
                                  top + glyph.y1 * scale};
        appendQuad(vertices, rect, {glyph.u0, glyph.v0, glyph.u1, glyph.v1}, line.color, CaptionKind::glyph, pose);
    }
}

void appendNothing(std::vector<float>& vertices) {
    const CaptionColor clear = {0.0f, 0.0f, 0.0f, 0.0f};
    appendQuad(vertices, {0.0f, 0.0f, 1.0f, 1.0f}, {}, clear, CaptionKind::glyph, {});
}
