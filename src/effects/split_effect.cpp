#include "effects/split_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"
#include "foundation/text.h"
#include "gpu/gl_functions.h"
#include "gpu/program_pool.h"
#include "gpu/quad.h"
#include "gpu/shader_lookup.h"

#include <algorithm>

namespace {

enum Child { kA, kB };

// `first`, or `second` where `first` is no object.
const JsonValue& eitherObject(const JsonValue& params, const char* first, const char* second) {
    const JsonValue& value = find(params, first);
    return value.kind == JsonKind::object ? value : find(params, second);
}

void writeSplitUniforms(const Effect& effect, int width, int height) {
    const SplitBlock& split = effect.split;
    const SplitUniforms& uniforms = effect.splitUniforms;
    setStandardUniforms(effect.mainProgram, effect.localTime, effect.frameCounter, effect.alpha, width, height);
    setUniformFloat(uniforms.position, split.position);
    setUniformFloat(uniforms.amplitude, split.amplitude);
    setUniformFloat(uniforms.speed, split.speed);
    setUniformFloat(uniforms.angle, split.angle);
    setUniformFloat(uniforms.waveFrequency, split.waveFrequency);
    setUniformFloat(uniforms.feather, split.feather);
    setUniformInt(uniforms.mode, split.mode);
    setUniformInt(uniforms.invert, split.invert ? 1 : 0);
}

SplitUniforms resolveUniforms(GLuint program) {
    const auto resolve = [&](const char* name) { return uniformNamed(program, name); };
    return {resolve("uPosition"),      resolve("uAmplitude"), resolve("uSpeed"), resolve("uAngle"),
            resolve("uWaveFrequency"), resolve("uFeather"),   resolve("uMode"),  resolve("uInvert")};
}

} // namespace

int splitModeCode(const std::string& name) {
    std::string mode = toLower(name);
    std::erase(mode, '-');
    std::erase(mode, '_');
    if (mode == "horizontal") return 1;
    if (mode == "diagonal") return 2;
    if (mode == "wave" || mode == "wavy" || mode == "ondulada") return 3;
    return 0;
}

SplitBlock readSplit(const JsonValue& params) {
    SplitBlock split;
    split.mode = splitModeCode(getString(find(params, "mode"), "vertical"));
    split.speed = getFinite(find(params, "speed"), split.speed);
    split.amplitude = getBounded(find(params, "amplitude"), split.amplitude, 0.0f, 1.0f);
    split.position = getBounded(find(params, "position"), split.position, 0.0f, 1.0f);
    split.feather = getBounded(find(params, "feather"), split.feather, 0.0001f, 0.5f);
    split.angle = getFinite(find(params, "angle"), 45.0f) * 3.1415927f / 180.0f;
    split.waveFrequency = getBounded(find(params, "waveFrequency"), split.waveFrequency, 0.1f, kNoBound);
    split.invert = getBool(find(params, "invert"), split.invert);
    return split;
}

bool createDynamicSplit(const TimelineEntry& entry, Effect& effect) {
    ShaderPair sources;
    if (!readShaderPair(entry.baseDir, "composition", "DynamicSplit", sources)) return false;
    effect.mainProgram = borrowProgram(sources.vertex, sources.fragment, "", effect.type);
    if (!effect.mainProgram) return false;
    effect.splitUniforms = resolveUniforms(effect.mainProgram);
    const JsonValue& a = eitherObject(entry.params, "a", "source");
    const JsonValue& b = eitherObject(entry.params, "b", "target");
    effect.children.push_back(createChild(a, entry, "a"));
    effect.children.push_back(createChild(b, entry, "b"));
    if (!isRunnable(*effect.children[kA]) || !isRunnable(*effect.children[kB])) {
        logLine("    [ERROR] DynamicSplit child failed: a=%s b=%s\n", childType(a).c_str(), childType(b).c_str());
        return false;
    }
    effect.split = readSplit(entry.params);
    return true;
}

void drawDynamicSplit(Effect& effect, int width, int height, const InputTexture* input) {
    for (const Child child : {kA, kB}) {
        propagateClock(effect, *effect.children[child], effect.localTime);
        renderToTarget(*effect.children[child], effect.childTargets[child], width, height, input);
    }
    glViewport(0, 0, width, height);
    glDisable(GL_DEPTH_TEST);
    setBlending(effect.blendMode);
    gl.UseProgram(effect.mainProgram);
    writeSplitUniforms(effect, width, height);
    bindChannel(effect.mainProgram, 0, effect.childTargets[kA].texture);
    bindChannel(effect.mainProgram, 1, effect.childTargets[kB].texture);
    drawQuad();
}
