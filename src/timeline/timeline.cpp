#include "timeline/timeline.h"

#include "foundation/log.h"
#include "foundation/text.h"
#include "gpu/textures.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <unordered_map>

namespace {

// Kinds of a renderer that drew on the processor; there is no shader for them.
bool isCpuOnly(const std::string& type) {
    return type == "neon_text" || type == "chaineffect5lines" || type == "rotatingcube";
}

bool skipCpuOnly(const TimelineEntry& entry) {
    if (!isCpuOnly(entry.type)) return false;
    logLine("  [SKIP] %s (CPU-only, not supported)\n", entry.type.c_str());
    return true;
}

void appendEntry(Timeline& timeline, const TimelineEntry& entry, const RuntimeConfig& show) {
    Effect effect = createEffect(entry, show);
    if (!isRunnable(effect)) {
        logLine("  [SKIP] %s (shader failed)\n", orNone(entry.type));
        releaseEffect(effect);
        return;
    }
    logLine("  [OK] %s%s\n", orNone(entry.type), effect.hasBuffer ? " (+BufferA)" : "");
    timeline.entries.push_back(
        {&entry, entry.start, entry.duration, entry.layer, entry.overlay, -1, std::move(effect)});
}

void extendSpan(SceneSpan& span, const RuntimeEntry& entry, bool first) {
    span.start = first ? entry.start : std::min(span.start, entry.start);
    span.end = std::max(span.end, entry.start + entry.duration);
}

void readTransition(SceneSpan& scene, const RuntimeConfig& config) {
    const auto preset = config.transitions.find(scene.name);
    if (preset == config.transitions.end()) return;
    scene.transition = preset->second.look;
    scene.transitionDuration = preset->second.duration;
}

void buildScenes(Timeline& timeline, const RuntimeConfig& config) {
    std::unordered_map<std::string_view, SceneSpan> spans;
    for (const RuntimeEntry& entry : timeline.entries) {
        const auto [span, isNew] = spans.try_emplace(entry.entry->scene);
        if (isNew) span->second.name = entry.entry->scene;
        extendSpan(span->second, entry, isNew);
    }
    for (const auto& [name, span] : spans) {
        if (name.empty()) {
            timeline.unnamedScene = span;
        } else {
            timeline.scenes.push_back(span);
        }
    }
    std::sort(timeline.scenes.begin(), timeline.scenes.end(), [](const SceneSpan& a, const SceneSpan& b) {
        return a.start != b.start ? a.start < b.start : a.name < b.name;
    });

    for (SceneSpan& scene : timeline.scenes) readTransition(scene, config);

    std::unordered_map<std::string_view, int> indices;
    for (const SceneSpan& scene : timeline.scenes) indices.emplace(scene.name, static_cast<int>(indices.size()));
    for (RuntimeEntry& entry : timeline.entries) {
        const auto index = indices.find(entry.entry->scene);
        entry.scene = index == indices.end() ? -1 : index->second;
    }
}

// For each scene whether another one plays at the same time at some point.
std::vector<bool> findOverlaps(const Timeline& timeline) {
    const std::vector<SceneSpan>& scenes = timeline.scenes;
    std::vector<float> ends;
    ends.reserve(scenes.size());
    for (const SceneSpan& scene : scenes) ends.push_back(scene.end);
    for (const RuntimeEntry& entry : timeline.entries) {
        const bool isOpenEnded = entry.duration <= 0.0f;
        if (entry.scene >= 0 && isOpenEnded) ends[entry.scene] = std::numeric_limits<float>::infinity();
    }
    std::vector<bool> overlaps(scenes.size(), false);
    size_t latest = 0; // of the scenes so far, which are sorted by start, the one that ends last
    for (size_t i = 1; i < scenes.size(); ++i) {
        if (scenes[i].start < ends[latest]) overlaps[i] = overlaps[latest] = true;
        if (ends[i] > ends[latest]) latest = i;
    }
    return overlaps;
}

// Scenes that pass into each other are drawn into targets meanwhile.
void warmUpForTransitions(Timeline& timeline, int width, int height) {
    const std::vector<bool> overlaps = findOverlaps(timeline);
    if (std::find(overlaps.begin(), overlaps.end(), true) == overlaps.end()) return;
    const DrawBinding output = saveBinding();
    RenderTarget target = createRenderTarget(width, height);
    bindTarget(target);
    for (RuntimeEntry& entry : timeline.entries) {
        if (entry.scene < 0 || !overlaps[entry.scene]) continue;
        warmUpEffect(entry.effect, timelineDrawState(entry), DrawTarget::offscreen, width, height);
    }
    restoreBinding(output);
    deleteTarget(target);
}

} // namespace

