// Entry points later than GL 1.1, fetched once into one process-wide table.
#pragma once

#include "platform/gl.h"
#include "platform/window.h"

// In the order in which they are fetched; the fields of the table stand in the same order.
#define FOR_EACH_GL_FUNCTION(X)                                                                                        \
    X(PFNGLCREATESHADERPROC, CreateShader)                                                                             \
    X(PFNGLSHADERSOURCEPROC, ShaderSource)                                                                             \
    X(PFNGLCOMPILESHADERPROC, CompileShader)                                                                           \
    X(PFNGLGETSHADERIVPROC, GetShaderiv)                                                                               \
    X(PFNGLGETSHADERINFOLOGPROC, GetShaderInfoLog)                                                                     \
    X(PFNGLCREATEPROGRAMPROC, CreateProgram)                                                                           \
    X(PFNGLATTACHSHADERPROC, AttachShader)                                                                             \
    X(PFNGLLINKPROGRAMPROC, LinkProgram)                                                                               \
    X(PFNGLGETPROGRAMIVPROC, GetProgramiv)                                                                             \
    X(PFNGLGETPROGRAMINFOLOGPROC, GetProgramInfoLog)                                                                   \
    X(PFNGLGETACTIVEUNIFORMPROC, GetActiveUniform)                                                                     \
    X(PFNGLUSEPROGRAMPROC, UseProgram)                                                                                 \
    X(PFNGLDELETESHADERPROC, DeleteShader)                                                                             \
    X(PFNGLDELETEPROGRAMPROC, DeleteProgram)                                                                           \
    X(PFNGLGETUNIFORMLOCATIONPROC, GetUniformLocation)                                                                 \
    X(PFNGLUNIFORM1FPROC, Uniform1f)                                                                                   \
    X(PFNGLUNIFORM1IPROC, Uniform1i)                                                                                   \
    X(PFNGLUNIFORM2FPROC, Uniform2f)                                                                                   \
    X(PFNGLUNIFORM3FPROC, Uniform3f)                                                                                   \
    X(PFNGLUNIFORM4FPROC, Uniform4f)                                                                                   \
    X(PFNGLGENVERTEXARRAYSPROC, GenVertexArrays)                                                                       \
    X(PFNGLBINDVERTEXARRAYPROC, BindVertexArray)                                                                       \
    X(PFNGLDELETEVERTEXARRAYSPROC, DeleteVertexArrays)                                                                 \
    X(PFNGLGENBUFFERSPROC, GenBuffers)                                                                                 \
    X(PFNGLBINDBUFFERPROC, BindBuffer)                                                                                 \
    X(PFNGLDELETEBUFFERSPROC, DeleteBuffers)                                                                           \
    X(PFNGLBUFFERDATAPROC, BufferData)                                                                                 \
    X(PFNGLENABLEVERTEXATTRIBARRAYPROC, EnableVertexAttribArray)                                                       \
    X(PFNGLVERTEXATTRIBPOINTERPROC, VertexAttribPointer)                                                               \
    X(PFNGLGENFRAMEBUFFERSPROC, GenFramebuffers)                                                                       \
    X(PFNGLBINDFRAMEBUFFERPROC, BindFramebuffer)                                                                       \
    X(PFNGLDELETEFRAMEBUFFERSPROC, DeleteFramebuffers)                                                                 \
    X(PFNGLFRAMEBUFFERTEXTURE2DPROC, FramebufferTexture2D)                                                             \
    X(PFNGLCHECKFRAMEBUFFERSTATUSPROC, CheckFramebufferStatus)                                                         \
    X(PFNGLACTIVETEXTUREPROC, ActiveTexture)

// What every driver has and the player could do without: these may be null.
#define FOR_EACH_OPTIONAL_GL_FUNCTION(X)                                                                               \
    X(PFNGLGETUNIFORMFVPROC, GetUniformfv)                                                                             \
    X(PFNGLGETUNIFORMIVPROC, GetUniformiv)

struct GlFunctions {
#define DECLARE_GL_FUNCTION(Type, Name) Type Name = nullptr;
    FOR_EACH_GL_FUNCTION(DECLARE_GL_FUNCTION)
    FOR_EACH_OPTIONAL_GL_FUNCTION(DECLARE_GL_FUNCTION)
#undef DECLARE_GL_FUNCTION
};

extern GlFunctions gl;

// Asks `lookup` for every entry point in order and stops at the first that has no address; false then,
// with the later fields null. Needs a current context.
bool loadGlFunctions(GlLookup lookup);

// Forgets errors that GL has recorded, so that the next glGetError speaks of what comes after.
void clearGlErrors();
