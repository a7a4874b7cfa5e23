#include "text/bitmap_text.h"

#include "gpu/gl_functions.h"
#include "gpu/quad.h"
#include "text/bitmap_font.h"

#include <algorithm>

namespace {

void readColor(const JsonValue& value, float missing, std::array<float, 4>& color) {
    if (value.kind != JsonKind::array || value.items.size() < color.size()) return;
    for (size_t i = 0; i < color.size(); ++i) color[i] = getFinite(value.items[i], missing);
}

BitmapTextUniforms resolveUniforms(GLuint program) {
    const auto resolve = [&](const char* name) { return uniformNamed(program, name); };
    return {resolve("uTextColor"),  resolve("uBgColor"), resolve("uTextPos"),
            resolve("uScale"),      resolve("uSpacing"), resolve("uLineSpacing"),
            resolve("uTextLength"), resolve("uTextTex"), resolve("uGlyphTex")};
}

GLuint createCodeTexture(const std::string& text) {
    std::array<GLint, kMaxBitmapText> codes;
    codes.fill(' ');
    const size_t count = std::min(text.size(), codes.size());
    for (size_t i = 0; i < count; ++i) codes[i] = static_cast<unsigned char>(text[i]);
    return createIntegerTexture(codes.data(), kMaxBitmapText);
}

void setColor(const UniformInfo& uniform, const std::array<float, 4>& color) {
    setUniformVec4(uniform, color[0], color[1], color[2], color[3]);
}

void bindTexture1D(int unit, GLuint texture, const UniformInfo& sampler) {
    gl.ActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
    glBindTexture(GL_TEXTURE_1D, texture);
    setUniformInt(sampler, unit);
}

} // namespace

BitmapTextParams parseBitmapTextParams(const JsonValue& params) {
    BitmapTextParams result;
    result.text = getString(find(params, "text"), "HELLO");
    readColor(find(params, "textColor"), 1.0f, result.textColor);
    readColor(find(params, "bgColor"), 0.0f, result.bgColor);
    result.textPosX = getFinite(find(params, "textPosX"), result.textPosX);
    result.textPosY = getFinite(find(params, "textPosY"), result.textPosY);
    result.scale = getFinite(find(params, "scale"), result.scale);
    result.spacing = getFinite(find(params, "spacing"), result.spacing);
    result.lineSpacing = getFinite(find(params, "lineSpacing"), result.lineSpacing);
    return result;
}

bool createBitmapText(BitmapText& text, const JsonValue& params, GLuint program) {
    text.params = parseBitmapTextParams(params);
    text.params.program = program;
    text.uniforms = resolveUniforms(program);
    text.alpha = getBounded(find(params, "alpha"), text.alpha, 0.0f, 1.0f);
    text.textLength = static_cast<int>(text.params.text.size());
    text.codeTexture = createCodeTexture(text.params.text);
    return true;
}

void drawBitmapText(const BitmapText& text, GLuint program, float time, int frame, int width, int height) {
    const BitmapTextParams& params = text.params;
    const BitmapTextUniforms& uniforms = text.uniforms;
    gl.UseProgram(program);
    setStandardUniforms(program, time, frame, text.alpha, width, height);
    setColor(uniforms.textColor, params.textColor);
    setColor(uniforms.bgColor, params.bgColor);
    setUniformVec2(uniforms.textPos, params.textPosX, params.textPosY);
    setUniformFloat(uniforms.scale, params.scale);
    setUniformFloat(uniforms.spacing, params.spacing);
    setUniformFloat(uniforms.lineSpacing, params.lineSpacing);
    setUniformInt(uniforms.textLength, std::min(text.textLength, kMaxBitmapText));
    const GLuint glyphs = bitmapGlyphTexture();
    if (glyphs) bindTexture1D(1, glyphs, uniforms.glyphTex);
    bindTexture1D(0, text.codeTexture, uniforms.textTex);
    drawQuad();
}

void releaseBitmapText(BitmapText& text) {
    if (text.codeTexture) glDeleteTextures(1, &text.codeTexture);
    text = {};
}
