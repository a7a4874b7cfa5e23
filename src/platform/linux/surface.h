// The two kinds of surface behind platform/window.h, and what each kind's file offers to it.
#pragma once

#include "platform/window.h"

struct SDL_Window;

enum class SurfaceKind { window, headless };

// Handles of one kind are set, the others stay null; so do those that were not reached when the making
// broke off, and the kind's destroy function takes such a half-made surface too.
struct Surface {
    SurfaceKind kind = SurfaceKind::window;

    SDL_Window* window = nullptr;
    void* windowContext = nullptr;
    unsigned long nativeWindow = 0; // the X11 window, 0 on other window systems
    bool windowGone = false;        // destroyed by someone else; nothing may be asked of it any more

    void* display = nullptr; // EGL's
    void* context = nullptr;
    void* pixelBuffer = nullptr;
};

// Switches off what drivers are known to draw wrong; before a driver is loaded. A user's own setting stays.
void avoidDriverFaults();

void pumpWindow(Surface& surface);
void presentWindow(Surface& surface);
GlAddress windowGlAddress(const char* name);
void destroyWindow(Surface& surface);

void pumpHeadless();
void presentHeadless();
GlAddress headlessGlAddress(const char* name);
void destroyHeadless(Surface& surface);
