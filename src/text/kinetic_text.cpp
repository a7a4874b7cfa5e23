#include "text/kinetic_text.h"

#include "foundation/log.h"
#include "gpu/blending.h"
#include "gpu/gl_functions.h"

#include <utility>

namespace {

KineticUniforms resolveUniforms(const Program& program) {
    const auto named = [&](const char* name) { return uniformNamed(program.uniforms, name); };
    return {named("uFontTexture"),   named("uTextureTexelSize"), named("uRenderMode"), named("uGlowColor"),
            named("uGlowIntensity"), named("uGlowRadius"),       named("uGlowPad")};
}

void drawGlow(const KineticText& text) {
    const KineticTextParams& params = text.params;
    if (!params.glowEnabled || !(params.glowIntensity > 0.0f) || !(params.glowRadius > 0.0f)) return;
    setUniformInt(text.uniforms.renderMode, 1);
    setUniformVec3(text.uniforms.glowColor, params.glowColor[0], params.glowColor[1], params.glowColor[2]);
    setUniformFloat(text.uniforms.glowIntensity, params.glowIntensity);
    setUniformFloat(text.uniforms.glowRadius, params.glowRadius);
    setUniformFloat(text.uniforms.glowPad, glowPad(params));
    drawVertexStream(text.stream, text.geometry.glow);
}

} // namespace

bool createKineticText(Fonts& fonts, KineticText& text, const KineticTextParams& params, const std::string& baseDir,
                       const Program& program) {
    ColorFont font;
    if (!loadColorFont(fonts, baseDir, params.fontPath, font)) return false;
    createKineticText(text, params, std::move(font), program);
    return true;
}

void createKineticText(KineticText& text, const KineticTextParams& params, ColorFont font, const Program& program) {
    if (params.uncutBytes > 0) logLine("[KTEXT] Text of %zu bytes cut to %zu\n", params.uncutBytes, kKineticMaxBytes);
    text.params = params;
    text.font = std::move(font);
    text.layout = layoutKineticText(text.params, text.font);
    reserveKineticGeometry(text.params, text.layout, text.geometry);
    text.uniforms = resolveUniforms(program);
    text.stream = createVertexStream({2, 2, 1});
}

void drawKineticText(KineticText& text, Program& program, const UniformValues& values, const Draw& draw) {
    if (!text.font.texture) return;
    const float time = static_cast<float>(draw.time);
    buildKineticGeometry(text.params, text.layout, time, draw.width, draw.height, text.geometry);
    if (text.geometry.glyphs.empty() && text.geometry.glow.empty()) return;

    Draw own = draw;
    own.blending = text.params.blendMode;
    own.opacity = text.params.alpha;
    beginDraw(own);
    useProgram(program, values);
    setStandardUniforms(program.uniforms, own);
    setUniformInt(text.uniforms.fontTexture, 0);
    setUniformVec2(text.uniforms.texelSize, text.layout.texelU, text.layout.texelV);
    gl.ActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, text.font.texture);

    drawGlow(text);
    setUniformInt(text.uniforms.renderMode, 0);
    drawVertexStream(text.stream, text.geometry.glyphs);
}

void releaseKineticText(KineticText& text) {
    deleteVertexStream(text.stream);
    releaseColorFont(text.font);
    text = {};
}
