// The system's OpenGL header: calls of GL 1.1 come from the system library, later types from here.
#pragma once

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#endif

#include <GL/gl.h>
#include <GL/glext.h>
