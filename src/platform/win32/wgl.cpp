#include "platform/win32/wgl.h"

#include <cstdint>

namespace {

PIXELFORMATDESCRIPTOR classicDescriptor() {
    PIXELFORMATDESCRIPTOR descriptor = {};
    descriptor.nSize = sizeof descriptor;
    descriptor.nVersion = 1;
    descriptor.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
    descriptor.iPixelType = PFD_TYPE_RGBA;
    descriptor.cColorBits = 32;
    descriptor.cDepthBits = 24;
    return descriptor;
}

} // namespace

DummyWindow openDummyWindow() {
    const wchar_t* const className = L"DemoNPDummy";
    WNDCLASSW windowClass = {};
    windowClass.style = CS_OWNDC;
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = className;
    RegisterClassW(&windowClass);

    DummyWindow dummy;
    dummy.window = CreateWindowExW(0, className, L"", WS_OVERLAPPEDWINDOW, 0, 0, 1, 1, nullptr, nullptr,
                                   windowClass.hInstance, nullptr);
    dummy.deviceContext = GetDC(dummy.window);
    setClassicPixelFormat(dummy.deviceContext);
    dummy.context = wglCreateContext(dummy.deviceContext);
    wglMakeCurrent(dummy.deviceContext, dummy.context);
    return dummy;
}

void closeDummyContext(DummyWindow& dummy) {
    wglMakeCurrent(nullptr, nullptr);
    wglDeleteContext(dummy.context);
    dummy.context = nullptr;
}

void closeDummyWindow(DummyWindow& dummy) {
    closeDummyContext(dummy);
    ReleaseDC(dummy.window, dummy.deviceContext);
    DestroyWindow(dummy.window);
    dummy = {};
}

WglFunctions fetchWglFunctions() {
    WglFunctions wgl;
    fetchWgl("wglCreateContextAttribsARB", wgl.createContextAttribs);
    fetchWgl("wglChoosePixelFormatARB", wgl.choosePixelFormat);
    return wgl;
}

void* wglAddress(const char* name) {
    void* address = reinterpret_cast<void*>(wglGetProcAddress(name));
    const intptr_t number = reinterpret_cast<intptr_t>(address);
    return number >= -1 && number <= 3 ? nullptr : address;
}

void setClassicPixelFormat(HDC deviceContext) {
    const PIXELFORMATDESCRIPTOR descriptor = classicDescriptor();
    SetPixelFormat(deviceContext, ChoosePixelFormat(deviceContext, &descriptor), &descriptor);
}

HGLRC createContext(HDC deviceContext, const WglFunctions& wgl) {
    // clang-format off
    const int attributes[] = {WGL_CONTEXT_MAJOR_VERSION_ARB, 3,
                              WGL_CONTEXT_MINOR_VERSION_ARB, 3,
                              WGL_CONTEXT_PROFILE_MASK_ARB, WGL_CONTEXT_CORE_PROFILE_BIT_ARB,
                              0};
    // clang-format on
    const HGLRC context = wgl.createContextAttribs ? wgl.createContextAttribs(deviceContext, nullptr, attributes)
                                                   : wglCreateContext(deviceContext);
    wglMakeCurrent(deviceContext, context);
    return context;
}
