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
    const TargetBinding output = currentTarget();
    const bool blending = glIsEnabled(GL_BLEND);
    const GLuint previous = effect.bufferTargets[effect.bufferFront].texture;
    effect.bufferFront = 1 - effect.bufferFront;

    bindTarget(effect.bufferTargets[effect.bufferFront]);
    glDisable(GL_BLEND);
    drawPass(effect, effect.bufferProgram, width, height, input, previous);

    bindTarget(output);
    if (blending) glEnable(GL_BLEND);
}

void ensureBufferTargets(Effect& effect, int width, int height) {
    const TargetBinding output = currentTarget();
    bool made = false;
    for (RenderTarget& target : effect.bufferTargets) made |= ensureTarget(target, width, height);
    bindTarget(output);
    if (made) clearBufferTargets(effect);
}

void clearBufferTargets(Effect& effect) {
    const TargetBinding output = currentTarget();
    for (const RenderTarget& target : effect.bufferTargets) {
        bindTarget(target);
        glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    bindTarget(output);
    effect.bufferFront = 0;
}
