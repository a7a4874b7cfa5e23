// Shader programs: compile, link, report, delete.
#pragma once

#include "gpu/uniforms.h"
#include "platform/gl.h"

#include <string>

// The pair of plain image entries; the vertex stage also serves shaders that have none of their own.
// The fragment stage shows uTex at vUV * uUvScale + uUvOffset, transparent outside the unit square.
extern const char* const kQuadVertexSource;
extern const char* const kQuadFragmentSource;

// Sources of a vertex and a fragment shader that belong together.
struct ShaderPair {
    std::string vertex;
    std::string fragment;
};

// A pair of sources that the driver was given. It may still be at work on them: whoever asks how it went waits.
struct ProgramBuild {
    GLuint vertex = 0;
    GLuint fragment = 0;
    GLuint program = 0;
};

// A linked program. Uniforms keep their values, so whoever draws with it makes sure that they are its own.
struct Program {
    GLuint handle = 0;
    UniformTable uniforms;
    uint64_t writer = 0;     // whose values the uniforms hold (UniformValues::writer); 0: nobody's
    uint32_t warmStates = 0; // in which it has been drawn (effects/warm_up.h)
};

// Hands both sources to the driver and asks for nothing.
ProgramBuild startProgram(const ShaderPair& sources);

// Waits for the driver. False on failure, and `words` then says what failed, in the log's form without the label:
// see reportProgram.
struct ProgramFailure {
    bool isLink = false; // else one of the stages did not compile
    std::string words;   // the driver's
};
bool finishProgram(ProgramBuild& build, Program& program, ProgramFailure& failure);

// "[SHADER ERROR] label:" or "[LINK ERROR] label:", and the driver's words.
void logProgramFailure(const ProgramFailure& failure, const std::string& label);

// All of it at once; handle 0 on failure: an empty source says nothing, everything else is in the log under
// `label`. Positions come in at attribute location 0, texture coordinates at 1.
Program linkProgram(const std::string& vertexSource, const std::string& fragmentSource, const std::string& label);

// Deletes the program and resets the record.
void deleteProgram(Program& program);
