#include "effects/blend_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"
#include "foundation/text.h"

#include <algorithm>

namespace {

enum Child { kSource, kTarget };

} // namespace

bool createBlend(const TimelineEntry& entry, const RuntimeConfig& show, Effect& effect) {
    if (entry.children.empty()) {
        logLine("    [ERROR] Blend requires params.source and params.target\n");
        return false;
    }
    if (!createTransitionRenderer(effect.mixer, show.baseDir, effect.type)) return false;
    for (const TimelineEntry& child : entry.children) effect.children.push_back(createChild(child, show));
    if (!isRunnable(*effect.children[kSource]) || !isRunnable(*effect.children[kTarget])) {
        logLine("    [ERROR] Blend child failed: source=%s target=%s\n", orNone(entry.children[kSource].type),
                orNone(entry.children[kTarget].type));
        return false;
    }
    effect.blend = paramsOf<BlendParams>(entry);
    effect.mixLook = effect.blend.look;
    effect.mainProgram = effect.mixer.program;
    return true;
}

void drawBlend(Effect& effect, int width, int height, const InputTexture* input) {
    const float progress = std::clamp((effect.localTime - effect.blend.startTime) / effect.blend.blendDuration, 0.0f,
                                      1.0f);
    const DrawBinding output = saveBinding();
    for (const Child child : {kSource, kTarget}) { // one that is covered too: its feedback lives on being drawn
        propagateClock(effect, *effect.children[child], effect.localTime);
        renderToTarget(*effect.children[child], effect.childTargets[child], width, height, input);
    }
    renderTransition(effect.mixer, static_cast<GLuint>(output.framebuffer), width, height,
                     effect.childTargets[kSource].texture, effect.childTargets[kTarget].texture, progress,
                     effect.mixLook);
}
