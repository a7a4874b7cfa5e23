#include "platform/stop_request.h"

#include <atomic>
#include <csignal>
#include <initializer_list>

#include <unistd.h>

namespace {

// The handler's: it may interrupt any thread anywhere, even inside a lock.
std::atomic<int> requests = 0;
std::atomic<int> lastSignal = SIGTERM;
std::atomic<bool> held = false;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

void requestStop(int number) {
    lastSignal = number;
    if (++requests < 2 || held) return;
    std::signal(number, SIG_DFL);
    raise(number); // comes through when the handler returns
}

// A signal that the parent has the program ignore (nohup) stays ignored.
void catchStopSignal(int number) {
    struct sigaction action = {};
    if (sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) return;
    action = {};
    action.sa_handler = requestStop;
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
}

} // namespace

void catchStopRequests() {
    requests = 0;
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) catchStopSignal(number);
}

int stopRequests() {
    return requests;
}

void holdStopRequests(bool hold) {
    held = hold;
}

void endByStopRequest() {
    std::signal(lastSignal, SIG_DFL);
    raise(lastSignal);
    _exit(1); // where the signal is blocked
}
