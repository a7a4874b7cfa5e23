#include "timeline/playback.h"

#include "foundation/log.h"
#include "foundation/text.h"

#include <algorithm>
#include <cstdio>

namespace {

bool isInScene(const RuntimeEntry& entry, int scene) {
    return scene == kAllScenes || entry.scene == scene;
}

double seconds(float value) {
    return static_cast<double>(value);
}

void logEntry(const char* tag, const RuntimeEntry* entry) {
    if (!entry) {
        logLine("       [%s] (none)\n", tag);
        return;
    }
    const TimelineEntry& source = *entry->entry;
    logLine("       [%s] scene=%s id=%s type=%s entryIn=%.3fs entryOut=%.3fs dur=%.3fs layer=%d\n", tag,
            orNone(source.scene), orNone(source.id), orNone(source.type), seconds(entry->start),
            seconds(entry->start + entry->duration), seconds(entry->duration), entry->layer);
}

void logState(const char* title, const Timeline& timeline, float t, const PlayState& state) {
    const int overlays = static_cast<int>(state.overlays.size());
    if (!state.base) {
        logLine("%s t=%.3fs scene=(none) base=(none) overlays=%d\n", title, seconds(t), overlays);
        return;
    }
    const TimelineEntry& base = *state.base->entry;
    const SceneSpan& scene = sceneOf(timeline, *state.base);
    logLine("%s t=%.3fs scene=%s sceneIn=%.3fs sceneOut=%.3fs base=%s type=%s entryIn=%.3fs entryOut=%.3fs overlays=%d\n",
            title, seconds(t), orNone(base.scene), seconds(scene.start), seconds(scene.end), orNone(base.id),
            orNone(base.type), seconds(state.base->start), seconds(state.base->start + state.base->duration), overlays);
    for (const RuntimeEntry* overlay : state.overlays) logEntry("OVR", overlay);
}

void buildKey(std::string& key, const PlayState& state) {
    key = "play|";
    if (state.base) {
        const TimelineEntry& base = *state.base->entry;
        key.append(base.scene).append("|").append(base.id).append("|").append(base.type);
    } else {
        key.append("(none)");
    }
    char overlays[16];
    std::snprintf(overlays, sizeof overlays, "|ovr=%zu", state.overlays.size());
    key.append(overlays);
}

} // namespace

bool isTimeActive(const RuntimeEntry& entry, float t) {
    return t >= entry.start && (entry.duration <= 0.0f || t < entry.start + entry.duration);
}

RuntimeEntry* selectBaseEntry(Timeline& timeline, float t, int scene) {
    RuntimeEntry* active = nullptr;
    RuntimeEntry* past = nullptr;
    RuntimeEntry* earliest = nullptr;
    for (RuntimeEntry& entry : timeline.entries) {
        if (entry.overlay || !isInScene(entry, scene)) continue;
        if (!earliest || entry.start < earliest->start) earliest = &entry;
        if (entry.start > t) continue;
        if (!past || entry.start > past->start) past = &entry;
        if (isTimeActive(entry, t) && (!active || entry.start > active->start)) active = &entry;
    }
    if (active) return active;
    return past ? past : earliest;
}

void selectOverlays(Timeline& timeline, float t, std::vector<RuntimeEntry*>& overlays, int scene) {
    overlays.clear();
    for (RuntimeEntry& entry : timeline.entries) {
        if (entry.overlay && isInScene(entry, scene) && isTimeActive(entry, t)) overlays.push_back(&entry);
    }
    std::sort(overlays.begin(), overlays.end(), [](const RuntimeEntry* a, const RuntimeEntry* b) {
        if (a->layer != b->layer) return a->layer < b->layer;
        if (a->start != b->start) return a->start < b->start;
        return a < b;
    });
}

void resolvePlayState(Timeline& timeline, float t, PlayState& state, int scene) {
    state.base = selectBaseEntry(timeline, t, scene);
    selectOverlays(timeline, t, state.overlays, scene);
}

void activeScenes(const Timeline& timeline, float t, std::vector<int>& scenes) {
    scenes.clear();
    for (const RuntimeEntry& entry : timeline.entries) {
        if (entry.scene < 0 || !isTimeActive(entry, t)) continue;
        const auto place = std::lower_bound(scenes.begin(), scenes.end(), entry.scene);
        if (place == scenes.end() || *place != entry.scene) scenes.insert(place, entry.scene);
    }
}

void logPlayState(PlayLog& log, const Timeline& timeline, float t, const PlayState& state) {
    buildKey(log.key, state);
    if (log.key == log.lastKey) return;
    log.lastKey = log.key;
    logState("[PLAY]", timeline, t, state);
}

void logFinalFrame(const Timeline& timeline, float t, const PlayState& state) {
    logState("[TIMELINE] Final frame", timeline, t, state);
}
