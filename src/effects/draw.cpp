#include "effects/draw.h"

#include "effects/image_effect.h"
#include "effects/shader_effect.h"

void drawEffectPasses(Effect& effect, int width, int height, const InputTexture* input) {
    if (!isRunnable(effect)) return;
    if (effect.hasBuffer) drawBufferPass(effect, width, height, input);
    glViewport(0, 0, width, height);
    switch (effect.kind) {
    case EffectKind::none: break;
    case EffectKind::image: drawImageEffect(effect, width, height, input); break;
    case EffectKind::shader: drawShaderEffect(effect, width, height, input); break;
    }
}
