// The picture's surface: a window with a GL 3.3 core context, or a context without any display.
#pragma once

// Looks up a GL entry point in the current context; null when there is none. On Windows those of GL 1.1, which
// the system library exports, are not found this way.
using GlAddress = void (*)();
using GlLookup = GlAddress (*)(const char* name);

struct Surface; // the system's window, display and context handles

// Opens the player's window, makes its context current and turns vertical sync on; writes the client
// size to shellState() and hides the cursor. As long as it is open the system leaves the display on. Sizes in
// pixels, at least 1, and no more than the system's windows can have; full screen takes the size of the desktop.
// Null when there is no window or context to be had; the system's words are then on standard error.
Surface* createPlayerWindow(int width, int height, bool fullscreen);

// Makes a current context whose framebuffer 0 is a picture of the given size, without a display.
// SIGINT, SIGTERM and SIGHUP (Ctrl+C, a closed terminal) stop the run like a closed message queue does. Null as above.
Surface* createHeadlessSurface(int width, int height);

// Delivers pending window events and keys to shellState(). Without a window only stop requests.
void pumpMessages(Surface* surface);

// Shows the finished frame; without a window waits until it is finished.
void presentFrame(Surface* surface);

// The look-up function of the surface's kind.
GlLookup glLookup(const Surface* surface);

// Destroys context and window; null is ignored.
void destroySurface(Surface* surface);

// Announces to the system that the player scales its own pixels, before any window exists; says what
// was reached where the system has such a setting.
void announceDpiAwareness();
