#include "effects/effect.h"

#include "effects/shader_effect.h"
#include "gpu/program_pool.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kNominalFrameRate = 60.0f;

} // namespace

bool isRunnable(const Effect& effect) {
    return effect.mainProgram != 0;
}

void releaseEffect(Effect& effect) {
    for (const auto& child : effect.children) releaseEffect(*child);
    releaseTransitionRenderer(effect.mixer); // its program is the main program of the kinds that mix
    for (const GLuint program : {effect.mainProgram, effect.bufferProgram, effect.blitProgram}) returnProgram(program);
    for (RenderTarget& target : effect.bufferTargets) deleteTarget(target);
    for (RenderTarget& target : effect.childTargets) deleteTarget(target);
    releaseBitmapText(effect.bitmapText);
    releaseKineticText(effect.kineticText);
    releaseCaption(effect.caption);
    effect = {};
}

void clearFeedback(Effect& effect) {
    for (const auto& child : effect.children) clearFeedback(*child);
    if (effect.hasBuffer) clearBufferTargets(effect);
}

void seekEffect(Effect& effect, float seconds) {
    const float passed = std::max(seconds, 0.0f);
    constexpr float kMostFrames = 2147483520.0f; // the largest float below 2^31
    effect.localTime = passed * effect.timeScale;
    effect.frameCounter = static_cast<int>(std::lroundf(std::min(kNominalFrameRate * passed, kMostFrames)));
}

void advanceEffect(Effect& effect, float delta) {
    effect.localTime += delta * effect.timeScale;
    if (effect.frameCounter < INT32_MAX) ++effect.frameCounter;
}
