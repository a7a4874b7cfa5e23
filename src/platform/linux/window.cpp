#include "platform/linux/surface.h"

#include "foundation/log.h"
#include "platform/library.h"
#include "platform/shell_state.h"

#include <SDL.h>
#include <SDL_syswm.h>

#include <algorithm>
#include <csignal>
#include <cstring>

namespace {

constexpr const char* kTitle = "Quillon DemoScene - Native Player";
constexpr int kMaxWindowSide = 16384; // pixels; SDL makes no larger one

bool reportFailure(const char* step) {
    printError("No window: %s: %s\n", step, SDL_GetError());
    return false;
}

// Where no display can be reached SDL falls back to drawing for nobody. That is as good as no window,
// unless it was asked for by name.
bool hasDisplay() {
    const char* driver = SDL_GetCurrentVideoDriver();
    if (!driver || std::strcmp(driver, "offscreen") != 0 || SDL_getenv("SDL_VIDEODRIVER")) return true;
    SDL_SetError("no display can be reached (are DISPLAY or WAYLAND_DISPLAY set right?)");
    return false;
}

void requestGlAttributes() {
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    SDL_GL_SetAttribute(SDL_GL_RED_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_GREEN_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_BLUE_SIZE, 8);
}

// The X11 identity of the window, 0 under another window system.
unsigned long x11Window(SDL_Window* window) {
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    const bool isX11 = SDL_GetWindowWMInfo(window, &info) && info.subsystem == SDL_SYSWM_X11;
    return isX11 ? info.info.x11.window : 0;
}

int ignoreXError(Display*, XErrorEvent*) {
    return 0;
}

// Xlib's own handler ends the process, and on a window that somebody else destroys every call is an X
// error until the news arrives with the events. SDL has loaded the library already; asking for it by
// name spares a link to one of the window systems.
void surviveXErrors() {
    using Install = XErrorHandler (*)(XErrorHandler);
    void* library = openLibrary("libX11.so.6");
    const auto install = reinterpret_cast<Install>(librarySymbol(library, "XSetErrorHandler"));
    if (install) install(ignoreXError);
}

// The client size in pixels, which on scaled desktops is not the window's size.
SDL_Point clientSize(SDL_Window* window) {
    SDL_Point size = {};
    SDL_GL_GetDrawableSize(window, &size.x, &size.y);
    return size;
}

// In full screen the size that a window begins with is soon the screen's; a larger one would only take memory.
SDL_DisplayMode largestWindow(bool fullscreen) {
    SDL_DisplayMode most = {};
    if (!fullscreen || SDL_GetDesktopDisplayMode(0, &most) != 0) most.w = most.h = kMaxWindowSide;
    return most;
}

bool openWindow(Surface& surface, int width, int height, bool fullscreen) {
    // Which also keeps the screen saver away, if no setting of the user's says otherwise.
    if (SDL_Init(SDL_INIT_VIDEO) != 0 || !hasDisplay()) return reportFailure("SDL_Init");
    requestGlAttributes();
    const Uint32 sizing = fullscreen ? SDL_WINDOW_FULLSCREEN_DESKTOP : SDL_WINDOW_RESIZABLE;
    const Uint32 flags = SDL_WINDOW_OPENGL | SDL_WINDOW_ALLOW_HIGHDPI | sizing;
    constexpr int kAnywhere = SDL_WINDOWPOS_UNDEFINED;
    const SDL_DisplayMode most = largestWindow(fullscreen);
    surface.window = SDL_CreateWindow(kTitle, kAnywhere, kAnywhere, std::min(width, most.w), std::min(height, most.h),
                                      flags);
    if (!surface.window) return reportFailure("SDL_CreateWindow");
    surface.windowContext = SDL_GL_CreateContext(surface.window);
    if (!surface.windowContext) return reportFailure("SDL_GL_CreateContext");
    SDL_GL_SetSwapInterval(1); // without it the picture only tears

    surface.nativeWindow = x11Window(surface.window);
    if (surface.nativeWindow) {
        surviveXErrors();
        SDL_EventState(SDL_SYSWMEVENT, SDL_ENABLE); // SDL has no event of its own for a destroyed window
    }
    SDL_StopTextInput(); // no input method between the keys and the player
    SDL_ShowCursor(SDL_DISABLE);
    shellState().cursorHidden = true;
    return true;
}

void showCursor(const Surface& surface) {
    if (!shellState().cursorHidden) return;
    if (!surface.windowGone) SDL_ShowCursor(SDL_ENABLE);
    shellState().cursorHidden = false;
}

// What a key of the number pad means while it types no digits.
SDL_Keycode withoutNumLock(SDL_Keycode key) {
    switch (key) {
    case SDLK_KP_4: return SDLK_LEFT;
    case SDLK_KP_6: return SDLK_RIGHT;
    case SDLK_KP_8: return SDLK_UP;
    case SDLK_KP_2: return SDLK_DOWN;
    default: return key;
    }
}

void handleKey(const SDL_Keysym& pressed) {
    // Keys with Alt are the desktop's, but where Ctrl is held too: so some keyboards name their third level.
    if ((pressed.mod & KMOD_ALT) && !(pressed.mod & KMOD_CTRL)) return;
    const bool typesDigits = (pressed.mod & KMOD_NUM) && !(pressed.mod & KMOD_SHIFT);
    switch (typesDigits ? pressed.sym : withoutNumLock(pressed.sym)) {
    case SDLK_ESCAPE: pressKey(PlayerKey::escape); return;
    case SDLK_LEFT: pressKey(PlayerKey::left); return;
    case SDLK_RIGHT: pressKey(PlayerKey::right); return;
    case SDLK_UP: pressKey(PlayerKey::up); return;
    case SDLK_DOWN: pressKey(PlayerKey::down); return;
    default: return;
    }
}

void handleWindowEvent(const Surface& surface, Uint8 event) {
    if (event == SDL_WINDOWEVENT_CLOSE) stopRunning("WM_CLOSE");
    if (event == SDL_WINDOWEVENT_SIZE_CHANGED && !surface.windowGone) {
        const SDL_Point size = clientSize(surface.window);
        resizeClient(size.x, size.y);
    }
}

void handleSystemMessage(Surface& surface, const SDL_SysWMmsg& message) {
    if (message.subsystem != SDL_SYSWM_X11 || !surface.nativeWindow) return;
    const XEvent& event = message.msg.x11.event;
    if (event.type != DestroyNotify || event.xdestroywindow.window != surface.nativeWindow) return;
    surface.windowGone = true;
    // What is still drawn goes nowhere; software drivers would ask the dead window for its size and take
    // memory for whatever number comes back.
    SDL_GL_MakeCurrent(nullptr, nullptr);
    showCursor(surface);
    stopRunning("WM_DESTROY");
}

} // namespace

