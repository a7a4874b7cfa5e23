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

// Uniforms keep their values in a program, so what an effect writes only once tells programs apart, and so does its
// kind, which writes others than the next.
std::string programSettings(const TimelineEntry& entry, EffectKind kind) {
    return std::to_string(static_cast<int>(kind)) + '\n' + describeParamUniforms(entry.params);
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

GLuint createBufferProgram(const TimelineEntry& entry, const std::string& vertexSource, const std::string& settings) {
    if (entry.bufferPath.empty()) return 0;
    const std::string source = readTextFile(entry.bufferPath);
    if (source.empty()) {
        logLine("    [WARN] BufferA not found: %s\n", entry.bufferPath.c_str());
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

void loadChannels(const TimelineEntry& entry, Effect& effect) {
    for (int i = 0; i < kChannelCount; ++i) {
        const bool useImage = i == 0 && entry.channels[0].empty();
        loadChannel(effect.channels[i], useImage ? entry.imagePath : entry.channels[i]);
    }
    const bool wantsImage = samplesChannel0(effect.mainProgram) || samplesChannel0(effect.bufferProgram);
    if (effect.channels[0].texture || !wantsImage) return;
    loadChannel(effect.channels[0], entry.fallbackImage);
    if (effect.channels[0].texture) logLine("  [TEX] using fallback for %s channel0\n", orNone(entry.type));
}

// What the effect's kind draws with its program; false when that is missing.
bool createKindBlock(const TimelineEntry& entry, EffectKind kind, Effect& effect) {
    const GLuint program = effect.mainProgram;
    switch (kind) {
    case EffectKind::bitmapText: return createBitmapText(effect.bitmapText, entry.params, program);
    case EffectKind::kineticText: return createKineticText(effect.kineticText, entry.params, entry.baseDir, program);
    case EffectKind::caption:
        return createCaption(effect.caption, entry.params, effect.type == "creditroll", clockLength(entry),
                             entry.baseDir, program);
    case EffectKind::shapeText: return createShapeText(effect.shapeText, entry.params, entry.baseDir, program);
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
bool createProgramEffect(const TimelineEntry& entry, EffectKind kind, Effect& effect) {
    ShaderPair sources;
    if (!readSources(entry, kind, sources)) return false;
    const std::string settings = programSettings(entry, kind);
    effect.mainProgram = borrowProgram(sources.vertex, sources.fragment, settings, orNone(entry.type));
    if (effect.type == "image") effect.fit = readFitMode(entry.params);
    effect.isDreamEntity = effect.type == "dreamentity";
    if (effect.mainProgram && !createKindBlock(entry, kind, effect)) {
        returnProgram(effect.mainProgram);
        effect.mainProgram = 0;
    }
    effect.bufferProgram = createBufferProgram(entry, sources.vertex, settings);
    effect.hasBuffer = effect.bufferProgram != 0;
    loadChannels(entry, effect);
    if (!effect.mainProgram) return false; // not before all that is wrong with the entry has been said
    for (const GLuint program : {effect.mainProgram, effect.bufferProgram}) {
        if (!program) continue;
        resetSamplers(program);
        writeParamUniforms(program, entry.params);
    }
    return true;
}

bool createKind(const TimelineEntry& entry, EffectKind kind, Effect& effect) {
    switch (kind) {
    case EffectKind::none: return false;
    case EffectKind::image:
    case EffectKind::shader:
    case EffectKind::bitmapText:
    case EffectKind::kineticText:
    case EffectKind::caption:
    case EffectKind::shapeText: return createProgramEffect(entry, kind, effect);
    case EffectKind::blend: return createBlend(entry, effect);
    case EffectKind::timelineBlend: return createTimelineBlend(entry, effect);
    case EffectKind::chain: return createChain(entry, effect);
    case EffectKind::dynamicSplit: return createDynamicSplit(entry, effect);
    case EffectKind::pip: return createPip(entry, effect);
    }
    return false;
}

} // namespace

Effect createEffect(const TimelineEntry& entry) {
    Effect effect;
    effect.id = entry.id;
    effect.type = toLower(entry.type);
    effect.alpha = entry.alpha;
    effect.timeScale = entry.timeScale;
    effect.duration = entry.duration;
    effect.blendMode = blendModeFrom(entry.blendMode);

    const EffectKind kind = kindOf(entry, effect.type);
    if (createKind(entry, kind, effect)) {
        effect.kind = kind;
        return effect;
    }
    // What was made before it failed goes the ordinary way; the type stays, for whoever reports it.
    std::string type = std::move(effect.type);
    releaseEffect(effect);
    effect.type = std::move(type);
    return effect;
}
