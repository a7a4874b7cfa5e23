#include "platform/linux/surface.h"

#include <cstdlib>

void avoidDriverFaults() {
    // Mesa's software rasterizer takes a short cut for shaders that do little, and from the second program
    // on paints a uniform of 0.2 as 1.0 there (seen in 22.3.6).
    setenv("LP_PERF", "no_rast_linear", 0);
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
