#include "effects/shader_effect.h"

#include "gpu/gl_functions.h"

namespace {

void drawPass(const Device& device, const Effect& effect, const EffectProgram& pass, const Draw& draw,
              GLuint bufferTexture) {
    beginDraw(draw);
    useProgram(*pass.program, pass.values);
    const UniformTable& uniforms = pass.program->uniforms;
    setStandardUniforms(uniforms, draw);
    bindChannels(uniforms, effect.channels, draw.width, draw.height, draw.input);
    bindBufferTexture(uniforms, bufferTexture);
    drawQuad(device.quad);
}

} // namespace

void drawShaderEffect(const Device& device, Effect& effect, const Draw& draw) {
    if (!hasBuffer(effect)) {
        drawPass(device, effect, effect.main, draw, 0);
        return;
    }
    const RenderTarget& picture = effect.bufferTargets[effect.bufferFront];
    const InputTexture buffer = {picture.texture, picture.width, picture.height, 0};
    Draw main = draw;
    if (!main.input || !main.input->texture) main.input = &buffer;
    drawPass(device, effect, effect.main, main, picture.texture);
}

void drawBufferPass(const Device& device, Effect& effect, const Draw& draw) {
    ensureBufferTargets(effect, draw.width, draw.height);
    const GLuint previous = effect.bufferTargets[effect.bufferFront].texture;
    effect.bufferFront = 1 - effect.bufferFront;
    drawPass(device, effect, effect.buffer, drawInto(effect.bufferTargets[effect.bufferFront], draw), previous);
}

void ensureBufferTargets(Effect& effect, int width, int height) {
    if (hasSize(effect.bufferTargets[0], width, height) && hasSize(effect.bufferTargets[1], width, height)) return;
    for (RenderTarget& target : effect.bufferTargets) ensureTarget(target, width, height);
    clearBufferTargets(effect);
}

void clearBufferTargets(Effect& effect) {
    for (const RenderTarget& target : effect.bufferTargets) {
        bindTarget(target);
        glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    effect.bufferFront = 0;
}
