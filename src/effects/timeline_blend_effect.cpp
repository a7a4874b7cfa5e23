#include "effects/timeline_blend_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"
#include "gpu/gl_functions.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kLeastDuration = 0.001f; // seconds
constexpr float kLeastOverlap = 0.0001f; // seconds

BlendStep readStep(const JsonValue& json) {
    BlendStep step;
    step.start = getBounded(find(json, "startTime"), step.start, 0.0f, kNoBound);
    step.start = getBounded(find(json, "start"), step.start, 0.0f, kNoBound);
    step.duration = getBounded(find(json, "duration"), step.duration, kLeastDuration, kNoBound);
    return step;
}

float endOf(const BlendStep& step) {
    return step.start + step.duration;
}

void appendStep(const TimelineEntry& entry, Effect& effect, int index, const JsonValue& json) {
    const JsonValue& description = find(json, "effect");
    if (description.kind != JsonKind::object) {
        logLine("    [WARN] TimelineBlend step %d missing effect object\n", index);
        return;
    }
    std::unique_ptr<Effect> child = createChild(description, entry, "step" + std::to_string(index));
    if (!isRunnable(*child)) {
        logLine("    [WARN] TimelineBlend step %d failed: type=%s\n", index, childType(description).c_str());
        releaseEffect(*child);
        return;
    }
    effect.children.push_back(std::move(child));
    effect.steps.push_back(readStep(json));
    effect.stepsEnd = std::max(effect.stepsEnd, endOf(effect.steps.back()));
}

// The time within the steps, wrapped when they loop.
float stepTime(const Effect& effect) {
    const bool wraps = effect.loopSteps && effect.stepsEnd > kLeastDuration;
    return wraps ? std::fmod(std::max(effect.localTime, 0.0f), effect.stepsEnd) : effect.localTime;
}

// The two steps that play at t and start first, -1 where there are none; earlier in the list on ties.
struct ActiveSteps {
    int first = -1;
    int second = -1;
};

ActiveSteps findActive(const std::vector<BlendStep>& steps, float t) {
    ActiveSteps active;
    for (int i = 0; i < static_cast<int>(steps.size()); ++i) {
        if (t < steps[i].start || t > endOf(steps[i])) continue;
        if (active.first < 0 || steps[i].start < steps[active.first].start) {
            active.second = active.first;
            active.first = i;
        } else if (active.second < 0 || steps[i].start < steps[active.second].start) {
            active.second = i;
        }
    }
    return active;
}

void renderStep(Effect& effect, int step, RenderTarget& target, float t, int width, int height,
                const InputTexture* input) {
    propagateClock(effect, *effect.children[step], std::max(t - effect.steps[step].start, 0.0f));
    renderToTarget(*effect.children[step], target, width, height, input);
}

} // namespace

bool createTimelineBlend(const TimelineEntry& entry, Effect& effect) {
    const JsonValue& steps = find(entry.params, "steps");
    if (steps.kind != JsonKind::array) {
        logLine("    [ERROR] TimelineBlend requires params.steps\n");
        return false;
    }
    if (!createTransitionRenderer(effect.mixer, entry.baseDir, effect.type)) return false;
    for (size_t i = 0; i < steps.items.size(); ++i) appendStep(entry, effect, static_cast<int>(i), steps.items[i]);
    if (effect.children.empty()) {
        logLine("    [ERROR] TimelineBlend has no runnable steps\n");
        return false;
    }
    effect.blitProgram = borrowBlitProgram();
    if (!effect.blitProgram) return false;
    effect.loopSteps = getBool(find(entry.params, "loop"), true);
    effect.mixLook = readTransitionLook(getString(find(entry.params, "mixMode"), "fade"), entry.params);
    effect.mainProgram = effect.mixer.program;
    return true;
}

void drawTimelineBlend(Effect& effect, int width, int height, const InputTexture* input) {
    const float t = stepTime(effect);
    const ActiveSteps active = findActive(effect.steps, t);
    if (active.first < 0) {
        glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        return;
    }
    renderStep(effect, active.first, effect.childTargets[0], t, width, height, input);
    if (active.second < 0) {
        drawPicture(effect.blitProgram, effect.childTargets[0].texture, effect.alpha);
        return;
    }
    renderStep(effect, active.second, effect.childTargets[1], t, width, height, input);
    const BlendStep& first = effect.steps[active.first];
    const BlendStep& second = effect.steps[active.second];
    const float overlap = std::min(endOf(first), endOf(second)) - second.start;
    const float progress = std::clamp((t - second.start) / std::max(overlap, kLeastOverlap), 0.0f, 1.0f);
    renderTransition(effect.mixer, static_cast<GLuint>(saveBinding().framebuffer), width, height,
                     effect.childTargets[0].texture, effect.childTargets[1].texture, progress, effect.mixLook);
}
