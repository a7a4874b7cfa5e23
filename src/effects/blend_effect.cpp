#include "effects/blend_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"

#include <algorithm>

namespace {

constexpr float kLeastDuration = 0.01f; // seconds
enum Child { kSource, kTarget };

BlendBlock readBlend(const JsonValue& params, float duration) {
    BlendBlock blend;
    blend.startTime = getBounded(find(params, "startTime"), blend.startTime, 0.0f, kNoBound);
    const float rest = duration - blend.startTime;
    blend.blendDuration = getBounded(find(params, "blendDuration"), rest, kLeastDuration, kNoBound);
    return blend;
}

} // namespace

bool createBlend(const Materials& materials, const TimelineEntry& entry, Effect& effect) {
    const JsonValue& source = find(entry.params, "source");
    const JsonValue& target = find(entry.params, "target");
    if (source.kind != JsonKind::object || target.kind != JsonKind::object) {
        logLine("    [ERROR] Blend requires params.source and params.target\n");
        return false;
    }
    if (!createTransitionRenderer(materials.device, effect.mixer, entry.baseDir, effect.type)) return false;
    effect.children.push_back(createChild(materials, source, entry, "source"));
    effect.children.push_back(createChild(materials, target, entry, "target"));
    if (!isRunnable(*effect.children[kSource]) || !isRunnable(*effect.children[kTarget])) {
        logLine("    [ERROR] Blend child failed: source=%s target=%s\n", childType(source).c_str(),
                childType(target).c_str());
        return false;
    }
    effect.mixLook = readTransitionLook(getString(find(entry.params, "mixMode"), "fade"), entry.params);
    effect.blend = readBlend(entry.params, entry.duration);
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
