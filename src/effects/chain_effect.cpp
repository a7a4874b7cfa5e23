#include "effects/chain_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"

namespace {
enum Child { kSource, kPost };
}

bool createChain(const TimelineEntry& entry, Effect& effect) {
    const JsonValue& source = find(entry.params, "source");
    const JsonValue& post = find(entry.params, "postProcess");
    if (source.kind != JsonKind::object || post.kind != JsonKind::object) {
        logLine("    [ERROR] Chain requires params.source and params.postProcess\n");
        return false;
    }
    effect.children.push_back(createChild(source, entry, "source"));
    effect.children.push_back(createChild(post, entry, "post"));
    if (!isRunnable(*effect.children[kSource]) || !isRunnable(*effect.children[kPost])) {
        logLine("    [ERROR] Chain child failed: source=%s post=%s\n", childType(source).c_str(),
                childType(post).c_str());
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
