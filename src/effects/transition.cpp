#include "effects/transition.h"

#include "config/paths.h"
#include "foundation/log.h"
#include "foundation/text.h"
#include "gpu/gl_functions.h"
#include "gpu/shader_lookup.h"

#include <algorithm>

namespace {

struct TransitionStyle {
    const char* name;
    int code;
};

constexpr TransitionStyle kStyles[] = {
    {"fade", 0},     {"wipe", 1},        {"vertical", 1},      {"bands", 2},        {"curtains", 3}, {"horizontal", 4},
    {"dissolve", 5}, {"noise_smoke", 6}, {"noise_organic", 7}, {"noise_glitch", 8}, {"wavy", 9},     {"crosswarp", 10},
    {"burning", 11}, {"pixellated", 12}, {"radialwipe", 13},   {"dots", 14},
};

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

int transitionStyleCode(const std::string& name) {
    const std::string lower = toLower(name);
    for (const TransitionStyle& style : kStyles) {
        if (lower == style.name) return style.code;
    }
    return 0;
}

TransitionLook readTransitionLook(const std::string& style, const JsonValue& params) {
    TransitionLook look;
    const auto read = [&](const char* key, float& value) { value = getFinite(find(params, key), value); };
    look.effectId = transitionStyleCode(style);
    read("startDelay", look.startDelay);
    read("softness", look.softness);
    look.bands = getInt(find(params, "bands"), look.bands);
    read("rotation", look.rotationDeg);
    read("blockSize", look.blockSizePx);
    read("noiseScale", look.noiseScale);
    read("noiseSpeed", look.noiseSpeed);
    read("noiseThreshold", look.noiseThreshold);
    read("waveAmplitude", look.waveAmplitude);
    read("dotFrequency", look.dotFrequency);
    read("dotPower", look.dotPower);
    return look;
}

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
