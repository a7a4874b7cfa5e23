#include "effects/warm_up.h"

#include "effects/composite.h"
#include "effects/pip_effect.h"
#include "effects/shader_effect.h"
#include "gpu/gl_functions.h"

namespace {

// False when the program has been drawn like that before.
bool markWarm(Program& program, BlendMode blending, DrawTarget target) {
    constexpr int kBlendModes = 3;
    const int bit = static_cast<int>(blending) + (target == DrawTarget::offscreen ? kBlendModes : 0);
    const uint32_t state = 1u << bit;
    const bool wasCold = (program.warmStates & state) == 0;
    program.warmStates |= state;
    return wasCold;
}

// Texts set blending as their own params say, whatever the draw asks for.
BlendMode drawnBlending(const Effect& effect, BlendMode asked) {
    if (effect.kind == EffectKind::kineticText) return effect.kineticText.params.blendMode;
    if (effect.kind == EffectKind::lowerThird || effect.kind == EffectKind::creditRoll)
        return effect.caption.params.blendMode;
    if (effect.kind == EffectKind::shapeText) return effect.shapeText.params.blendMode;
    return asked;
}

template <typename DrawIt>
void drawOnePixel(DrawIt drawIt) {
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 1, 1);
    drawIt();
    glDisable(GL_SCISSOR_TEST);
    glFlush();
}

// Children draw into targets of the size that they will have, unblended; the last of a chain draws where the chain
// does.
void warmUpChildren(Device& device, Effect& effect, DrawTarget drawTarget, const Draw& draw) {
    for (size_t i = 0; i < effect.children.size(); ++i) {
        Effect& child = *effect.children[i];
        if (effect.kind == EffectKind::chain && i > 0) {
            warmUpEffect(device, child, drawTarget, draw);
            continue;
        }
        const bool isInset = effect.kind == EffectKind::pip && i > 0;
        const PipRect size = isInset ? pipRect(effect.pip, draw.width, draw.height)
                                     : PipRect{0, 0, draw.width, draw.height};
        RenderTarget& target = effect.childTargets[i % effect.childTargets.size()];
        ensureTarget(target, size.width, size.height);
        warmUpEffect(device, child, DrawTarget::offscreen, drawInto(target, draw));
    }
}

void warmUpBlit(Device& device, const Effect& effect, DrawTarget target, const Draw& draw) {
    if (!effect.blit.program || !markWarm(*effect.blit.program, draw.blending, target)) return;
    drawOnePixel([&] {
        beginDraw(draw);
        drawPicture(device, effect, effect.childTargets[0].texture, 1.0f);
    });
}

// The composite's own passes over its children's pictures.
void warmUpComposite(Device& device, Effect& effect, DrawTarget target, const Draw& draw) {
    const GLuint from = effect.childTargets[0].texture, to = effect.childTargets[1].texture;
    if (effect.mixer.program) warmUpTransition(device, effect.mixer, target, draw, from, to);
    Draw blended = draw;
    warmUpBlit(device, effect, target, draw);
    blended.blending = BlendMode::alpha;
    if (effect.kind == EffectKind::pip) warmUpBlit(device, effect, target, blended);
    blended.blending = effect.blendMode;
    if (effect.kind != EffectKind::dynamicSplit || !markWarm(*effect.main.program, blended.blending, target)) return;
    drawOnePixel([&] {
        beginDraw(blended);
        useProgram(*effect.main.program, effect.main.values);
        bindChannel(effect.main.program->uniforms, 0, from);
        bindChannel(effect.main.program->uniforms, 1, to);
        drawQuad(device.quad);
    });
}

} // namespace

void warmUpEffect(Device& device, Effect& effect, DrawTarget target, const Draw& draw) {
    if (!effect.children.empty()) {
        warmUpChildren(device, effect, target, draw);
        warmUpComposite(device, effect, target, draw);
        return;
    }
    if (!isRunnable(effect)) return;
    if (hasBuffer(effect)) ensureBufferTargets(effect, draw.width, draw.height);
    const bool mainIsCold = markWarm(*effect.main.program, drawnBlending(effect, draw.blending), target);
    const bool bufferIsCold = hasBuffer(effect) &&
                              markWarm(*effect.buffer.program, BlendMode::opaque, DrawTarget::offscreen);
    if (!mainIsCold && !bufferIsCold) return;
    drawOnePixel([&] { drawEffect(device, effect, draw); });
    if (hasBuffer(effect)) clearBufferTargets(effect);
}

void warmUpTransition(Device& device, const TransitionRenderer& renderer, DrawTarget target, const Draw& draw,
                      GLuint from, GLuint to) {
    if (!markWarm(*renderer.program, BlendMode::opaque, target)) return;
    drawOnePixel([&] { renderTransition(device, renderer, draw, from, to, 0.5f, {}); });
}
