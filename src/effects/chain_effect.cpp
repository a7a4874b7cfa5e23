#include "effects/chain_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"
#include "foundation/text.h"

namespace {
enum Child { kSource, kPost };
}

bool createChain(const Materials& materials, const TimelineEntry& entry, Effect& effect) {
    if (entry.children.empty()) {
        logLine("    [ERROR] Chain requires params.source and params.postProcess\n");
        return false;
    }
    for (const TimelineEntry& child : entry.children) effect.children.push_back(createChild(materials, child));
    if (!isRunnable(*effect.children[kSource]) || !isRunnable(*effect.children[kPost])) {
        logLine("    [ERROR] Chain child failed: source=%s post=%s\n", orNone(entry.children[kSource].type),
                orNone(entry.children[kPost].type));
        return false;
    }
    return true;
}

void drawChain(Device& device, Effect& effect, const Draw& draw) {
    renderChild(device, *effect.children[kSource], effect.childTargets[0], draw, draw.time);
    const InputTexture picture = {effect.childTargets[0].texture, draw.width, draw.height, 0};
    Draw post = childDraw(*effect.children[kPost], draw, draw.time);
    post.input = &picture;
    drawEffect(device, *effect.children[kPost], post);
}
