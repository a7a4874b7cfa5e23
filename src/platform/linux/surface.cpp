#include "platform/linux/surface.h"

#include "foundation/log.h"
#include "platform/shell_state.h"

void announceClientSize(int width, int height, int requestedWidth, int requestedHeight, bool fullscreen) {
    shellState().clientWidth = width;
    shellState().clientHeight = height;
    logLine("[WIN] Client size: %dx%d (requested=%dx%d, fullscreen=%s)\n", width, height, requestedWidth,
            requestedHeight, fullscreen ? "true" : "false");
}

void pumpMessages(Surface* surface) {
    switch (surface->kind) {
    case SurfaceKind::window: pumpWindow(*surface); return;
    case SurfaceKind::headless: pumpHeadless(); return;
    }
}

void presentFrame(Surface* surface) {
    switch (surface->kind) {
    case SurfaceKind::window: presentWindow(*surface); return;
    case SurfaceKind::headless: presentHeadless(); return;
    }
}

GlLookup glLookup(const Surface* surface) {
    switch (surface->kind) {
    case SurfaceKind::window: return windowGlAddress;
    case SurfaceKind::headless: return headlessGlAddress;
    }
    return nullptr;
}

void destroySurface(Surface* surface) {
    if (!surface) return;
    switch (surface->kind) {
    case SurfaceKind::window: destroyWindow(*surface); break;
    case SurfaceKind::headless: destroyHeadless(*surface); break;
    }
    delete surface;
}

void announceDpiAwareness() {
    // Sizes are asked for in pixels here; there is nothing to announce.
}
