#include "effects/stage.h"

#include "foundation/text.h"

namespace {

// Kinds of a renderer that drew on the processor; there is no shader for them.
bool isCpuOnly(const std::string& type) {
    return type == "neon_text" || type == "chaineffect5lines" || type == "rotatingcube";
}

void announceEntry(const TimelineEntry& entry, const RuntimeConfig& show, LoadWords words) {
    switch (words) {
    case LoadWords::times:
        logLine("  [LOAD] t=%.3fs dur=%.3fs scene=%s type=%s\n", static_cast<double>(entry.start),
                static_cast<double>(entry.duration), orNone(entry.scene), orNone(entry.type));
        break;
    case LoadWords::shaders: {
        const ShaderPaths paths = shaderPathsOf(entry, show);
        logLine("  [LOAD] %s vert=%s frag=%s\n", orNone(entry.type), orNone(paths.vertex), orNone(paths.fragment));
        break;
    }
    }
}

} // namespace

void makeEffects(Stage& stage, StagePart& part, const RuntimeConfig& show, std::span<const TimelineEntry> entries,
                 LoadWords words, int width, int height) {
    const Materials materials = {stage.device, stage.fonts, show, width, height};
    part.entries.reserve(entries.size());
    part.effects.reserve(entries.size());
    for (const TimelineEntry& entry : entries) {
        if (isCpuOnly(entry.type)) {
            logLine("  [SKIP] %s (CPU-only, not supported)\n", entry.type.c_str());
            continue;
        }
        announceEntry(entry, show, words);
        Effect effect = createEffect(materials, entry);
        if (!isRunnable(effect)) {
            logLine("  [SKIP] %s (shader failed)\n", orNone(entry.type));
            continue;
        }
        logLine("  [OK] %s%s\n", orNone(entry.type), hasBuffer(effect) ? " (+BufferA)" : "");
        part.entries.push_back(&entry);
        part.effects.push_back(std::move(effect));
    }
}

bool makeTransition(Stage& stage, const std::string& baseDir, int width, int height) {
    if (!initTransitionRenderer(stage.device, stage.transition, baseDir)) return false;
    for (RenderTarget* target : {&stage.outgoing, &stage.incoming}) {
        beginTarget(stage.device.textures, *target, width, height);
    }
    return true;
}

void resetEffects(StagePart& part) {
    for (Effect& effect : part.effects) clearFeedback(effect);
}

void releaseStage(Stage& stage) {
    for (StagePart& part : stage.parts) {
        for (Effect& effect : part.effects) releaseEffect(effect);
    }
    deleteTarget(stage.outgoing);
    deleteTarget(stage.incoming);
    deleteFonts(stage.fonts);
    deleteDevice(stage.device);
    stage = {};
}
