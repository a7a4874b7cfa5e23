#include "effects/chain_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"
#include "foundation/text.h"

namespace {
enum Child { kSource, kPost };
}

bool createChain(const TimelineEntry& entry, const RuntimeConfig& show, Effect& effect) {
    if (entry.children.empty()) {
        logLine("    [ERROR] Chain requires params.source and params.postProcess\n");
        return false;
    }
    for (const TimelineEntry& child : entry.children) effect.children.push_back(createChild(child, show));
    if (!isRunnable(*effect.children[kSource]) || !isRunnable(*effect.children[kPost])) {
        logLine("    [ERROR] Chain child failed: source=%s post=%s\n", orNone(entry.children[kSource].type),
                orNone(entry.children[kPost].type));
        return false;
    }
    effect.mainProgram = kPlaceholderProgram;
    return true;
}

void drawChain(Effect& effect, int width, int height, const InputTexture* input) {
    for (auto& child : effect.children) propagateClock(effect, *child, effect.localTime);
    renderToTarget(*effect.children[kSource], effect.childTargets[0], width, height, input);
    const InputTexture picture = {effect.childTargets[0].texture, width, height, 0};
    drawEffectPasses(*effect.children[kPost], width, height, &picture);
}
