#include "timeline/playback.h"

#include "foundation/log.h"
#include "foundation/text.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr float kLeastTransition = 0.0001f; // seconds

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
    logLine(
        "%s t=%.3fs scene=%s sceneIn=%.3fs sceneOut=%.3fs base=%s type=%s entryIn=%.3fs entryOut=%.3fs overlays=%d\n",
        title, seconds(t), orNone(base.scene), seconds(scene.start), seconds(scene.end), orNone(base.id),
        orNone(base.type), seconds(state.base->start), seconds(state.base->start + state.base->duration), overlays);
    for (const RuntimeEntry* overlay : state.overlays) logEntry("OVR", overlay);
}

const char* baseId(const PlayState& state) {
    return state.base ? state.base->entry->id.c_str() : "(none)";
}

void buildKey(std::string& key, const Timeline& timeline, const TransitionState& state) {
    key = "transition|";
    key.append(timeline.scenes[state.outgoing].name).append("|").append(timeline.scenes[state.incoming].name);
    key.append("|").append(baseId(state.out)).append("|").append(baseId(state.in));
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

const RuntimeEntry* selectBaseEntry(const Timeline& timeline, float t, int scene) {
    const RuntimeEntry* active = nullptr;
    const RuntimeEntry* past = nullptr;
    const RuntimeEntry* earliest = nullptr;
    for (const RuntimeEntry& entry : timeline.entries) {
        if (entry.overlay || !isInScene(entry, scene)) continue;
        if (!earliest || entry.start < earliest->start) earliest = &entry;
        if (entry.start > t) continue;
        if (!past || entry.start > past->start) past = &entry;
        if (isTimeActive(entry, t) && (!active || entry.start > active->start)) active = &entry;
    }
    if (active) return active;
    return past ? past : earliest;
}

void selectOverlays(const Timeline& timeline, float t, std::vector<const RuntimeEntry*>& overlays, int scene) {
    overlays.clear();
    for (const RuntimeEntry& entry : timeline.entries) {
        if (entry.overlay && isInScene(entry, scene) && isTimeActive(entry, t)) overlays.push_back(&entry);
    }
    std::sort(overlays.begin(), overlays.end(), [](const RuntimeEntry* a, const RuntimeEntry* b) {
        if (a->layer != b->layer) return a->layer < b->layer;
        if (a->start != b->start) return a->start < b->start;
        return a < b;
    });
}

void resolvePlayState(const Timeline& timeline, float t, PlayState& state, int scene) {
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

bool resolveTransition(const Timeline& timeline, float t, TransitionState& state) {
    activeScenes(timeline, t, state.active);
    if (state.active.size() < 2) return false;
    state.outgoing = state.active[0];
    state.incoming = state.active[1];
    const SceneSpan& outgoing = timeline.scenes[state.outgoing];
    const float start = timeline.scenes[state.incoming].start;

    float duration = outgoing.transitionDuration;
    if (!(duration > 0.0f)) {
        float end = start;
        for (const RuntimeEntry& entry : timeline.entries) {
            if (entry.scene == state.outgoing && isTimeActive(entry, t))
                end = std::max(end, entry.start + entry.duration);
        }
        duration = end - start;
    }
    state.progress = std::clamp((t - start) / std::max(duration, kLeastTransition), 0.0f, 1.0f);
    resolvePlayState(timeline, t, state.out, state.outgoing);
    resolvePlayState(timeline, t, state.in, state.incoming);
    return true;
}

void logTransition(PlayLog& log, const Timeline& timeline, float t, const TransitionState& state) {
    buildKey(log.key, timeline, state);
    if (log.key == log.lastKey) return;
    log.lastKey = log.key;
    const SceneSpan& out = timeline.scenes[state.outgoing];
    const SceneSpan& in = timeline.scenes[state.incoming];
    logLine("[PLAY] t=%.3fs transition %.3f scene=%s sceneIn=%.3fs sceneOut=%.3fs -> scene=%s sceneIn=%.3fs "
            "sceneOut=%.3fs\n",
            seconds(t), seconds(state.progress), orNone(out.name), seconds(out.start), seconds(out.end),
            orNone(in.name), seconds(in.start), seconds(in.end));
    logEntry("OUT", state.out.base);
    logEntry("IN", state.in.base);
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
