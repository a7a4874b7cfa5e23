#include "platform/stop_request.h"

#include <atomic>
#include <cstdlib>

#include <windows.h>

namespace {

constexpr DWORD kPatience = 1000; // milliseconds

// The system calls the handler on a thread of its own.
std::atomic<int> requests = 0;
std::atomic<bool> held = false;

BOOL WINAPI requestStop(DWORD event) {
    ++requests;
    if (event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT) return requests < 2 || held; // FALSE ends the process
    // A closed console, a log-off or a shutdown: the process is ended as soon as the handler returns, so it waits for
    // the main thread to end it. The system's patience, five seconds, bounds the wait; there will be no second event.
    Sleep(kPatience);
    ++requests;
    Sleep(INFINITE);
    return TRUE;
}

} // namespace

void catchStopRequests() {
    requests = 0;
    SetConsoleCtrlHandler(requestStop, FALSE); // one that is called twice would count twice
    SetConsoleCtrlHandler(requestStop, TRUE);
}

int stopRequests() {
    return requests;
}

void holdStopRequests(bool hold) {
    held = hold;
}

void endByStopRequest() {
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_CONTROL_C_EXIT));
    std::abort();
}
