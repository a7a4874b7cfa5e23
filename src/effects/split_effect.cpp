#include "effects/split_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"
#include "foundation/text.h"
#include "gpu/shader_lookup.h"

#include <algorithm>

namespace {

enum Child { kA, kB };

// `first`, or `second` where `first` is no object.
const JsonValue& eitherObject(const JsonValue& params, const char* first, const char* second) {
    const JsonValue& value = find(params, first);
    return value.kind == JsonKind::object ? value : find(params, second);
}

void writeSplitUniforms(const Effect& effect, const Draw& draw) {
    const SplitBlock& split = effect.split;
    const SplitUniforms& uniforms = effect.splitUniforms;
    setStandardUniforms(effect.main.program->uniforms, draw);
    setUniformFloat(uniforms.position, split.position);
    setUniformFloat(uniforms.amplitude, split.amplitude);
    setUniformFloat(uniforms.speed, split.speed);
    setUniformFloat(uniforms.angle, split.angle);
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

bool createDynamicSplit(const Materials& materials, const TimelineEntry& entry, Effect& effect) {
    ShaderPair sources;
    if (!readShaderPair(entry.baseDir, "composition", "DynamicSplit", sources)) return false;
    effect.main.program = findProgram(materials.device.programs, sources, effect.type);
    if (!effect.main.program) return false;
    effect.main.values = makeUniformValues(materials.device.programs, *effect.main.program);
    effect.splitUniforms = resolveUniforms(*effect.main.program);
    const JsonValue& a = eitherObject(entry.params, "a", "source");
    const JsonValue& b = eitherObject(entry.params, "b", "target");
    effect.children.push_back(createChild(materials, a, entry, "a"));
    effect.children.push_back(createChild(materials, b, entry, "b"));
    if (!isRunnable(*effect.children[kA]) || !isRunnable(*effect.children[kB])) {
        logLine("    [ERROR] DynamicSplit child failed: a=%s b=%s\n", childType(a).c_str(), childType(b).c_str());
        return false;
    }
    effect.split = readSplit(entry.params);
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
