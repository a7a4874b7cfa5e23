#include "effects/split_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"
#include "foundation/text.h"
#include "gpu/shader_lookup.h"

#include <algorithm>

namespace {

enum Child { kA, kB };

constexpr float kPi = 3.1415927f;

void writeSplitUniforms(const Effect& effect, const Draw& draw) {
    const SplitParams& split = effect.split;
    const SplitUniforms& uniforms = effect.splitUniforms;
    setStandardUniforms(effect.main.program->uniforms, draw);
    setUniformFloat(uniforms.position, split.position);
    setUniformFloat(uniforms.amplitude, split.amplitude);
    setUniformFloat(uniforms.speed, split.speed);
    setUniformFloat(uniforms.angle, split.angle * kPi / 180.0f);
    setUniformFloat(uniforms.waveFrequency, split.waveFrequency);
    setUniformFloat(uniforms.feather, split.feather);
    setUniformInt(uniforms.mode, split.mode);
    setUniformInt(uniforms.invert, split.invert ? 1 : 0);
}

SplitUniforms resolveUniforms(const Program& program) {
    const auto resolve = [&](const char* name) { return uniformNamed(program.uniforms, name); };
    return {resolve("uPosition"),      resolve("uAmplitude"), resolve("uSpeed"), resolve("uAngle"),
            resolve("uWaveFrequency"), resolve("uFeather"),   resolve("uMode"),  resolve("uInvert")};
}

} // namespace

bool createDynamicSplit(const Materials& materials, const TimelineEntry& entry, Effect& effect) {
    ShaderPair sources;
    if (!readShaderPair(materials.show.baseDir, "composition", "DynamicSplit", sources)) return false;
    effect.main.program = findProgram(materials.device.programs, sources, effect.type);
    if (!effect.main.program) return false;
    effect.main.values = makeUniformValues(materials.device.programs, *effect.main.program);
    effect.splitUniforms = resolveUniforms(*effect.main.program);
    for (const TimelineEntry& child : entry.children) effect.children.push_back(createChild(materials, child));
    if (!isRunnable(*effect.children[kA]) || !isRunnable(*effect.children[kB])) {
        logLine("    [ERROR] DynamicSplit child failed: a=%s b=%s\n", orNone(entry.children[kA].type),
                orNone(entry.children[kB].type));
        return false;
    }
    effect.split = paramsOf<SplitParams>(entry);
    return true;
}

void drawDynamicSplit(Device& device, Effect& effect, const Draw& draw) {
    for (const Child child : {kA, kB}) {
        renderChild(device, *effect.children[child], effect.childTargets[child], draw, draw.time);
    }
    Draw edge = draw;
    edge.blending = effect.blendMode;
    beginDraw(edge);
    useProgram(*effect.main.program, effect.main.values);
    writeSplitUniforms(effect, draw);
    bindChannel(effect.main.program->uniforms, 0, effect.childTargets[kA].texture);
    bindChannel(effect.main.program->uniforms, 1, effect.childTargets[kB].texture);
    drawQuad(device.quad);
}
