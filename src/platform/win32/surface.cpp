#include "platform/win32/surface.h"

#include "foundation/log.h"
#include "platform/library.h"
#include "platform/shell_state.h"
#include "platform/stop_request.h"
#include "platform/win32/wgl.h"

namespace {

// The oldest systems that the player runs on lack the first; both are looked up.
using SetDpiAwarenessContext = BOOL(WINAPI*)(void* context);
using SetDpiAware = BOOL(WINAPI*)();

void* const kPerMonitorAwareV2 = reinterpret_cast<void*>(-4);

} // namespace

// The hidden window behind a headless surface has a queue too, which the system wants to see emptied.
void pumpMessages(Surface*) {
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) stopRunning("WM_QUIT");
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    if (stopRequests() > 0) stopRunning("WM_QUIT");
}

void presentFrame(Surface* surface) {
    switch (surface->kind) {
    case SurfaceKind::window: SwapBuffers(surface->deviceContext); return;
    case SurfaceKind::headless: glFinish(); return;
    }
}

GlLookup glLookup(const Surface*) {
    return [](const char* name) { return reinterpret_cast<GlAddress>(wglAddress(name)); };
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
    void* library = openLibrary("user32.dll");
    SetDpiAwarenessContext setContext = nullptr;
    SetDpiAware setAware = nullptr;
    if (resolveSymbol(library, "SetProcessDpiAwarenessContext", setContext) && setContext(kPerMonitorAwareV2)) {
        logLine("[WIN] DPI awareness: Per-monitor v2\n");
    } else if (resolveSymbol(library, "SetProcessDPIAware", setAware) && setAware()) {
        logLine("[WIN] DPI awareness: System\n");
    } else {
        logLine("[WIN] DPI awareness: default (not elevated)\n");
    }
    closeLibrary(library);
}
