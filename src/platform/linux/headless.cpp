#include "platform/linux/surface.h"

#include "foundation/log.h"
#include "platform/gl.h"
#include "platform/shell_state.h"
#include "platform/stop_request.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

std::string eglErrorName(EGLint error) {
    switch (error) {
    case EGL_SUCCESS: return "nothing found";
    case EGL_NOT_INITIALIZED: return "EGL_NOT_INITIALIZED";
    case EGL_BAD_ACCESS: return "EGL_BAD_ACCESS";
    case EGL_BAD_ALLOC: return "EGL_BAD_ALLOC";
    case EGL_BAD_ATTRIBUTE: return "EGL_BAD_ATTRIBUTE";
    case EGL_BAD_CONFIG: return "EGL_BAD_CONFIG";
    case EGL_BAD_CONTEXT: return "EGL_BAD_CONTEXT";
    case EGL_BAD_CURRENT_SURFACE: return "EGL_BAD_CURRENT_SURFACE";
    case EGL_BAD_DISPLAY: return "EGL_BAD_DISPLAY";
    case EGL_BAD_MATCH: return "EGL_BAD_MATCH";
    case EGL_BAD_PARAMETER: return "EGL_BAD_PARAMETER";
    case EGL_BAD_SURFACE: return "EGL_BAD_SURFACE";
    default: break;
    }
    char text[16];
    std::snprintf(text, sizeof text, "0x%04X", static_cast<unsigned>(error));
    return text;
}

// `failure` keeps which step failed and why; always false.
bool fail(const char* step, std::string& failure) {
    failure = std::string(step) + ": " + eglErrorName(eglGetError());
    return false;
}

// Drivers may make a smaller buffer than asked for, or one larger than they can draw into. Asks once the
// context is current.
bool hasSize(const Surface& surface, int width, int height) {
    EGLint madeWidth = 0;
    EGLint madeHeight = 0;
    eglQuerySurface(surface.display, surface.pixelBuffer, EGL_WIDTH, &madeWidth);
    eglQuerySurface(surface.display, surface.pixelBuffer, EGL_HEIGHT, &madeHeight);
    GLint most[2] = {};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, most);
    return madeWidth == width && madeHeight == height && width <= most[0] && height <= most[1];
}

// Everything behind an open display. No depth or stencil bits: the shows draw flat, and a software
// driver would keep them in main memory.
bool makeContext(Surface& surface, int width, int height, std::string& failure) {
    // clang-format off
    const EGLint configAttributes[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
                                       EGL_RED_SIZE, 8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8, EGL_ALPHA_SIZE, 8,
                                       EGL_NONE};
    // clang-format on
    // clang-format off
    const EGLint contextAttributes[] = {EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 3,
                                        EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                                        EGL_NONE};
    // clang-format on
    // clang-format off
    const EGLint bufferAttributes[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    // clang-format on

    if (!eglInitialize(surface.display, nullptr, nullptr)) return fail("eglInitialize", failure);
    if (!eglBindAPI(EGL_OPENGL_API)) return fail("eglBindAPI", failure);
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglChooseConfig(surface.display, configAttributes, &config, 1, &count) || count < 1) {
        return fail("eglChooseConfig", failure);
    }
    surface.context = eglCreateContext(surface.display, config, EGL_NO_CONTEXT, contextAttributes);
    if (!surface.context) return fail("eglCreateContext", failure);
    surface.pixelBuffer = eglCreatePbufferSurface(surface.display, config, bufferAttributes);
    if (!surface.pixelBuffer) return fail("eglCreatePbufferSurface", failure);
    if (!eglMakeCurrent(surface.display, surface.pixelBuffer, surface.pixelBuffer, surface.context)) {
        return fail("eglMakeCurrent", failure);
    }
    if (!hasSize(surface, width, height)) {
        failure = "the driver draws no picture of " + std::to_string(width) + "x" + std::to_string(height) + " pixels";
        return false;
    }
    return true;
}

// Null where EGL does not know the platform.
EGLDisplay platformDisplay(EGLenum platform, void* native) {
    return eglGetPlatformDisplay(platform, native, nullptr);
}

// The GPUs (and software renderers) that EGL can name without a window system.
std::vector<EGLDeviceEXT> eglDevices() {
    const auto query = reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    EGLint count = 0;
    if (!query || !query(0, nullptr, &count) || count <= 0) return {};
    std::vector<EGLDeviceEXT> devices(static_cast<size_t>(count));
    if (!query(count, devices.data(), &count) || count < 0) return {};
    devices.resize(static_cast<size_t>(count));
    return devices;
}

bool openOn(Surface& surface, EGLDisplay display, int width, int height, std::string& failure) {
    if (!display) return fail("eglGetPlatformDisplay", failure);
    surface.display = display;
    if (makeContext(surface, width, height, failure)) return true;
    destroyHeadless(surface);
    return false;
}

bool isSoftware(EGLDeviceEXT device) {
    const auto query = reinterpret_cast<PFNEGLQUERYDEVICESTRINGEXTPROC>(eglGetProcAddress("eglQueryDeviceStringEXT"));
    const char* extensions = query ? query(device, EGL_EXTENSIONS) : nullptr;
    return extensions && std::strstr(extensions, "EGL_MESA_device_software");
}

// GPUs first: NVIDIA's driver offers only its devices, and Mesa's surfaceless platform beside it would
// draw in software. That platform comes next, and last whatever else calls itself a device.
bool openAnywhere(Surface& surface, int width, int height, std::string& failure) {
    const std::vector<EGLDeviceEXT> devices = eglDevices();
    const auto openDevices = [&](bool software) {
        for (EGLDeviceEXT device : devices) {
            if (isSoftware(device) != software) continue;
            EGLDisplay display = platformDisplay(EGL_PLATFORM_DEVICE_EXT, device);
            if (openOn(surface, display, width, height, failure)) return true;
        }
        return false;
    };
    if (openDevices(false)) return true;
    EGLDisplay surfaceless = platformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY);
    return openOn(surface, surfaceless, width, height, failure) || openDevices(true);
}

} // namespace

Surface* createHeadlessSurface(int width, int height) {
    avoidDriverFaults();
    Surface* surface = new Surface();
    surface->kind = SurfaceKind::headless;
    std::string failure;
    if (!openAnywhere(*surface, width, height, failure)) {
        printError("No OpenGL 3.3 context without a display: %s\n", failure.c_str());
        destroySurface(surface);
        return nullptr;
    }
    catchStopRequests();
    announceClientSize(width, height, width, height, false);
    return surface;
}

void pumpHeadless() {
    if (stopRequests() > 0) stopRunning("WM_QUIT");
}

void presentHeadless() {
    glFinish();
}

GlAddress headlessGlAddress(const char* name) {
    return eglGetProcAddress(name);
}

void destroyHeadless(Surface& surface) {
    if (!surface.display) return;
    eglMakeCurrent(surface.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (surface.pixelBuffer) eglDestroySurface(surface.display, surface.pixelBuffer);
    if (surface.context) eglDestroyContext(surface.display, surface.context);
    eglTerminate(surface.display);
    surface.pixelBuffer = nullptr;
    surface.context = nullptr;
    surface.display = nullptr;
}