void loadTimeline(Timeline& timeline, const RuntimeConfig& config, int width, int height) {
    releaseTimeline(timeline);
    bindBlackTextures();
    logLine("[TIMELINE] Loading %d entries\n", static_cast<int>(config.entries.size()));
    timeline.entries.reserve(config.entries.size());
    for (const TimelineEntry& entry : config.entries) {
        if (skipCpuOnly(entry)) continue;
        logLine("  [LOAD] t=%.3fs dur=%.3fs scene=%s type=%s\n", static_cast<double>(entry.start),
                static_cast<double>(entry.duration), orNone(entry.scene), orNone(entry.type));
        appendEntry(timeline, entry, config);
    }
    buildScenes(timeline, config);
    for (RuntimeEntry& entry : timeline.entries) {
        warmUpEffect(entry.effect, timelineDrawState(entry), DrawTarget::screen, width, height);
    }
    warmUpForTransitions(timeline, width, height);
    bindBlackTextures();
}

void loadScene(Timeline& timeline, const RuntimeConfig& config, int index, int width, int height) {
    releaseTimeline(timeline);
    bindBlackTextures();
    if (index < 0 || index >= static_cast<int>(config.scenes.size())) return;
    const SceneSpec& scene = config.scenes[index];
    logLine("[SCENE %d/%d] \"%s\" (%d entries, duration=%.1fs)\n", index + 1, static_cast<int>(config.scenes.size()),
            orNone(scene.id), static_cast<int>(scene.entries.size()),
            static_cast<double>(sceneDuration(config, index)));
    timeline.entries.reserve(scene.entries.size());
    for (const TimelineEntry& entry : scene.entries) {
        if (skipCpuOnly(entry)) continue;
        const ShaderPaths paths = shaderPathsOf(entry, config);
        logLine("  [LOAD] %s vert=%s frag=%s\n", orNone(entry.type), orNone(paths.vertex), orNone(paths.fragment));
        appendEntry(timeline, entry, config);
    }
    for (RuntimeEntry& entry : timeline.entries) {
        warmUpEffect(entry.effect, sceneDrawState(timeline, entry), DrawTarget::screen, width, height);
    }
    bindBlackTextures();
}

void releaseTimeline(Timeline& timeline) {
    for (RuntimeEntry& entry : timeline.entries) releaseEffect(entry.effect);
    timeline = {};
}

float sceneDuration(const RuntimeConfig& config, int index) {
    float duration = 0.0f;
    if (index < 0 || index >= static_cast<int>(config.scenes.size())) return duration;
    for (const TimelineEntry& entry : config.scenes[index].entries) {
        duration = std::max(duration, std::max(0.0f, entry.delay) + entry.duration);
    }
    return duration;
}

const SceneSpan& sceneOf(const Timeline& timeline, const RuntimeEntry& entry) {
    return entry.scene < 0 ? timeline.unnamedScene : timeline.scenes[entry.scene];
}

DrawState timelineDrawState(const RuntimeEntry& entry) {
    return entry.overlay ? blendedState(entry.effect) : DrawState::opaque;
}

DrawState sceneDrawState(const Timeline& timeline, const RuntimeEntry& entry) {
    const bool isBase = !entry.overlay && &entry == timeline.entries.data();
    return isBase ? DrawState::opaque : blendedState(entry.effect);
}
