#include "platform/clock.h"

#include <time.h>

namespace {
constexpr int64_t kNanosecondsPerSecond = 1'000'000'000;
}

int64_t clockCounter() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<int64_t>(now.tv_sec) * kNanosecondsPerSecond + now.tv_nsec;
}

int64_t clockFrequency() {
    return kNanosecondsPerSecond;
}

void sleepUntil(int64_t counter) {
    const timespec time = {counter / kNanosecondsPerSecond, counter % kNanosecondsPerSecond};
    clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr);
}
