// Shader programs: compile, link, report, delete.
#pragma once

#include "platform/gl.h"

#include <string>

// The pair of plain image entries; the vertex stage also serves shaders that have none of their own.
// The fragment stage shows uTex at vUV * uUvScale + uUvOffset, transparent outside the unit square.
extern const char* const kQuadVertexSource;
extern const char* const kQuadFragmentSource;

// Shader of a stage (GL_VERTEX_SHADER, GL_FRAGMENT_SHADER). 0 on failure, with the driver's words in the
// log under `label`.
GLuint compileShader(GLenum stage, const std::string& source, const std::string& label);

// Program of two sources. 0 on failure: an empty source says nothing, everything else is in the log
// under `label`. Positions come in at attribute location 0, texture coordinates at 1.
GLuint linkProgram(const std::string& vertexSource, const std::string& fragmentSource, const std::string& label);

// Deletes the program and its uniform table; 0 is ignored.
void deleteProgram(GLuint program);
