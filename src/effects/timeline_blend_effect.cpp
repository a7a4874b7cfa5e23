#include "effects/timeline_blend_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"
#include "foundation/text.h"
#include "gpu/gl_functions.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kLeastLoop = 0.001f;     // seconds
constexpr float kLeastOverlap = 0.0001f; // seconds

float endOf(const BlendStep& step) {
    return step.start + step.duration;
}

void appendStep(const Materials& materials, const TimelineEntry& entry, Effect& effect, int index,
                const BlendStep& step) {
    if (step.child < 0) {
        logLine("    [WARN] TimelineBlend step %d missing effect object\n", index);
        return;
    }
    const TimelineEntry& description = entry.children[static_cast<size_t>(step.child)];
    std::unique_ptr<Effect> child = createChild(materials, description);
    if (!isRunnable(*child)) {
        logLine("    [WARN] TimelineBlend step %d failed: type=%s\n", index, orNone(description.type));
        releaseEffect(*child);
        return;
    }
    effect.children.push_back(std::move(child));
    effect.steps.push_back(step);
    effect.stepsEnd = std::max(effect.stepsEnd, endOf(step));
}

// The time within the steps, wrapped when they loop.
double stepTime(const Effect& effect, double time) {
    const bool wraps = effect.loopSteps && effect.stepsEnd > kLeastLoop;
    return wraps ? std::fmod(std::max(time, 0.0), static_cast<double>(effect.stepsEnd)) : time;
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

void renderStep(Device& device, Effect& effect, int step, RenderTarget& target, double t, const Draw& draw) {
    const double time = std::max(t - static_cast<double>(effect.steps[step].start), 0.0);
    renderChild(device, *effect.children[step], target, draw, time);
}

} // namespace

bool createTimelineBlend(const Materials& materials, const TimelineEntry& entry, Effect& effect) {
    const TimelineBlendParams& params = paramsOf<TimelineBlendParams>(entry);
    if (!params.hasSteps) {
        logLine("    [ERROR] TimelineBlend requires params.steps\n");
        return false;
    }
    if (!createTransitionRenderer(materials.device, effect.mixer, materials.show.baseDir, effect.type)) return false;
    int index = 0;
    for (const BlendStep& step : params.steps) appendStep(materials, entry, effect, index++, step);
    if (effect.children.empty()) {
        logLine("    [ERROR] TimelineBlend has no runnable steps\n");
        return false;
    }
    if (!createBlit(materials.device, effect)) return false;
    effect.loopSteps = params.loop;
    effect.mixLook = params.look;
    return true;
}

void drawTimelineBlend(Device& device, Effect& effect, const Draw& draw) {
    const double time = stepTime(effect, draw.time);
    const float t = static_cast<float>(time);
    const ActiveSteps active = findActive(effect.steps, t);
    if (active.first < 0) {
        beginDraw(draw);
        glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        return;
    }
    renderStep(device, effect, active.first, effect.childTargets[0], time, draw);
    if (active.second < 0) {
        beginDraw(draw);
        drawPicture(device, effect, effect.childTargets[0].texture, draw.opacity);
        return;
    }
    renderStep(device, effect, active.second, effect.childTargets[1], time, draw);
    const BlendStep& first = effect.steps[active.first];
    const BlendStep& second = effect.steps[active.second];
    const float overlap = std::min(endOf(first), endOf(second)) - second.start;
    const float progress = std::clamp((t - second.start) / std::max(overlap, kLeastOverlap), 0.0f, 1.0f);
    renderTransition(device, effect.mixer, draw, effect.childTargets[0].texture, effect.childTargets[1].texture,
                     progress, effect.mixLook);
}
