// Contexts through WGL: the dummy window that gives access to its extensions, and the core context.
#pragma once

#include "platform/win32/surface.h"

// A hidden window of one pixel with a legacy context, which is current as long as it is open.
struct DummyWindow {
    HWND window = nullptr;
    HDC deviceContext = nullptr;
    HGLRC context = nullptr;
};

DummyWindow openDummyWindow();
void closeDummyContext(DummyWindow& dummy); // the window stays
void closeDummyWindow(DummyWindow& dummy);

// The extensions that make contexts; each null where the driver lacks it.
struct WglFunctions {
    PFNWGLCREATECONTEXTATTRIBSARBPROC createContextAttribs = nullptr;
    PFNWGLCHOOSEPIXELFORMATARBPROC choosePixelFormat = nullptr;
};

// Needs a current context, and so does the next.
WglFunctions fetchWglFunctions();

// An entry point of the driver, null when it has none; some drivers say so with a small number.
void* wglAddress(const char* name);

template <typename Function>
void fetchWgl(const char* name, Function& function) {
    function = reinterpret_cast<Function>(wglAddress(name));
}

// The double-buffered format with 32 colour and 24 depth bits that every driver has.
void setClassicPixelFormat(HDC deviceContext);

// A GL 3.3 core context, or a legacy one where the driver knows no other; made current. Null on failure.
HGLRC createContext(HDC deviceContext, const WglFunctions& wgl);
