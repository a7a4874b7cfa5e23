#include "effects/blend_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"
#include "foundation/text.h"

#include <algorithm>

namespace {

enum Child { kSource, kTarget };

} // namespace

bool createBlend(const Materials& materials, const TimelineEntry& entry, Effect& effect) {
    if (entry.children.empty()) {
        logLine("    [ERROR] Blend requires params.source and params.target\n");
        return false;
    }
    if (!createTransitionRenderer(materials.device, effect.mixer, materials.show.baseDir, effect.type)) return false;
    for (const TimelineEntry& child : entry.children) effect.children.push_back(createChild(materials, child));
    if (!isRunnable(*effect.children[kSource]) || !isRunnable(*effect.children[kTarget])) {
        logLine("    [ERROR] Blend child failed: source=%s target=%s\n", orNone(entry.children[kSource].type),
                orNone(entry.children[kTarget].type));
        return false;
    }
    effect.blend = paramsOf<BlendParams>(entry);
    effect.mixLook = effect.blend.look;
    return true;
}

void drawBlend(Device& device, Effect& effect, const Draw& draw) {
    for (const Child child : {kSource, kTarget}) {
        renderChild(device, *effect.children[child], effect.childTargets[child], draw, draw.time);
    }
    const float passed = static_cast<float>(draw.time) - effect.blend.startTime;
    const float progress = std::clamp(passed / effect.blend.blendDuration, 0.0f, 1.0f);
    renderTransition(device, effect.mixer, draw, effect.childTargets[kSource].texture,
                     effect.childTargets[kTarget].texture, progress, effect.mixLook);
}
