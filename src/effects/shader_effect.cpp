#include "effects/shader_effect.h"

#include "gpu/gl_functions.h"
#include "gpu/quad.h"

namespace {

void drawPass(const Effect& effect, GLuint program, int width, int height, const InputTexture* input,
              GLuint bufferTexture) {
    gl.UseProgram(program);
    setStandardUniforms(program, effect.localTime, effect.frameCounter, effect.alpha, width, height);
    bindChannels(program, effect.channels, width, height, input);
    bindBufferTexture(program, bufferTexture);
    drawQuad();
}

} // namespace

void drawShaderEffect(const Effect& effect, int width, int height, const InputTexture* input) {
    if (!effect.hasBuffer) {
        drawPass(effect, effect.mainProgram, width, height, input, 0);
        return;
    }
    const RenderTarget& picture = effect.bufferTargets[effect.bufferFront];
    const InputTexture buffer = {picture.texture, picture.width, picture.height, 0};
    const bool handed = input && input->texture;
    drawPass(effect, effect.mainProgram, width, height, handed ? input : &buffer, picture.texture);
}

void drawBufferPass(Effect& effect, int width, int height, const InputTexture* input) {
    ensureBufferTargets(effect, width, height);
    const DrawBinding output = saveBinding();
    const GLuint previous = effect.bufferTargets[effect.bufferFront].texture;
    effect.bufferFront = 1 - effect.bufferFront;

    bindTarget(effect.bufferTargets[effect.bufferFront]);
    glDisable(GL_BLEND);
    drawPass(effect, effect.bufferProgram, width, height, input, previous);
    restoreBinding(output);
}

void ensureBufferTargets(Effect& effect, int width, int height) {
    if (hasSize(effect.bufferTargets[0], width, height) && hasSize(effect.bufferTargets[1], width, height)) return;
    const DrawBinding output = saveBinding();
    for (RenderTarget& target : effect.bufferTargets) ensureTarget(target, width, height);
    restoreBinding(output);
    clearBufferTargets(effect);
}

void clearBufferTargets(Effect& effect) {
    const DrawBinding output = saveBinding();
    for (const RenderTarget& target : effect.bufferTargets) {
        bindTarget(target);
        glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    restoreBinding(output);
    effect.bufferFront = 0;
}
