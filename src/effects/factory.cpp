#include "effects/blend_effect.h"
#include "effects/chain_effect.h"
#include "effects/image_effect.h"
#include "effects/param_uniforms.h"
#include "effects/pip_effect.h"
#include "effects/split_effect.h"
#include "effects/timeline_blend_effect.h"
#include "foundation/log.h"
#include "foundation/text.h"
#include "gpu/program.h"
#include "gpu/program_pool.h"
#include "gpu/shader_lookup.h"
#include "gpu/shader_pack.h"
#include "text/pictures.h"

namespace {

// The picture of a channel; the place of a missing effect shows the show's fallback image.
const std::string& channelPath(const TimelineEntry& entry, const RuntimeConfig& show, int channel) {
    const bool standsIn = channel == 0 && entry.presence == Presence::missing;
    return standsIn ? show.fallbackImagePath : entry.channels[channel];
}

// Uniforms keep their values in a program, so what an effect writes only once tells programs apart, and so does its
// kind, which writes others than the next.
std::string programSettings(const TimelineEntry& entry) {
    return std::to_string(static_cast<int>(entry.kind)) + '\n' + describeParamUniforms(entry.shaderParams);
}

// False when there is no fragment source.
bool readSources(const TimelineEntry& entry, const ShaderPaths& paths, ShaderPair& sources) {
    if (entry.kind == EffectKind::image) {
        sources = {kQuadVertexSource, kQuadFragmentSource};
        return true;
    }
    sources.vertex = paths.vertex.empty() ? "" : readTextFile(paths.vertex);
    if (sources.vertex.empty()) {
        logLine("    [WARN] Vert not found: %s (using default)\n", orNone(paths.vertex));
        sources.vertex = kQuadVertexSource;
    }
    sources.fragment = paths.fragment.empty() ? "" : readTextFile(paths.fragment);
    if (!sources.fragment.empty()) return true;
    logLine("    [ERROR] Frag not found: %s\n", orNone(paths.fragment));
    return false;
}

GLuint createBufferProgram(const TimelineEntry& entry, const std::string& path, const std::string& vertexSource,
                           const std::string& settings) {
    if (path.empty()) return 0;
    const std::string source = readTextFile(path);
    if (source.empty()) {
        logLine("    [WARN] BufferA not found: %s\n", path.c_str());
        return 0;
    }
    return borrowProgram(vertexSource, source, settings, std::string(orNone(entry.type)) + "_Buf");
}

// A picture that is not there is no fault.
void loadChannel(ChannelBinding& channel, const std::string& path) {
    if (path.empty() || !fileExists(path)) return;
    const TextureInfo info = loadPicture(path);
    channel = {info.texture, info.width, info.height, path};
}

void loadChannels(const TimelineEntry& entry, const RuntimeConfig& show, Effect& effect) {
    for (int i = 0; i < kChannelCount; ++i) loadChannel(effect.channels[i], channelPath(entry, show, i));
    const bool wantsImage = samplesChannel0(effect.mainProgram) || samplesChannel0(effect.bufferProgram);
    if (effect.channels[0].texture || !wantsImage) return;
    loadChannel(effect.channels[0], show.fallbackImagePath);
    if (effect.channels[0].texture) logLine("  [TEX] using fallback for %s channel0\n", orNone(entry.type));
}

// What the effect's kind draws with its program; false when that is missing.
bool createKindBlock(const TimelineEntry& entry, const RuntimeConfig& show, Effect& effect) {
    const GLuint program = effect.mainProgram;
    switch (entry.kind) {
    case EffectKind::bitmapText: return createBitmapText(effect.bitmapText, paramsOf<BitmapTextParams>(entry), program);
    case EffectKind::kineticText:
        return createKineticText(effect.kineticText, paramsOf<KineticTextParams>(entry), show.baseDir, program);
    case EffectKind::lowerThird:
    case EffectKind::creditRoll:
        return createCaption(effect.caption, paramsOf<CaptionParams>(entry), clockLength(entry), show.baseDir, program);
    case EffectKind::shapeText:
        return createShapeText(effect.shapeText, paramsOf<ShapeTextParams>(entry), show.baseDir, program);
    case EffectKind::none:
    case EffectKind::image:
    case EffectKind::shader:
    case EffectKind::blend:
    case EffectKind::timelineBlend:
    case EffectKind::chain:
    case EffectKind::dynamicSplit:
    case EffectKind::pip: return true;
    }
    return true;
}

// Effects with a main program of their own.
bool createProgramEffect(const TimelineEntry& entry, const RuntimeConfig& show, Effect& effect) {
    const ShaderPaths paths = shaderPathsOf(entry, show);
    ShaderPair sources;
    if (!readSources(entry, paths, sources)) return false;
    const std::string settings = programSettings(entry);
    effect.mainProgram = borrowProgram(sources.vertex, sources.fragment, settings, orNone(entry.type));
    effect.fit = paramsOf<ImageParams>(entry).fit;
    effect.isDreamEntity = effect.type == "dreamentity";
    if (effect.mainProgram && !createKindBlock(entry, show, effect)) {
        returnProgram(effect.mainProgram);
        effect.mainProgram = 0;
    }
    effect.bufferProgram = createBufferProgram(entry, paths.buffer, sources.vertex, settings);
    effect.hasBuffer = effect.bufferProgram != 0;
    loadChannels(entry, show, effect);
    if (!effect.mainProgram) return false; // not before all that is wrong with the entry has been said
    for (const GLuint program : {effect.mainProgram, effect.bufferProgram}) {
        if (!program) continue;
        resetSamplers(program);
        writeParamUniforms(program, entry.shaderParams);
    }
    return true;
}

bool createKind(const TimelineEntry& entry, const RuntimeConfig& show, Effect& effect) {
    switch (entry.kind) {
    case EffectKind::none: return false;
    case EffectKind::image:
    case EffectKind::shader:
    case EffectKind::bitmapText:
    case EffectKind::kineticText:
    case EffectKind::lowerThird:
    case EffectKind::creditRoll:
    case EffectKind::shapeText: return createProgramEffect(entry, show, effect);
    case EffectKind::blend: return createBlend(entry, show, effect);
    case EffectKind::timelineBlend: return createTimelineBlend(entry, show, effect);
    case EffectKind::chain: return createChain(entry, show, effect);
    case EffectKind::dynamicSplit: return createDynamicSplit(entry, show, effect);
    case EffectKind::pip: return createPip(entry, show, effect);
    }
    return false;
}

} // namespace

ShaderPaths shaderPathsOf(const TimelineEntry& entry, const RuntimeConfig& show) {
    if (const auto* glitch = std::get_if<GlitchParams>(&entry.params)) {
        return resolveGlitchShaders(glitchShaderName(glitch->style), show.baseDir);
    }
    return resolveShaderSources(entry.type, show.baseDir);
}

Effect createEffect(const TimelineEntry& entry, const RuntimeConfig& show) {
    Effect effect;
    effect.id = entry.id;
    effect.type = toLower(entry.type);
    effect.alpha = entry.alpha;
    effect.timeScale = entry.timeScale;
    effect.duration = entry.duration;
    effect.blendMode = entry.blendMode;

    if (createKind(entry, show, effect)) {
        effect.kind = entry.kind;
        return effect;
    }
    // What was made before it failed goes the ordinary way; the type stays, for whoever reports it.
    std::string type = std::move(effect.type);
    releaseEffect(effect);
    effect.type = std::move(type);
    return effect;
}
