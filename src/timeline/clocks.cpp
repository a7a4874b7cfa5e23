#include "timeline/clocks.h"

#include <algorithm>
#include <cmath>

void resetClocks(Clocks& clocks, const Timeline& timeline) {
    clocks.entries.assign(timeline.entries.size(), {});
}

void seekClock(EntryClock& clock, float timeScale, float seconds) {
    constexpr float kNominalFrameRate = 60.0f;
    constexpr float kMostFrames = 2147483520.0f; // the largest float below 2^31
    const float passed = std::max(seconds, 0.0f);
    clock = {};
    clock.origin = static_cast<double>(passed * timeScale);
    clock.frame = static_cast<int>(std::lroundf(std::min(kNominalFrameRate * passed, kMostFrames)));
}

void advanceClock(EntryClock& clock, const Clocks& clocks, float delta) {
    if (clocks.rate > 0.0) {
        clock.steps += delta > 0.0f ? 1 : 0;
    } else {
        clock.passed += static_cast<double>(delta);
    }
    if (clock.frame < INT32_MAX) ++clock.frame;
}

double clockTime(const EntryClock& clock, const Clocks& clocks, float timeScale) {
    const double passed = clocks.rate > 0.0 ? static_cast<double>(clock.steps) / clocks.rate : clock.passed;
    return clock.origin + passed * static_cast<double>(timeScale);
}
