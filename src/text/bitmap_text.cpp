#include "text/bitmap_text.h"

#include "gpu/gl_functions.h"
#include "text/bitmap_font.h"

#include <algorithm>

namespace {

BitmapTextUniforms resolveUniforms(const Program& program) {
    const auto resolve = [&](const char* name) { return uniformNamed(program.uniforms, name); };
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

bool createBitmapText(const Fonts& fonts, BitmapText& text, const BitmapTextParams& params, const Program& program) {
    text.params = params;
    text.uniforms = resolveUniforms(program);
    text.textLength = static_cast<int>(text.params.text.size());
    text.codeTexture = createCodeTexture(text.params.text);
    text.glyphTexture = fonts.bitmapGlyphs;
    return true;
}

void drawBitmapText(const Device& device, const BitmapText& text, Program& program, const UniformValues& values,
                    const Draw& draw) {
    const BitmapTextParams& params = text.params;
    const BitmapTextUniforms& uniforms = text.uniforms;
    Draw own = draw;
    own.opacity = params.alpha;
    beginDraw(own);
    useProgram(program, values);
    setStandardUniforms(program.uniforms, own);
    setColor(uniforms.textColor, params.textColor);
    setColor(uniforms.bgColor, params.bgColor);
    setUniformVec2(uniforms.textPos, params.textPosX, params.textPosY);
    setUniformFloat(uniforms.scale, params.scale);
    setUniformFloat(uniforms.spacing, params.spacing);
    setUniformFloat(uniforms.lineSpacing, params.lineSpacing);
    setUniformInt(uniforms.textLength, std::min(text.textLength, kMaxBitmapText));
    if (text.glyphTexture) bindTexture1D(1, text.glyphTexture, uniforms.glyphTex);
    bindTexture1D(0, text.codeTexture, uniforms.textTex);
    drawQuad(device.quad);
}

void releaseBitmapText(BitmapText& text) {
    if (text.codeTexture) glDeleteTextures(1, &text.codeTexture);
    text = {};
}
