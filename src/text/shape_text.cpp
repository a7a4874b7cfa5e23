#include "text/shape_text.h"

#include "gpu/blending.h"
#include "gpu/gl_functions.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kMaskUnit = 0;
constexpr int kGlowUnit = 1;

ShapeTextUniforms resolveUniforms(const Program& program) {
    const auto named = [&](const char* name) { return uniformNamed(program.uniforms, name); };
    ShapeTextUniforms u;
    u.rect = named("uRect");
    u.rotation = named("uRotation");
    u.fillColor = named("uFillColor");
    u.glowColor = named("uGlowColor");
    u.glow = named("uGlow");
    u.edge = named("uEdge");
    u.reveal = named("uReveal");
    u.waveAmount = named("uWaveAmount");
    u.waveSpeed = named("uWaveSpeed");
    u.scanSpeed = named("uScanSpeed");
    u.texelSize = named("uTexelSize");
    u.mask = named("uMask");
    u.glowMask = named("uGlowMask");
    u.glowMap = named("uGlowMap");
    return u;
}

void setColor(const UniformInfo& uniform, const std::array<float, 4>& color) {
    setUniformVec4(uniform, color[0], color[1], color[2], color[3]);
}

void setLook(const ShapeText& shape, float time, int width, int height) {
    const ShapeTextParams& params = shape.params;
    const ShapeTextUniforms& u = shape.uniforms;
    const ShapeRect rect = shapeTextRect(shape, time, width, height);
    setUniformVec4(u.rect, rect.left, rect.bottom, rect.width, rect.height);
    setUniformFloat(u.rotation, params.rotation);
    setColor(u.fillColor, params.fillColor);
    setColor(u.glowColor, params.glowColor);
    setUniformFloat(u.glow, params.glow);
    setUniformFloat(u.edge, params.edge);
    setUniformFloat(u.reveal, shapeTextReveal(shape, time));
    setUniformFloat(u.waveAmount, params.waveAmount);
    setUniformFloat(u.waveSpeed, params.waveSpeed);
    setUniformFloat(u.scanSpeed, params.scanSpeed);
}

void bindTexture(TextureCache& textures, int unit, const UniformInfo& sampler, GLuint texture) {
    if (texture) {
        gl.ActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
        glBindTexture(GL_TEXTURE_2D, texture);
    } else {
        bindBlackTexture(textures, unit);
    }
    setUniformInt(sampler, unit);
}

void bindLogo(TextureCache& textures, const ShapeText& shape) {
    const ShapeTextUniforms& u = shape.uniforms;
    const LogoTextures& logo = shape.logo;
    if (u.glowMask.location >= 0) bindTexture(textures, kGlowUnit, u.glowMask, logo.glow.texture);
    bindTexture(textures, kMaskUnit, u.mask, logo.mask.texture);
    const float maskWidth = static_cast<float>(logo.mask.width), maskHeight = static_cast<float>(logo.mask.height);
    setUniformVec2(u.texelSize, 1.0f / maskWidth, 1.0f / maskHeight);
    const GlowPlace& place = logo.glowPlace;
    setUniformVec4(u.glowMap, place.scaleX, place.scaleY, place.offsetX, place.offsetY);
}

} // namespace

bool createShapeText(TextureCache& textures, ShapeText& shape, const ShapeTextParams& params,
                     const std::string& baseDir, const Program& program) {
    shape.params = params;
    shape.uniforms = resolveUniforms(program);
    const bool withGlow = shape.uniforms.glowMask.location >= 0;
    return loadLogo(textures, params.svgPath, baseDir, params.rasterWidth, params.rasterHeight, withGlow, shape.logo);
}

ShapeRect shapeTextRect(const ShapeText& shape, float time, int width, int height) {
    const ShapeTextParams& params = shape.params;
    float w = params.width, h = params.height;
    if (h <= 0.0f) {
        const float outputAspect = static_cast<float>(width) / static_cast<float>(std::max(height, 1));
        h = w * outputAspect * static_cast<float>(shape.logo.mask.height) /
            static_cast<float>(std::max(shape.logo.mask.width, 1));
    }
    float left = params.x, top = params.y;
    switch (params.anchor) {
    case ShapeAnchor::left: break;
    case ShapeAnchor::right: left -= w; break;
    case ShapeAnchor::center:
        left -= w * 0.5f;
        top -= h * 0.5f;
        break;
    }
    float size = 1.0f;
    if (params.animation == ShapeAnimation::pulse) size += std::sin(time * params.pulseSpeed) * params.pulseAmount;
    const float centerX = left + w * 0.5f, centerY = 1.0f - (top + h * 0.5f);
    return {centerX - w * size * 0.5f, centerY - h * size * 0.5f, w * size, h * size};
}

float shapeTextReveal(const ShapeText& shape, float time) {
    if (shape.params.animation != ShapeAnimation::reveal) return kFullReveal;
    return std::min(time * shape.params.revealSpeed, kFullReveal);
}

void drawShapeText(Device& device, const ShapeText& shape, Program& program, const UniformValues& values,
                   const Draw& draw) {
    if (!shape.logo.mask.texture) return;
    Draw own = draw;
    own.blending = shape.params.blendMode;
    own.opacity = shape.params.alpha;
    beginDraw(own);
    useProgram(program, values);
    setStandardUniforms(program.uniforms, own);
    setLook(shape, static_cast<float>(draw.time), draw.width, draw.height);
    bindLogo(device.textures, shape);
    drawQuad(device.quad);
}
