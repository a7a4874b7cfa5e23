// Linked programs that outlive the effects that use them, so that creating an effect anew (at a loop
// wrap, at a scene change) costs no compile.
#pragma once

#include "platform/gl.h"

#include <cstdint>
#include <string>

// Lends the program of two sources, linking it when no free one is there; 0 as for linkProgram, and a
// failure is not kept. A program is lent to one effect at a time, so the uniforms that the effect writes
// stay its own. `settings` describes what it will write once and never again: only a program that was
// last lent for the same settings is free for it, because uniforms keep their values.
GLuint borrowProgram(const std::string& vertexSource, const std::string& fragmentSource, const std::string& settings,
                     const std::string& label);

// Gives a borrowed program back; 0 is ignored.
void returnProgram(GLuint program);

// Marks a borrowed program as drawn once in a state that drivers compile code for; false when it was
// already. `state` is a bit of the caller's choice (see effects/warm_up.h).
bool markWarm(GLuint program, uint32_t state);

// Deletes every program, lent or not: at shutdown, when no effect is left.
void deletePooledPrograms();