Surface* createPlayerWindow(int width, int height, bool fullscreen) {
    avoidDriverFaults();
    // When the screen's server goes away its library ends the program and says so, if no signal does without a word;
    // and a show goes on when nobody reads its log any more.
    std::signal(SIGPIPE, SIG_IGN);
    Surface* surface = new Surface();
    if (!openWindow(*surface, width, height, fullscreen)) {
        destroySurface(surface);
        return nullptr;
    }
    const SDL_Point size = clientSize(surface->window);
    announceClientSize(std::max(size.x, 1), std::max(size.y, 1), width, height, fullscreen);
    return surface;
}

void pumpWindow(Surface& surface) {
    SDL_Event event;
    while (SDL_PollEvent(&event)) {
        switch (event.type) {
        case SDL_QUIT: stopRunning("WM_QUIT"); break; // SIGINT and SIGTERM arrive so too
        case SDL_WINDOWEVENT: handleWindowEvent(surface, event.window.event); break;
        case SDL_KEYDOWN: handleKey(event.key.keysym); break;
        case SDL_SYSWMEVENT: handleSystemMessage(surface, *event.syswm.msg); break;
        default: break;
        }
    }
}

void presentWindow(Surface& surface) {
    if (!surface.windowGone) SDL_GL_SwapWindow(surface.window);
}

GlAddress windowGlAddress(const char* name) {
    return reinterpret_cast<GlAddress>(SDL_GL_GetProcAddress(name));
}

void destroyWindow(Surface& surface) {
    showCursor(surface);
    // SDL would destroy the window once more and hear of the X error after it has put Xlib's own handler
    // back. The process ends soon; the system takes the connection and all that hangs on it.
    if (surface.windowGone) return;
    if (surface.windowContext) SDL_GL_DeleteContext(surface.windowContext);
    if (surface.window) SDL_DestroyWindow(surface.window);
    SDL_Quit();
}
