#include "platform/win32/wgl.h"

#include "foundation/log.h"
#include "platform/shell_state.h"
#include "platform/stop_request.h"
#include "platform/win32/error_words.h"

#include <string>

namespace {

PixelBufferFunctions fetchPixelBufferFunctions() {
    PixelBufferFunctions functions;
    fetchWgl("wglCreatePbufferARB", functions.create);
    fetchWgl("wglGetPbufferDCARB", functions.getDeviceContext);
    fetchWgl("wglReleasePbufferDCARB", functions.releaseDeviceContext);
    fetchWgl("wglDestroyPbufferARB", functions.destroy);
    fetchWgl("wglQueryPbufferARB", functions.query);
    const bool isWhole = functions.create && functions.getDeviceContext && functions.releaseDeviceContext &&
                         functions.destroy && functions.query;
    return isWhole ? functions : PixelBufferFunctions();
}

// `failure` keeps which step failed and why; always false.
bool fail(const char* step, std::string& failure) {
    failure = std::string(step) + ": " + lastErrorWords();
    return false;
}

// No depth or stencil bits: the shows draw flat.
int findPixelFormat(HDC deviceContext, const WglFunctions& wgl, int doubleBuffered) {
    const int attributes[] = {WGL_DRAW_TO_PBUFFER_ARB,
                              1,
                              WGL_SUPPORT_OPENGL_ARB,
                              1,
                              WGL_DOUBLE_BUFFER_ARB,
                              doubleBuffered,
                              WGL_PIXEL_TYPE_ARB,
                              WGL_TYPE_RGBA_ARB,
                              WGL_RED_BITS_ARB,
                              8,
                              WGL_GREEN_BITS_ARB,
                              8,
                              WGL_BLUE_BITS_ARB,
                              8,
                              WGL_ALPHA_BITS_ARB,
                              8,
                              0};
    int format = 0;
    UINT count = 0;
    const bool found = wgl.choosePixelFormat(deviceContext, attributes, nullptr, 1, &format, &count);
    return found && count > 0 ? format : 0;
}

// Two buffers before one: software drivers below Wine end the process when a picture with alpha of one buffer
// is finished, because they would show it.
int choosePixelFormat(HDC deviceContext, const WglFunctions& wgl) {
    const int format = findPixelFormat(deviceContext, wgl, 1);
    return format ? format : findPixelFormat(deviceContext, wgl, 0);
}

// Drivers may make a smaller buffer than asked for, or end the process over one larger than they can draw into;
// so the limit is asked for first.
bool drawsSize(int width, int height) {
    GLint most[2] = {};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, most);
    return width <= most[0] && height <= most[1];
}

bool hasSize(const PixelBufferFunctions& buffers, HPBUFFERARB buffer, int width, int height) {
    int madeWidth = 0;
    int madeHeight = 0;
    buffers.query(buffer, WGL_PBUFFER_WIDTH_ARB, &madeWidth);
    buffers.query(buffer, WGL_PBUFFER_HEIGHT_ARB, &madeHeight);
    return madeWidth == width && madeHeight == height;
}

// Everything behind the hidden window, whose legacy context is current.
bool makePixelBuffer(Surface& surface, int width, int height, std::string& failure) {
    const WglFunctions wgl = fetchWglFunctions();
    const PixelBufferFunctions& buffers = surface.buffers = fetchPixelBufferFunctions();
    if (!wgl.choosePixelFormat || !wgl.createContextAttribs || !buffers.create) {
        failure = "the driver has no pixel buffers";
        return false;
    }
    if (!drawsSize(width, height)) {
        failure = "the driver draws no picture of " + std::to_string(width) + "x" + std::to_string(height) + " pixels";
        return false;
    }
    const int format = choosePixelFormat(surface.windowContext, wgl);
    if (!format) return fail("wglChoosePixelFormatARB", failure);
    const int attributes[] = {0};
    surface.pixelBuffer = buffers.create(surface.windowContext, format, width, height, attributes);
    if (!surface.pixelBuffer) return fail("wglCreatePbufferARB", failure);
    surface.deviceContext = buffers.getDeviceContext(surface.pixelBuffer);
    if (!surface.deviceContext) return fail("wglGetPbufferDCARB", failure);
    if (!hasSize(buffers, surface.pixelBuffer, width, height)) return fail("wglQueryPbufferARB", failure);
    surface.context = createContext(surface.deviceContext, wgl);
    return surface.context || fail("wglCreateContextAttribsARB", failure);
}

bool openHeadless(Surface& surface, int width, int height, std::string& failure) {
    DummyWindow dummy = openDummyWindow();
    surface.window = dummy.window;
    surface.windowContext = dummy.deviceContext;
    if (!dummy.window) return fail("CreateWindowExW", failure);
    if (!dummy.context) return fail("wglCreateContext", failure);
    const bool made = makePixelBuffer(surface, width, height, failure);
    if (made) {
        wglDeleteContext(dummy.context); // no longer current
    } else {
        closeDummyContext(dummy);
    }
    return made;
}

} // namespace

Surface* createHeadlessSurface(int width, int height) {
    Surface* surface = new Surface();
    surface->kind = SurfaceKind::headless;
    std::string failure;
    if (!openHeadless(*surface, width, height, failure)) {
        printError("No OpenGL 3.3 context without a window: %s\n", failure.c_str());
        destroySurface(surface);
        return nullptr;
    }
    catchStopRequests();
    announceClientSize(width, height, width, height, false);
    return surface;
}

void destroyHeadless(Surface& surface) {
    wglMakeCurrent(nullptr, nullptr);
    if (surface.context) wglDeleteContext(surface.context);
    if (surface.deviceContext) surface.buffers.releaseDeviceContext(surface.pixelBuffer, surface.deviceContext);
    if (surface.pixelBuffer) surface.buffers.destroy(surface.pixelBuffer);
    if (surface.windowContext) ReleaseDC(surface.window, surface.windowContext);
    if (surface.window) DestroyWindow(surface.window);
}
