#include "effects/warm_up.h"

#include "effects/pip_effect.h"
#include "effects/shader_effect.h"
#include "gpu/gl_functions.h"
#include "gpu/program_pool.h"
#include "gpu/quad.h"
#include "gpu/textures.h"

namespace {

uint32_t warmState(DrawState state, DrawTarget target) {
    constexpr uint32_t kOffscreenShift = 3; // behind the bits of the draw states
    return static_cast<uint32_t>(state) << (target == DrawTarget::offscreen ? kOffscreenShift : 0);
}

DrawState blendedState(BlendMode mode) {
    return mode == BlendMode::additive ? DrawState::additive : DrawState::alpha;
}

// Texts that move set blending as their own params say, whatever is set.
DrawState drawnState(const Effect& effect, DrawState state) {
    if (effect.kind == EffectKind::kineticText) return blendedState(effect.kineticText.params.blendMode);
    const bool isCaption = effect.kind == EffectKind::lowerThird || effect.kind == EffectKind::creditRoll;
    if (isCaption) return blendedState(effect.caption.params.blendMode);
    if (effect.kind == EffectKind::shapeText) return blendedState(effect.shapeText.params.blendMode);
    return state;
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

// Children draw into targets of the size that they will have, blending off; the last of a chain draws where
// the chain does.
void warmUpChildren(Effect& effect, DrawState state, DrawTarget drawTarget, int width, int height) {
    const DrawBinding output = saveBinding();
    for (size_t i = 0; i < effect.children.size(); ++i) {
        Effect& child = *effect.children[i];
        if (effect.kind == EffectKind::chain && i > 0) {
            warmUpEffect(child, state, drawTarget, width, height);
            continue;
        }
        const bool isInset = effect.kind == EffectKind::pip && i > 0;
        const PipRect size = isInset ? pipRect(effect.pip, width, height) : PipRect{0, 0, width, height};
        RenderTarget& target = effect.childTargets[i % effect.childTargets.size()];
        ensureTarget(target, size.width, size.height);
        bindTarget(target);
        warmUpEffect(child, DrawState::opaque, DrawTarget::offscreen, size.width, size.height);
        restoreBinding(output);
    }
}

// The composite's own passes over its children's pictures.
void warmUpComposite(Effect& effect, DrawState state, DrawTarget target) {
    for (const int unit : {1, 0}) {
        gl.ActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
        glBindTexture(GL_TEXTURE_2D, effect.childTargets[static_cast<size_t>(unit)].texture);
    }
    warmUpProgram(effect.mixer.program, DrawState::opaque, target);
    warmUpProgram(effect.blitProgram, state, target);
    if (effect.kind == EffectKind::pip) warmUpProgram(effect.blitProgram, DrawState::alpha, target);
    if (effect.kind == EffectKind::dynamicSplit) warmUpProgram(effect.mainProgram, blendedState(effect), target);
    bindBlackTexture(1);
    bindBlackTexture(0);
}

} // namespace

DrawState blendedState(const Effect& effect) {
    return blendedState(effect.blendMode);
}

void applyDrawState(DrawState state) {
    switch (state) {
    case DrawState::opaque: glDisable(GL_BLEND); return;
    case DrawState::alpha: setBlending(BlendMode::alpha); return;
    case DrawState::additive: setBlending(BlendMode::additive); return;
    }
}

void warmUpEffect(Effect& effect, DrawState state, DrawTarget target, int width, int height) {
    if (!effect.children.empty()) {
        warmUpChildren(effect, state, target, width, height);
        warmUpComposite(effect, state, target);
        return;
    }

    if (effect.hasBuffer) ensureBufferTargets(effect, width, height);
    const bool mainIsCold = markWarm(effect.mainProgram, warmState(drawnState(effect, state), target));
    const bool bufferIsCold = effect.hasBuffer &&
                              markWarm(effect.bufferProgram, warmState(DrawState::opaque, DrawTarget::offscreen));
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
