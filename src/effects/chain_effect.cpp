#include "effects/chain_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"

namespace {
enum Child { kSource, kPost };
}

bool createChain(const Materials& materials, const TimelineEntry& entry, Effect& effect) {
    const JsonValue& source = find(entry.params, "source");
    const JsonValue& post = find(entry.params, "postProcess");
    if (source.kind != JsonKind::object || post.kind != JsonKind::object) {
        logLine("    [ERROR] Chain requires params.source and params.postProcess\n");
        return false;
    }
    effect.children.push_back(createChild(materials, source, entry, "source"));
    effect.children.push_back(createChild(materials, post, entry, "post"));
    if (!isRunnable(*effect.children[kSource]) || !isRunnable(*effect.children[kPost])) {
        logLine("    [ERROR] Chain child failed: source=%s post=%s\n", childType(source).c_str(),
                childType(post).c_str());
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
