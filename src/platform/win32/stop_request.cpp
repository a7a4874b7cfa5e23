#include "platform/win32/stop_request.h"

#include <csignal>
#include <initializer_list>

#include <windows.h>

namespace {

// The C library calls this on a thread of the console's, and has put the default back before.
volatile std::sig_atomic_t stopRequested = 0;

void requestStop(int number) {
    stopRequested = 1;
    // Also a closed console, a log-off and a shutdown: the process is ended as soon as the handler returns, so it
    // waits for the main thread to end it. The system's patience, five seconds, bounds the wait.
    if (number == SIGBREAK) Sleep(INFINITE);
}

} // namespace

void catchStopRequests() {
    stopRequested = 0;
    for (const int number : {SIGINT, SIGTERM, SIGBREAK}) {
        // One that the parent has the program ignore stays ignored.
        if (std::signal(number, requestStop) == SIG_IGN) std::signal(number, SIG_IGN);
    }
}

bool isStopRequested() {
    return stopRequested != 0;
}
