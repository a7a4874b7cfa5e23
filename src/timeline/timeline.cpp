#include "timeline/timeline.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <unordered_map>

namespace {

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

} // namespace

Timeline buildTimeline(std::span<const TimelineEntry* const> entries, const RuntimeConfig& config) {
    Timeline timeline;
    timeline.entries.reserve(entries.size());
    for (const TimelineEntry* entry : entries) {
        timeline.entries.push_back({entry, entry->start, entry->duration, entry->layer, entry->overlay, -1});
    }
    buildScenes(timeline, config);
    return timeline;
}

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
