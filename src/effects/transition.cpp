#include "effects/transition.h"

#include "config/paths.h"
#include "foundation/log.h"
#include "foundation/text.h"
#include "gpu/gl_functions.h"
#include "gpu/shader_lookup.h"

#include <algorithm>

namespace {

// In the order of TransitionUniform.
constexpr const char* kUniformNames[] = {
    "texA",          "texB",         "progress",    "startDelay", "effectId",   "softness",
    "bands",         "rotationDeg",  "blockSizePx", "noiseScale", "noiseSpeed", "noiseThreshold",
    "waveAmplitude", "dotFrequency", "dotPower",    "screenSize",
};
static_assert(std::size(kUniformNames) == static_cast<size_t>(TransitionUniform::count));

const UniformInfo& uniformOf(const TransitionRenderer& renderer, TransitionUniform uniform) {
    return renderer.uniforms[static_cast<size_t>(uniform)];
}

void bindPicture(GLenum unit, GLuint texture) {
    gl.ActiveTexture(unit);
    glBindTexture(GL_TEXTURE_2D, texture);
}

void buildRenderer(Device& device, TransitionRenderer& renderer, const ShaderPair& sources, const std::string& label) {
    renderer.program = findProgram(device.programs, sources, label);
    if (!renderer.program) return;
    renderer.values = makeUniformValues(device.programs, *renderer.program);
    for (size_t i = 0; i < renderer.uniforms.size(); ++i) {
        renderer.uniforms[i] = uniformNamed(renderer.program->uniforms, kUniformNames[i]);
    }
}

void writeUniforms(const TransitionRenderer& renderer, int width, int height, float progress,
                   const TransitionLook& look) {
    using U = TransitionUniform;
    const auto setFloat = [&](U uniform, float value) { setUniformFloat(uniformOf(renderer, uniform), value); };
    setUniformInt(uniformOf(renderer, U::texA), 0);
    setUniformInt(uniformOf(renderer, U::texB), 1);
    setFloat(U::progress, std::clamp(progress, 0.0f, 1.0f));
    setFloat(U::startDelay, look.startDelay);
    setUniformInt(uniformOf(renderer, U::effectId), look.effectId);
    setFloat(U::softness, look.softness);
    setUniformInt(uniformOf(renderer, U::bands), look.bands);
    setFloat(U::rotationDeg, look.rotationDeg);
    setFloat(U::blockSizePx, look.blockSizePx);
    setFloat(U::noiseScale, look.noiseScale);
    setFloat(U::noiseSpeed, look.noiseSpeed);
    setFloat(U::noiseThreshold, look.noiseThreshold);
    setFloat(U::waveAmplitude, look.waveAmplitude);
    setFloat(U::dotFrequency, look.dotFrequency);
    setFloat(U::dotPower, look.dotPower);
    setUniformVec2(uniformOf(renderer, U::screenSize), static_cast<float>(width), static_cast<float>(height));
}

} // namespace

bool initTransitionRenderer(Device& device, TransitionRenderer& renderer, const std::string& baseDir) {
    ShaderPair sources;
    if (!readShaderPair(baseDir, "transition", "Transition", sources)) {
        logLine("[TRANS] shader sources not found in DemoSceneResources/assets/shaders/transition or "
                "assets/shaders/transition\n");
        return false;
    }
    buildRenderer(device, renderer, sources, "transition");
    if (!renderer.program) {
        logLine("[TRANS] shader compile/link failed; transitions will cut.\n");
        return false;
    }
    logLine("[TRANS] renderer ready\n");
    return true;
}

bool createTransitionRenderer(Device& device, TransitionRenderer& renderer, const std::string& baseDir,
                              const std::string& label) {
    ShaderPair sources;
    if (readShaderPair(baseDir, "transition", "Transition", sources)) buildRenderer(device, renderer, sources, label);
    return renderer.program != nullptr;
}

void renderTransition(const Device& device, const TransitionRenderer& renderer, const Draw& draw, GLuint from,
                      GLuint to, float progress, const TransitionLook& look) {
    Draw mix = draw;
    mix.blending = BlendMode::opaque;
    beginDraw(mix);
    useProgram(*renderer.program, renderer.values);
    writeUniforms(renderer, draw.width, draw.height, progress, look);
    bindPicture(GL_TEXTURE0, from);
    bindPicture(GL_TEXTURE1, to);
    drawQuad(device.quad);
}
