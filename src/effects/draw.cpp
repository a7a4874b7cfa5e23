#include "effects/blend_effect.h"
#include "effects/chain_effect.h"
#include "effects/effect.h"
#include "effects/image_effect.h"
#include "effects/pip_effect.h"
#include "effects/shader_effect.h"
#include "effects/split_effect.h"
#include "effects/timeline_blend_effect.h"

void drawEffect(Device& device, Effect& effect, const Draw& draw) {
    if (!isRunnable(effect)) return;
    if (hasBuffer(effect)) drawBufferPass(device, effect, draw);
    Program* const program = effect.main.program;
    const UniformValues& values = effect.main.values;
    switch (effect.kind) {
    case EffectKind::none: break;
    case EffectKind::image: drawImageEffect(device, effect, draw); break;
    case EffectKind::shader: drawShaderEffect(device, effect, draw); break;
    case EffectKind::bitmapText: drawBitmapText(device, effect.bitmapText, *program, values, draw); break;
    case EffectKind::kineticText: drawKineticText(effect.kineticText, *program, values, draw); break;
    case EffectKind::lowerThird:
    case EffectKind::creditRoll: drawCaption(effect.caption, *program, values, draw); break;
    case EffectKind::shapeText: drawShapeText(device, effect.shapeText, *program, values, draw); break;
    case EffectKind::blend: drawBlend(device, effect, draw); break;
    case EffectKind::timelineBlend: drawTimelineBlend(device, effect, draw); break;
    case EffectKind::chain: drawChain(device, effect, draw); break;
    case EffectKind::dynamicSplit: drawDynamicSplit(device, effect, draw); break;
    case EffectKind::pip: drawPip(device, effect, draw); break;
    }
}
