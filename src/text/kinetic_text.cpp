#include "text/kinetic_text.h"

#include "foundation/log.h"
#include "gpu/blending.h"
#include "gpu/gl_functions.h"

#include <utility>

namespace {

KineticUniforms resolveUniforms(GLuint program) {
    const auto named = [&](const char* name) { return uniformNamed(program, name); };
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

bool createKineticText(KineticText& text, const KineticTextParams& params, const std::string& baseDir, GLuint program) {
    ColorFont font;
    if (!loadColorFont(baseDir, params.fontPath, font)) return false;
    createKineticText(text, params, std::move(font), program);
    return true;
}

void createKineticText(KineticText& text, const KineticTextParams& params, ColorFont font, GLuint program) {
    if (params.uncutBytes > 0) logLine("[KTEXT] Text of %zu bytes cut to %zu\n", params.uncutBytes, kKineticMaxBytes);
    text.params = params;
    text.font = std::move(font);
    text.layout = layoutKineticText(text.params, text.font);
    reserveKineticGeometry(text.params, text.layout, text.geometry);
    text.uniforms = resolveUniforms(program);
    text.stream = createVertexStream({2, 2, 1});
}

void drawKineticText(KineticText& text, GLuint program, float time, int frame, int width, int height) {
    if (!program || !text.font.texture) return;
    buildKineticGeometry(text.params, text.layout, time, width, height, text.geometry);
    if (text.geometry.glyphs.empty() && text.geometry.glow.empty()) return;

    setBlending(text.params.blendMode);
    gl.UseProgram(program);
    setStandardUniforms(program, time, frame, text.params.alpha, width, height);
    setUniformInt(text.uniforms.fontTexture, 0);
    setUniformVec2(text.uniforms.texelSize, text.layout.texelU, text.layout.texelV);
    gl.ActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, text.font.texture);

    drawGlow(text);
    setUniformInt(text.uniforms.renderMode, 0);
    drawVertexStream(text.stream, text.geometry.glyphs);
    gl.UseProgram(0);
}

void releaseKineticText(KineticText& text) {
    deleteVertexStream(text.stream);
    releaseColorFont(text.font);
    text = {};
}
