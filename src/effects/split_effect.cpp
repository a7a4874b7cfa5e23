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

constexpr float kPi = 3.1415927f;

void writeSplitUniforms(const Effect& effect, int width, int height) {
    const SplitParams& split = effect.split;
    const SplitUniforms& uniforms = effect.splitUniforms;
    setStandardUniforms(effect.mainProgram, effect.localTime, effect.frameCounter, effect.alpha, width, height);
    setUniformFloat(uniforms.position, split.position);
    setUniformFloat(uniforms.amplitude, split.amplitude);
    setUniformFloat(uniforms.speed, split.speed);
    setUniformFloat(uniforms.angle, split.angle * kPi / 180.0f);
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

bool createDynamicSplit(const TimelineEntry& entry, const RuntimeConfig& show, Effect& effect) {
    ShaderPair sources;
    if (!readShaderPair(show.baseDir, "composition", "DynamicSplit", sources)) return false;
    effect.mainProgram = borrowProgram(sources.vertex, sources.fragment, "", effect.type);
    if (!effect.mainProgram) return false;
    effect.splitUniforms = resolveUniforms(effect.mainProgram);
    for (const TimelineEntry& child : entry.children) effect.children.push_back(createChild(child, show));
    if (!isRunnable(*effect.children[kA]) || !isRunnable(*effect.children[kB])) {
        logLine("    [ERROR] DynamicSplit child failed: a=%s b=%s\n", orNone(entry.children[kA].type),
                orNone(entry.children[kB].type));
        return false;
    }
    effect.split = paramsOf<SplitParams>(entry);
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
