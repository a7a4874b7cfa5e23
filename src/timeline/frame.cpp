#include "timeline/frame.h"

#include "effects/warm_up.h"
#include "gpu/gl_functions.h"
#include "gpu/textures.h"

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

void renderSceneToTarget(const PlayState& state, RenderTarget& target, float delta, int width, int height) {
    beginTarget(target, width, height);
    drawTimelineFrame(state, delta, width, height);
    gl.BindFramebuffer(GL_FRAMEBUFFER, 0);
    glViewport(0, 0, width, height);
}

void drawTransitionFrame(TransitionStage& stage, const Timeline& timeline, const TransitionState& state, float delta,
                         int width, int height) {
    renderSceneToTarget(state.out, stage.outgoing, delta, width, height);
    renderSceneToTarget(state.in, stage.incoming, delta, width, height);
    renderTransition(stage.renderer, 0, width, height, stage.outgoing.texture, stage.incoming.texture, state.progress,
                     timeline.scenes[state.outgoing].transition);
}

bool initTransitionStage(TransitionStage& stage, const std::string& baseDir, int width, int height) {
    if (!initTransitionRenderer(stage.renderer, baseDir)) return false;
    for (RenderTarget* target : {&stage.outgoing, &stage.incoming}) beginTarget(*target, width, height);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 1, 1);
    renderTransition(stage.renderer, 0, width, height, stage.outgoing.texture, stage.incoming.texture, 0.5f, {});
    glDisable(GL_SCISSOR_TEST);
    bindBlackTextures();
    return true;
}

void releaseTransitionStage(TransitionStage& stage) {
    releaseTransitionRenderer(stage.renderer);
    deleteTarget(stage.outgoing);
    deleteTarget(stage.incoming);
}

void drawSceneFrame(Timeline& timeline, float sceneTime, float delta, int width, int height) {
    for (RuntimeEntry& entry : timeline.entries) {
        const float start = std::max(0.0f, entry.entry->delay);
        if (sceneTime < start || (entry.duration > 0.0f && sceneTime > start + entry.duration)) continue;
        applyDrawState(sceneDrawState(timeline, entry));
        drawEffect(entry.effect, delta, width, height);
    }
}
