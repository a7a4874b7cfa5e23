#include "config/entry_kinds.h"

#include "foundation/json.h"
#include "foundation/text.h"

namespace {

void addChild(TimelineEntry& entry, const JsonValue& json, const char* suffix, const Reading& at) {
    entry.children.push_back(deriveChildEntry(json, entry, suffix, at));
}

// Both or none: without one of them the effect cannot be made.
void addRequiredPair(TimelineEntry& entry, const JsonValue& params, const char* first, const char* second,
                     const char* secondSuffix, const Reading& at) {
    const JsonValue& a = find(params, first);
    const JsonValue& b = find(params, second);
    const bool hasFirst = isObject(a, inside(at, first)), hasSecond = isObject(b, inside(at, second));
    if (!hasFirst) noteOddity(at, first, OddKind::missing);
    if (!hasSecond) noteOddity(at, second, OddKind::missing);
    if (!hasFirst || !hasSecond) return;
    addChild(entry, a, first, inside(at, first));
    addChild(entry, b, secondSuffix, inside(at, second));
}

// The first of two keys that holds an object describes the child.
void addEither(TimelineEntry& entry, const JsonValue& params, const char* first, const char* second,
               const Reading& at) {
    const JsonValue& value = find(params, first);
    if (isObject(value, inside(at, first))) {
        addChild(entry, value, first, inside(at, first));
    } else {
        addChild(entry, find(params, second), first, inside(at, second));
    }
}

TimelineBlendParams readSteps(TimelineEntry& entry, const JsonValue& params, const Reading& at) {
    TimelineBlendParams blend = readTimelineBlend(params, at);
    if (!blend.hasSteps) noteOddity(at, "steps", OddKind::missing);
    const std::vector<JsonValue>& steps = find(params, "steps").items;
    blend.steps.reserve(steps.size());
    for (size_t i = 0; i < steps.size(); ++i) {
        const Reading place = inside(at, "steps", static_cast<int>(i));
        BlendStep step = readBlendStep(steps[i], place);
        const JsonValue& effect = find(steps[i], "effect");
        if (isObject(effect, inside(place, "effect"))) {
            step.child = static_cast<int>(entry.children.size());
            entry.children.push_back(
                deriveChildEntry(effect, entry, "step" + std::to_string(i), inside(place, "effect")));
        } else {
            noteOddity(place, "effect", OddKind::missing);
        }
        blend.steps.push_back(step);
    }
    return blend;
}

PipParams readInset(TimelineEntry& entry, const JsonValue& params, const Reading& at) {
    const bool insetIsImage = equalsIgnoringCase(entry.type, "piptexture");
    if (params.kind != JsonKind::object) {
        noteOddity(at, OddKind::missing);
        return {};
    }
    addChild(entry, find(params, "main"), "main", inside(at, "main"));
    if (!insetIsImage) addChild(entry, find(params, "pip"), "pip", inside(at, "pip"));
    return readPip(params, insetIsImage, at);
}

} // namespace

void readKindParams(TimelineEntry& entry, const JsonValue& params, const Reading& at) {
    switch (entry.kind) {
    case EffectKind::none: break;
    case EffectKind::image:
        if (!entry.type.empty()) entry.params = readImageParams(params, at);
        break;
    case EffectKind::shader:
        if (equalsIgnoringCase(entry.type, "glitch")) entry.params = readGlitchParams(params, at);
        break;
    case EffectKind::bitmapText: entry.params = parseBitmapTextParams(params, at); break;
    case EffectKind::kineticText: entry.params = parseKineticTextParams(params, at); break;
    case EffectKind::lowerThird: entry.params = readCaptionParams(params, false, at); break;
    case EffectKind::creditRoll: entry.params = readCaptionParams(params, true, at); break;
    case EffectKind::shapeText: entry.params = parseShapeTextParams(params, at); break;
    case EffectKind::blend:
        entry.params = readBlend(params, entry.duration, at);
        addRequiredPair(entry, params, "source", "target", "target", at);
        return;
    case EffectKind::timelineBlend: entry.params = readSteps(entry, params, at); return;
    case EffectKind::chain: addRequiredPair(entry, params, "source", "postProcess", "post", at); return;
    case EffectKind::dynamicSplit:
        entry.params = readSplit(params, at);
        addEither(entry, params, "a", "source", at);
        addEither(entry, params, "b", "target", at);
        return;
    case EffectKind::pip: entry.params = readInset(entry, params, at); return;
    }
    entry.shaderParams = readShaderParams(params);
}
