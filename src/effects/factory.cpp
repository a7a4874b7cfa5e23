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

struct KindName {
    const char* type;
    EffectKind kind;
};

// Every other type is a shader effect.
constexpr KindName kKinds[] = {
    {"blend", EffectKind::blend},
    {"timeline_blend", EffectKind::timelineBlend},
    {"chain", EffectKind::chain},
    {"dynamicsplit", EffectKind::dynamicSplit},
    {"piptexture", EffectKind::pip},
    {"pip", EffectKind::pip},
    {"image", EffectKind::image},
    {"bitmaptext", EffectKind::bitmapText},
    {"kinetictext", EffectKind::kineticText},
    {"lowerthird", EffectKind::caption},
    {"creditroll", EffectKind::caption},
    {"shapetext", EffectKind::shapeText},
};

EffectKind kindOf(const TimelineEntry& entry, const std::string& type) {
    for (const KindName& named : kKinds) {
        if (type == named.type) return named.kind;
    }
    // An entry without a type that has an image stands for that image; composites make such entries in
    // place of a child that is missing.
    if (type.empty() && !entry.channels[0].empty()) return EffectKind::image;
    return EffectKind::shader;
}

// False when there is no fragment source.
bool readSources(const TimelineEntry& entry, EffectKind kind, ShaderPair& sources) {
    if (kind == EffectKind::image) {
        sources = {kQuadVertexSource, kQuadFragmentSource};
        return true;
    }
    sources.vertex = entry.vertPath.empty() ? "" : readTextFile(entry.vertPath);
    if (sources.vertex.empty()) {
        logLine("    [WARN] Vert not found: %s (using default)\n", orNone(entry.vertPath));
        sources.vertex = kQuadVertexSource;
    }
    sources.fragment = entry.fragPath.empty() ? "" : readTextFile(entry.fragPath);
    if (!sources.fragment.empty()) return true;
    logLine("    [ERROR] Frag not found: %s\n", orNone(entry.fragPath));
    return false;
}

// A program with the values that the entry's params give it; false, with the driver's words in the log, without one.
bool buildProgram(const Materials& materials, const TimelineEntry& entry, const ShaderPair& sources,
                  const std::string& label, EffectProgram& pass) {
    ProgramTable& programs = materials.device.programs;
    pass.program = findProgram(programs, sources, label);
    if (!pass.program) return false;
    pass.values = makeUniformValues(programs, *pass.program);
    setParamValues(pass.values, *pass.program, entry.params);
    return true;
}

void buildBufferProgram(const Materials& materials, const TimelineEntry& entry, const std::string& vertexSource,
                        Effect& effect) {
    if (entry.bufferPath.empty()) return;
    const std::string source = readTextFile(entry.bufferPath);
    if (source.empty()) {
        logLine("    [WARN] BufferA not found: %s\n", entry.bufferPath.c_str());
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

void loadChannels(TextureCache& textures, const TimelineEntry& entry, Effect& effect) {
    for (int i = 0; i < kChannelCount; ++i) {
        const bool useImage = i == 0 && entry.channels[0].empty();
        loadChannel(textures, effect.channels[i], useImage ? entry.imagePath : entry.channels[i]);
    }
    const bool wantsImage = wantsChannel0(effect.main.program) || wantsChannel0(effect.buffer.program);
    if (effect.channels[0].texture || !wantsImage) return;
    loadChannel(textures, effect.channels[0], entry.fallbackImage);
    if (effect.channels[0].texture) logLine("  [TEX] using fallback for %s channel0\n", orNone(entry.type));
}

// What the effect's kind draws with its program; false when that is missing.
bool createKindBlock(const Materials& materials, const TimelineEntry& entry, EffectKind kind, Effect& effect) {
    Fonts& fonts = materials.fonts;
    const Program& program = *effect.main.program;
    switch (kind) {
    case EffectKind::bitmapText: return createBitmapText(fonts, effect.bitmapText, entry.params, program);
    case EffectKind::kineticText:
        return createKineticText(fonts, effect.kineticText, entry.params, entry.baseDir, program);
    case EffectKind::caption:
        return createCaption(fonts, effect.caption, entry.params, effect.type == "creditroll", clockLength(entry),
                             entry.baseDir, program, materials.width, materials.height);
    case EffectKind::shapeText:
        return createShapeText(materials.device.textures, effect.shapeText, entry.params, entry.baseDir, program);
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
bool createProgramEffect(const Materials& materials, const TimelineEntry& entry, EffectKind kind, Effect& effect) {
    ShaderPair sources;
    if (!readSources(entry, kind, sources)) return false;
    if (effect.type == "image") effect.fit = readFitMode(entry.params);
    const bool isWhole = buildProgram(materials, entry, sources, orNone(entry.type), effect.main) &&
                         createKindBlock(materials, entry, kind, effect);
    if (!isWhole) effect.main = {}; // wants no picture any more
    buildBufferProgram(materials, entry, sources.vertex, effect);
    loadChannels(materials.device.textures, entry, effect);
    return isWhole; // not before all that is wrong with the entry has been said
}

bool createKind(const Materials& materials, const TimelineEntry& entry, EffectKind kind, Effect& effect) {
    switch (kind) {
    case EffectKind::none: return false;
    case EffectKind::image:
    case EffectKind::shader:
    case EffectKind::bitmapText:
    case EffectKind::kineticText:
    case EffectKind::caption:
    case EffectKind::shapeText: return createProgramEffect(materials, entry, kind, effect);
    case EffectKind::blend: return createBlend(materials, entry, effect);
    case EffectKind::timelineBlend: return createTimelineBlend(materials, entry, effect);
    case EffectKind::chain: return createChain(materials, entry, effect);
    case EffectKind::dynamicSplit: return createDynamicSplit(materials, entry, effect);
    case EffectKind::pip: return createPip(materials, entry, effect);
    }
    return false;
}

} // namespace

Effect createEffect(const Materials& materials, const TimelineEntry& entry) {
    Effect effect;
    effect.type = toLower(entry.type);
    effect.alpha = entry.alpha;
    effect.timeScale = entry.timeScale;
    effect.blendMode = blendModeFrom(entry.blendMode);

    const EffectKind kind = kindOf(entry, effect.type);
    if (createKind(materials, entry, kind, effect)) {
        effect.kind = kind;
        return effect;
    }
    // What was made before it failed goes the ordinary way; the type stays, for whoever reports it.
    std::string type = std::move(effect.type);
    releaseEffect(effect);
    effect.type = std::move(type);
    return effect;
}
