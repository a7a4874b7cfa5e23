#include "effects/effect.h"

#include "effects/shader_effect.h"

bool isRunnable(const Effect& effect) {
    return effect.kind != EffectKind::none;
}

bool hasBuffer(const Effect& effect) {
    return effect.buffer.program != nullptr;
}

void releaseEffect(Effect& effect) {
    for (const auto& child : effect.children) releaseEffect(*child);
    for (RenderTarget& target : effect.bufferTargets) deleteTarget(target);
    for (RenderTarget& target : effect.childTargets) deleteTarget(target);
    releaseBitmapText(effect.bitmapText);
    releaseKineticText(effect.kineticText);
    releaseCaption(effect.caption);
    effect = {};
}

void clearFeedback(Effect& effect) {
    for (const auto& child : effect.children) clearFeedback(*child);
    if (hasBuffer(effect)) clearBufferTargets(effect);
}
