#include "effects/warm_up.h"

#include "effects/shader_effect.h"
#include "gpu/gl_functions.h"
#include "gpu/program_pool.h"
#include "gpu/quad.h"

namespace {

uint32_t warmState(DrawState state, DrawTarget target) {
    constexpr uint32_t kOffscreenShift = 3; // behind the bits of the draw states
    return static_cast<uint32_t>(state) << (target == DrawTarget::offscreen ? kOffscreenShift : 0);
}

template <typename Draw>
void drawOnePixel(DrawState state, Draw draw) {
    glDisable(GL_DEPTH_TEST);
    applyDrawState(state);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 1, 1);
    draw();
    glDisable(GL_SCISSOR_TEST);
    glFlush();
}

// Children draw into targets, blending off; the last of a chain draws where the chain does.
void warmUpChildren(Effect& effect, DrawState state, DrawTarget drawTarget, int width, int height) {
    if (effect.children.empty()) return;
    const DrawBinding output = saveBinding();
    for (size_t i = 0; i < effect.children.size(); ++i) {
        if (effect.kind == EffectKind::chain && i > 0) {
            restoreBinding(output);
            warmUpEffect(*effect.children[i], state, drawTarget, width, height);
            continue;
        }
        RenderTarget& target = effect.childTargets[i % effect.childTargets.size()];
        ensureTarget(target, width, height);
        bindTarget(target);
        warmUpEffect(*effect.children[i], DrawState::opaque, DrawTarget::offscreen, width, height);
    }
    restoreBinding(output);
}

} // namespace

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

void warmUpEffect(Effect& effect, DrawState state, DrawTarget target, int width, int height) {
    warmUpChildren(effect, state, target, width, height);
    for (const GLuint program : {effect.mixer.program, effect.blitProgram}) {
        warmUpProgram(program, DrawState::opaque, target);
        warmUpProgram(program, DrawState::alpha, target);
    }
    if (effect.kind == EffectKind::dynamicSplit) warmUpProgram(effect.mainProgram, state, target);
    if (!effect.children.empty()) return;

    if (effect.hasBuffer) ensureBufferTargets(effect, width, height);
    const bool mainIsCold = markWarm(effect.mainProgram, warmState(state, target));
    const bool bufferIsCold =
        effect.hasBuffer && markWarm(effect.bufferProgram, warmState(DrawState::opaque, DrawTarget::offscreen));
    if (!mainIsCold && !bufferIsCold) return;
    drawOnePixel(state, [&] { drawEffectPasses(effect, width, height, nullptr); });
    if (effect.hasBuffer) clearBufferTargets(effect);
}

void warmUpProgram(GLuint program, DrawState state, DrawTarget target) {
    if (!markWarm(program, warmState(state, target))) return;
    drawOnePixel(state, [&] {
        gl.UseProgram(program);
        drawQuad();
    });
}
