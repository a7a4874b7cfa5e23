// The full-screen quad that every pass shares: two triangles over clip space -1..1, texture coordinates
// 0..1, position at attribute location 0 and texture coordinates at 1.
#pragma once

#include "platform/gl.h"

struct Quad {
    GLuint vertexArray = 0; // owned; 0: none
    GLuint buffer = 0;      // owned
};

Quad createQuad();
void drawQuad(const Quad& quad); // with the current program, target and state
void deleteQuad(Quad& quad);     // and resets the record
