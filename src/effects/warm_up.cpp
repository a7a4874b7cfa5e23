#include "effects/warm_up.h"

#include "effects/draw.h"
#include "effects/shader_effect.h"
#include "gpu/program_pool.h"

void applyDrawState(DrawState state) {
    switch (state) {
    case DrawState::opaque: glDisable(GL_BLEND); return;
    case DrawState::alpha:
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        return;
    case DrawState::additive:
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE);
        return;
    }
}

void warmUpEffect(Effect& effect, DrawState state, int width, int height) {
    if (effect.hasBuffer) ensureBufferTargets(effect, width, height);
    const bool mainIsCold = markWarm(effect.mainProgram, static_cast<uint32_t>(state));
    const bool bufferIsCold = effect.hasBuffer && markWarm(effect.bufferProgram, static_cast<uint32_t>(DrawState::opaque));
    if (!mainIsCold && !bufferIsCold) return;

    glDisable(GL_DEPTH_TEST);
    applyDrawState(state);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 1, 1);
    drawEffectPasses(effect, width, height, nullptr);
    glDisable(GL_SCISSOR_TEST);
    if (effect.hasBuffer) clearBufferTargets(effect);
    glFlush();
}
