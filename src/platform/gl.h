// The system's OpenGL header: calls of GL 1.1 come from the system library, later types from here.
#pragma once

// On Windows it wants a few words of windows.h, whose macros (near, far, ERROR ...) are nothing for everyone
// who draws. They are given back afterwards: windows.h may yet come.
#ifdef _WIN32
#ifndef APIENTRY
#define QUILLON_LENDS_APIENTRY
#define APIENTRY __stdcall
#endif
#ifndef WINGDIAPI
#define QUILLON_LENDS_WINGDIAPI
#define WINGDIAPI __declspec(dllimport)
#endif
#endif

#include <GL/gl.h>
#include <GL/glext.h>

#ifdef QUILLON_LENDS_APIENTRY
#undef QUILLON_LENDS_APIENTRY
#undef APIENTRY
#endif
#ifdef QUILLON_LENDS_WINGDIAPI
#undef QUILLON_LENDS_WINGDIAPI
#undef WINGDIAPI
#endif
