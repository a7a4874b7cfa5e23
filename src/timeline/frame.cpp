#include "timeline/frame.h"

#include "effects/draw.h"

#include <algorithm>

void drawEffect(Effect& effect, float delta, int width, int height) {
    advanceEffect(effect, delta);
    drawEffectPasses(effect, width, height, nullptr);
}

void drawTimelineFrame(const PlayState& state, float delta, int width, int height) {
    if (state.base) {
        applyDrawState(timelineDrawState(*state.base));
        drawEffect(state.base->effect, delta, width, height);
    }
    for (RuntimeEntry* overlay : state.overlays) {
        applyDrawState(timelineDrawState(*overlay));
        drawEffect(overlay->effect, delta, width, height);
    }
}

void drawSceneFrame(Timeline& timeline, float sceneTime, float delta, int width, int height) {
    for (RuntimeEntry& entry : timeline.entries) {
        const float start = std::max(0.0f, entry.entry->delay);
        if (sceneTime < start || (entry.duration > 0.0f && sceneTime > start + entry.duration)) continue;
        applyDrawState(sceneDrawState(timeline, entry));
        drawEffect(entry.effect, delta, width, height);
    }
}
