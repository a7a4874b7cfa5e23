#include "effects/blend_effect.h"
#include "effects/chain_effect.h"
#include "effects/effect.h"
#include "effects/image_effect.h"
#include "effects/pip_effect.h"
#include "effects/shader_effect.h"
#include "effects/split_effect.h"
#include "effects/timeline_blend_effect.h"

void drawEffectPasses(Effect& effect, int width, int height, const InputTexture* input) {
    const GLuint program = effect.mainProgram;
    const float time = effect.localTime;
    const int frame = effect.frameCounter;
    if (!isRunnable(effect)) return;
    if (effect.hasBuffer) drawBufferPass(effect, width, height, input);
    glViewport(0, 0, width, height);
    switch (effect.kind) {
    case EffectKind::none: break;
    case EffectKind::image: drawImageEffect(effect, width, height, input); break;
    case EffectKind::shader: drawShaderEffect(effect, width, height, input); break;
    case EffectKind::bitmapText: drawBitmapText(effect.bitmapText, program, time, frame, width, height); break;
    case EffectKind::kineticText: drawKineticText(effect.kineticText, program, time, frame, width, height); break;
    case EffectKind::lowerThird:
    case EffectKind::creditRoll: drawCaption(effect.caption, program, time, frame, width, height); break;
    case EffectKind::shapeText: drawShapeText(effect.shapeText, program, time, frame, width, height); break;
    case EffectKind::blend: drawBlend(effect, width, height, input); break;
    case EffectKind::timelineBlend: drawTimelineBlend(effect, width, height, input); break;
    case EffectKind::chain: drawChain(effect, width, height, input); break;
    case EffectKind::dynamicSplit: drawDynamicSplit(effect, width, height, input); break;
    case EffectKind::pip: drawPip(effect, width, height, input); break;
    }
}
