#include "platform/shell_state.h"

#include "foundation/log.h"

namespace {
constexpr float kSeekSeconds = 10.0f;
}

ShellState& shellState() {
    static ShellState state;
    return state;
}

void announceClientSize(int width, int height, int requestedWidth, int requestedHeight, bool fullscreen) {
    shellState().clientWidth = width;
    shellState().clientHeight = height;
    logLine("[WIN] Client size: %dx%d (requested=%dx%d, fullscreen=%s)\n", width, height, requestedWidth,
            requestedHeight, fullscreen ? "true" : "false");
}

void resizeClient(int width, int height) {
    if (width <= 0 || height <= 0) return;
    shellState().clientWidth = width;
    shellState().clientHeight = height;
}

void recordExitReason(const char* reason) {
    if (shellState().exitReason.empty()) shellState().exitReason = reason;
}

void stopRunning(const char* reason) {
    recordExitReason(reason);
    shellState().running = false;
}

void pressKey(PlayerKey key) {
    ShellState& state = shellState();
    switch (key) {
    case PlayerKey::left: state.pendingSceneStep = -1; return;
    case PlayerKey::right: state.pendingSceneStep = 1; return;
    case PlayerKey::up: state.pendingSeekSeconds += kSeekSeconds; return;
    case PlayerKey::down: state.pendingSeekSeconds -= kSeekSeconds; return;
    case PlayerKey::escape: stopRunning("ESC"); return;
    }
}
