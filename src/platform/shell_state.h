// What the window's events and keys ask of the main loop: one shared state, written while messages are
// pumped and read once a frame, all on one thread.
#pragma once

#include <string>

// The keys that mean something to the player.
enum class PlayerKey { left, right, up, down, escape };

struct ShellState {
    int clientWidth = 1280; // pixels
    int clientHeight = 720;
    bool running = true;
    std::string exitReason; // the first reason recorded wins
    bool cursorHidden = false;
    int pendingSceneStep = 0;        // +1 after Right, -1 after Left; the last press wins
    float pendingSeekSeconds = 0.0f; // +10 per Up, -10 per Down; presses add up
};

ShellState& shellState();

// Stores the client size of a surface that has just been made and says it in the log.
void announceClientSize(int width, int height, int requestedWidth, int requestedHeight, bool fullscreen);

// The window has a new size. None at all (minimised) changes nothing: pictures that later frames build on would be
// made anew.
void resizeClient(int width, int height);

// Records the reason if there is none yet.
void recordExitReason(const char* reason);

// Records the reason if there is none yet, and asks the main loop to stop.
void stopRunning(const char* reason);

void pressKey(PlayerKey key);
