// The two kinds of surface behind platform/window.h, and what each kind's file offers to it.
#pragma once

#include "platform/gl.h"
#include "platform/window.h"

#include <windows.h>

#include <GL/wglext.h>

enum class SurfaceKind { window, headless };

// The extension that makes pictures without a window; all set or all null.
struct PixelBufferFunctions {
    PFNWGLCREATEPBUFFERARBPROC create = nullptr;
    PFNWGLGETPBUFFERDCARBPROC getDeviceContext = nullptr;
    PFNWGLRELEASEPBUFFERDCARBPROC releaseDeviceContext = nullptr;
    PFNWGLDESTROYPBUFFERARBPROC destroy = nullptr;
    PFNWGLQUERYPBUFFERARBPROC query = nullptr;
};

// Handles that were not reached stay null; destroySurface takes such a half-made surface too.
struct Surface {
    SurfaceKind kind = SurfaceKind::window;
    HWND window = nullptr; // without a display: the hidden one that stands behind the pixel buffer
    HDC deviceContext = nullptr;
    HGLRC context = nullptr;

    // Without a display alone.
    PixelBufferFunctions buffers;
    HPBUFFERARB pixelBuffer = nullptr;
    HDC windowContext = nullptr; // the hidden window's device context
};

// The window procedure of the player's window: messages and keys to shellState().
LRESULT CALLBACK windowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

void destroyWindow(Surface& surface);
void destroyHeadless(Surface& surface);
