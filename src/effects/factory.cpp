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
#include "gpu/shader_lookup.h"
#include "gpu/shader_pack.h"
#include "picture/pictures.h"

namespace {

// The picture of a channel; the place of a missing effect shows the show's fallback image.
const std::string& channelPath(const TimelineEntry& entry, const RuntimeConfig& show, int channel) {
    const bool standsIn = channel == 0 && entry.presence == Presence::missing;
    return standsIn ? show.fallbackImagePath : entry.channels[channel];
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

// A program with the values that the entry's params give it; false, with the driver's words in the log, without one.
bool buildProgram(const Materials& materials, const TimelineEntry& entry, const ShaderPair& sources,
                  const std::string& label, EffectProgram& pass) {
    ProgramTable& programs = materials.device.programs;
    pass.program = findProgram(programs, sources, label);
    if (!pass.program) return false;
    pass.values = makeUniformValues(programs, *pass.program);
    setParamValues(pass.values, *pass.program, entry.shaderParams);
    return true;
}

void buildBufferProgram(const Materials& materials, const TimelineEntry& entry, const std::string& path,
                        const std::string& vertexSource, Effect& effect) {
    if (path.empty()) return;
    const std::string source = readTextFile(path);
    if (source.empty()) {
        logLine("    [WARN] BufferA not found: %s\n", path.c_str());
        return;
    }
    buildProgram(materials, entry, {vertexSource, source}, std::string(orNone(entry.type)) + "_Buf", effect.buffer);
}

// A picture that is not there is no fault.
void loadChannel(TextureCache& textures, ChannelBinding& channel, const std::string& path) {
    if (path.empty() || !fileExists(path)) return;
    const TextureInfo info = loadPicture(textures, path);
    channel = {info.texture, info.width, info.height, path};
}

bool wantsChannel0(const Program* program) {
    return program && samplesChannel0(program->uniforms);
}

void loadChannels(const Materials& materials, const TimelineEntry& entry, Effect& effect) {
    TextureCache& textures = materials.device.textures;
    for (int i = 0; i < kChannelCount; ++i) {
        loadChannel(textures, effect.channels[i], channelPath(entry, materials.show, i));
    }
    const bool wantsImage = wantsChannel0(effect.main.program) || wantsChannel0(effect.buffer.program);
    if (effect.channels[0].texture || !wantsImage) return;
    loadChannel(textures, effect.channels[0], materials.show.fallbackImagePath);
    if (effect.channels[0].texture) logLine("  [TEX] using fallback for %s channel0\n", orNone(entry.type));
}

// What the effect's kind draws with its program; false when that is missing.
bool createKindBlock(const Materials& materials, const TimelineEntry& entry, Effect& effect) {
    Fonts& fonts = materials.fonts;
    const Program& program = *effect.main.program;
    const std::string& baseDir = materials.show.baseDir;
    switch (entry.kind) {
    case EffectKind::bitmapText:
        return createBitmapText(fonts, effect.bitmapText, paramsOf<BitmapTextParams>(entry), program);
    case EffectKind::kineticText:
        return createKineticText(fonts, effect.kineticText, paramsOf<KineticTextParams>(entry), baseDir, program);
    case EffectKind::lowerThird:
    case EffectKind::creditRoll:
        return createCaption(fonts, effect.caption, paramsOf<CaptionParams>(entry), clockLength(entry), baseDir,
                             program, materials.width, materials.height);
    case EffectKind::shapeText:
        return createShapeText(materials.device.textures, effect.shapeText, paramsOf<ShapeTextParams>(entry), baseDir,
                               program);
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
bool createProgramEffect(const Materials& materials, const TimelineEntry& entry, Effect& effect) {
    const ShaderPaths paths = shaderPathsOf(entry, materials.show);
    ShaderPair sources;
    if (!readSources(entry, paths, sources)) return false;
    effect.fit = paramsOf<ImageParams>(entry).fit;
    const bool isWhole = buildProgram(materials, entry, sources, orNone(entry.type), effect.main) &&
                         createKindBlock(materials, entry, effect);
    if (!isWhole) effect.main = {}; // wants no picture any more
    buildBufferProgram(materials, entry, paths.buffer, sources.vertex, effect);
    loadChannels(materials, entry, effect);
    return isWhole; // not before all that is wrong with the entry has been said
}

bool createKind(const Materials& materials, const TimelineEntry& entry, Effect& effect) {
    switch (entry.kind) {
    case EffectKind::none: return false;
    case EffectKind::image:
    case EffectKind::shader:
    case EffectKind::bitmapText:
    case EffectKind::kineticText:
    case EffectKind::lowerThird:
    case EffectKind::creditRoll:
    case EffectKind::shapeText: return createProgramEffect(materials, entry, effect);
    case EffectKind::blend: return createBlend(materials, entry, effect);
    case EffectKind::timelineBlend: return createTimelineBlend(materials, entry, effect);
    case EffectKind::chain: return createChain(materials, entry, effect);
    case EffectKind::dynamicSplit: return createDynamicSplit(materials, entry, effect);
    case EffectKind::pip: return createPip(materials, entry, effect);
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

Effect createEffect(const Materials& materials, const TimelineEntry& entry) {
    Effect effect;
    effect.type = toLower(entry.type);
    effect.alpha = entry.alpha;
    effect.timeScale = entry.timeScale;
    effect.blendMode = entry.blendMode;

    if (createKind(materials, entry, effect)) {
        effect.kind = entry.kind;
        return effect;
    }
    // What was made before it failed goes the ordinary way; the type stays, for whoever reports it.
    std::string type = std::move(effect.type);
    releaseEffect(effect);
    effect.type = std::move(type);
    return effect;
}
