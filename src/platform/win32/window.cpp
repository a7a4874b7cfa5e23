#include "platform/win32/wgl.h"

#include "foundation/log.h"
#include "platform/shell_state.h"
#include "platform/stop_request.h"
#include "platform/win32/error_words.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr const wchar_t* kClassName = L"DemoNativePlayer";
constexpr const wchar_t* kTitle = L"Quillon DemoScene - Native Player";

HINSTANCE registerPlayerClass() {
    WNDCLASSW windowClass = {};
    windowClass.style = CS_OWNDC;
    windowClass.lpfnWndProc = windowProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    windowClass.lpszClassName = kClassName;
    RegisterClassW(&windowClass);
    return windowClass.hInstance;
}

// The outer size of a window, which the system counts in 16 bits.
int windowSide(LONG from, LONG to) {
    return static_cast<int>(std::clamp<int64_t>(int64_t{to} - from, 1, INT16_MAX));
}

HWND openWindow(int width, int height, bool fullscreen) {
    const HINSTANCE instance = registerPlayerClass();
    const DWORD style = WS_VISIBLE | (fullscreen ? WS_POPUP : WS_OVERLAPPEDWINDOW);
    if (fullscreen) {
        return CreateWindowExW(0, kClassName, kTitle, style, 0, 0, GetSystemMetrics(SM_CXSCREEN),
                               GetSystemMetrics(SM_CYSCREEN), nullptr, nullptr, instance, nullptr);
    }
    RECT outer = {0, 0, std::min<int>(width, INT16_MAX), std::min<int>(height, INT16_MAX)};
    AdjustWindowRect(&outer, style, FALSE);
    return CreateWindowExW(0, kClassName, kTitle, style, CW_USEDEFAULT, CW_USEDEFAULT,
                           windowSide(outer.left, outer.right), windowSide(outer.top, outer.bottom), nullptr, nullptr,
                           instance, nullptr);
}

void setPixelFormat(HDC deviceContext, const WglFunctions& wgl) {
    if (!wgl.choosePixelFormat) {
        setClassicPixelFormat(deviceContext);
        return;
    }
    const int attributes[] = {WGL_DRAW_TO_WINDOW_ARB,
                              1,
                              WGL_SUPPORT_OPENGL_ARB,
                              1,
                              WGL_DOUBLE_BUFFER_ARB,
                              1,
                              WGL_PIXEL_TYPE_ARB,
                              WGL_TYPE_RGBA_ARB,
                              WGL_COLOR_BITS_ARB,
                              32,
                              WGL_DEPTH_BITS_ARB,
                              24,
                              WGL_ACCELERATION_ARB,
                              WGL_FULL_ACCELERATION_ARB,
                              0};
    int format = 0;
    UINT count = 0;
    wgl.choosePixelFormat(deviceContext, attributes, nullptr, 1, &format, &count);
    const PIXELFORMATDESCRIPTOR empty = {};
    SetPixelFormat(deviceContext, format, &empty);
}

void hideCursor() {
    if (shellState().cursorHidden) return;
    ShowCursor(FALSE);
    shellState().cursorHidden = true;
}

void showCursor() {
    if (!shellState().cursorHidden) return;
    ShowCursor(TRUE);
    shellState().cursorHidden = false;
}

void stop(const char* reason) {
    stopRunning(reason);
    PostQuitMessage(0);
}

void handleKey(WPARAM key) {
    switch (key) {
    case VK_ESCAPE: stop("ESC"); return;
    case VK_RIGHT: pressKey(PlayerKey::right); return;
    case VK_LEFT: pressKey(PlayerKey::left); return;
    case VK_UP: pressKey(PlayerKey::up); return;
    case VK_DOWN: pressKey(PlayerKey::down); return;
    default: return;
    }
}

} // namespace

LRESULT CALLBACK windowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_DESTROY:
        showCursor();
        stop("WM_DESTROY");
        return 0;
    case WM_SIZE: resizeClient(LOWORD(lParam), HIWORD(lParam)); return 0;
    case WM_CLOSE: // the window is destroyed with all the rest at shutdown
        stop("WM_CLOSE");
        return 0;
    case WM_SETCURSOR:
        hideCursor();
        SetCursor(nullptr);
        return 1;
    case WM_KEYDOWN: handleKey(wParam); return 0;
    default: return DefWindowProcW(window, message, wParam, lParam);
    }
}

// A context that cannot be had goes unreported in the log: without one the GL functions do not load.
Surface* createPlayerWindow(int width, int height, bool fullscreen) {
    DummyWindow dummy = openDummyWindow();
    const WglFunctions wgl = fetchWglFunctions();
    closeDummyWindow(dummy);

    const HWND window = openWindow(width, height, fullscreen);
    if (!window) {
        // No further: the device context of no window is the whole screen's.
        printError("No window: %s\n", lastErrorWords().c_str());
        return nullptr;
    }
    Surface* surface = new Surface();
    surface->window = window;
    surface->deviceContext = GetDC(surface->window);
    setPixelFormat(surface->deviceContext, wgl);
    surface->context = createContext(surface->deviceContext, wgl);
    if (!surface->context) printError("No OpenGL 3.3 context: %s\n", lastErrorWords().c_str());
    PFNWGLSWAPINTERVALEXTPROC swapInterval = nullptr;
    fetchWgl("wglSwapIntervalEXT", swapInterval);
    if (swapInterval) swapInterval(1);

    RECT client = {};
    GetClientRect(surface->window, &client);
    hideCursor();
    SetThreadExecutionState(ES_CONTINUOUS | ES_DISPLAY_REQUIRED | ES_SYSTEM_REQUIRED); // nobody touches a key in a show
    catchStopRequests();
    announceClientSize(client.right, client.bottom, width, height, fullscreen);
    return surface;
}

void destroyWindow(Surface& surface) {
    SetThreadExecutionState(ES_CONTINUOUS);
    wglMakeCurrent(nullptr, nullptr);
    wglDeleteContext(surface.context);
    ReleaseDC(surface.window, surface.deviceContext);
    DestroyWindow(surface.window);
}
