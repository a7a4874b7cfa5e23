#include "app/run_clock.h"

#include "platform/clock.h"

#include <algorithm>

namespace {

// A stall (a dragged window, a breakpoint) must not jump the show forward.
constexpr float kMaxDelta = 0.1f;
constexpr double kMostSleep = 0.05; // seconds

void tickReal(RunClock& clock) {
    const int64_t now = clockCounter();
    const double seconds = static_cast<double>(now - clock.lastCounter) / static_cast<double>(clockFrequency());
    clock.lastCounter = now;
    const float most = clock.pace > 0.0 ? std::max(kMaxDelta, static_cast<float>(2.0 / clock.pace)) : kMaxDelta;
    clock.delta = std::min(static_cast<float>(seconds), most);
    clock.showTime += static_cast<double>(clock.delta);
    clock.elapsed += static_cast<double>(clock.delta);
}

void tickStepped(RunClock& clock) {
    const bool first = clock.frames == 0;
    clock.delta = first ? 0.0f : static_cast<float>(1.0 / clock.fps);
    clock.framesSinceJump += first ? 0 : 1;
    clock.showTime = clock.jumpTime + static_cast<double>(clock.framesSinceJump) / clock.fps;
    clock.elapsed = static_cast<double>(clock.frames) / clock.fps;
}

} // namespace

RunClock startClock(double showTime, double fps) {
    RunClock clock;
    clock.fps = fps;
    jumpClock(clock, showTime);
    restartCounter(clock);
    clock.frameDue = clock.lastCounter;
    return clock;
}

void tickClock(RunClock& clock) {
    if (clock.fps > 0.0) {
        tickStepped(clock);
    } else {
        tickReal(clock);
    }
    ++clock.frames;
}

bool awaitFrame(RunClock& clock) {
    if (clock.pace <= 0.0) return true;
    const double frequency = static_cast<double>(clockFrequency());
    const int64_t period = static_cast<int64_t>(frequency / clock.pace);
    const int64_t due = clock.frameDue + period;
    const int64_t now = clockCounter();
    if (now < due) {
        sleepUntil(std::min(due, now + static_cast<int64_t>(kMostSleep * frequency)));
        return false;
    }
    // Frames keep to a grid; one that is a whole frame late begins a new one, for no row of hurried frames makes up.
    clock.frameDue = now - due > period ? now : due;
    return true;
}

void jumpClock(RunClock& clock, double showTime) {
    clock.showTime = showTime;
    clock.jumpTime = showTime;
    clock.framesSinceJump = 0;
}

void restartCounter(RunClock& clock) {
    clock.lastCounter = clockCounter();
}
