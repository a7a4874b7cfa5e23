#include "platform/clock.h"

#include <windows.h>

namespace {

// The plain one, of systems before Windows 10, wakes with the system's tick, up to 16 ms late.
HANDLE createTimer() {
    constexpr DWORD kHighResolution = 2; // CREATE_WAITABLE_TIMER_HIGH_RESOLUTION
    const HANDLE timer = CreateWaitableTimerExW(nullptr, nullptr, kHighResolution, TIMER_ALL_ACCESS);
    return timer ? timer : CreateWaitableTimerExW(nullptr, nullptr, 0, TIMER_ALL_ACCESS);
}

} // namespace

int64_t clockCounter() {
    LARGE_INTEGER now = {};
    QueryPerformanceCounter(&now);
    return now.QuadPart;
}

int64_t clockFrequency() {
    LARGE_INTEGER frequency = {};
    QueryPerformanceFrequency(&frequency);
    return frequency.QuadPart;
}

void sleepUntil(int64_t counter) {
    static const HANDLE timer = createTimer(); // the system takes it back
    constexpr double kUnits = 1e7;             // of the timer, a second
    const int64_t left = counter - clockCounter();
    if (left <= 0) return;
    LARGE_INTEGER due = {}; // negative: from now on
    due.QuadPart = -static_cast<int64_t>(static_cast<double>(left) * kUnits / static_cast<double>(clockFrequency()));
    if (SetWaitableTimer(timer, &due, 0, nullptr, nullptr, FALSE)) WaitForSingleObject(timer, INFINITE);
}
