#include "gpu/program.h"

#include "foundation/log.h"
#include "gpu/gl_functions.h"

const char* const kQuadVertexSource = R"(#version 330 core
layout(location=0) in vec2 aPos;
layout(location=1) in vec2 aUV;
out vec2 vUV;
void main() {
    vUV = aUV;
    gl_Position = vec4(aPos, 0.0, 1.0);
}
)";

const char* const kQuadFragmentSource = R"(#version 330 core
in vec2 vUV;
out vec4 FragColor;
uniform sampler2D uTex;
uniform float uAlpha;
uniform vec2 uUvScale;
uniform vec2 uUvOffset;
void main() {
    vec2 uv = vUV * uUvScale + uUvOffset;
    if (uv.x < 0.0 || uv.x > 1.0 || uv.y < 0.0 || uv.y > 1.0) {
        FragColor = vec4(0.0);
        return;
    }
    vec4 col = texture(uTex, uv);
    col.a *= uAlpha;
    FragColor = col;
}
)";

namespace {

constexpr GLsizei kInfoLogSize = 2048;

GLuint startShader(GLenum stage, const std::string& source) {
    const GLuint shader = gl.CreateShader(stage);
    const char* text = source.c_str();
    gl.ShaderSource(shader, 1, &text, nullptr);
    gl.CompileShader(shader);
    return shader;
}

bool hasCompiled(GLuint shader, std::string& words) {
    GLint compiled = 0;
    gl.GetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled) return true;
    char infoLog[kInfoLogSize] = {};
    gl.GetShaderInfoLog(shader, kInfoLogSize, nullptr, infoLog);
    words = infoLog;
    return false;
}

bool hasLinked(GLuint program, std::string& words) {
    GLint linked = 0;
    gl.GetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked) return true;
    char infoLog[kInfoLogSize] = {};
    gl.GetProgramInfoLog(program, kInfoLogSize, nullptr, infoLog);
    words = infoLog;
    return false;
}

} // namespace

ProgramBuild startProgram(const ShaderPair& sources) {
    ProgramBuild build;
    build.vertex = startShader(GL_VERTEX_SHADER, sources.vertex);
    build.fragment = startShader(GL_FRAGMENT_SHADER, sources.fragment);
    build.program = gl.CreateProgram();
    gl.AttachShader(build.program, build.vertex);
    gl.AttachShader(build.program, build.fragment);
    gl.LinkProgram(build.program);
    return build;
}

bool finishProgram(ProgramBuild& build, Program& program, ProgramFailure& failure) {
    failure = {};
    // Of two stages that do not compile the first is reported, and a link that lacks a stage is not.
    const bool compiled = hasCompiled(build.vertex, failure.words) && hasCompiled(build.fragment, failure.words);
    failure.isLink = compiled && !hasLinked(build.program, failure.words);
    gl.DeleteShader(build.vertex);
    gl.DeleteShader(build.fragment);
    const bool whole = compiled && !failure.isLink;
    if (whole) {
        program.handle = build.program;
        program.uniforms = readUniforms(build.program);
    } else {
        gl.DeleteProgram(build.program);
    }
    build = {};
    return whole;
}

void logProgramFailure(const ProgramFailure& failure, const std::string& label) {
    logLine("[%s ERROR] %s:\n%s\n", failure.isLink ? "LINK" : "SHADER", label.c_str(), failure.words.c_str());
}

Program linkProgram(const std::string& vertexSource, const std::string& fragmentSource, const std::string& label) {
    Program program;
    if (vertexSource.empty() || fragmentSource.empty()) return program;
    ProgramBuild build = startProgram({vertexSource, fragmentSource});
    ProgramFailure failure;
    if (!finishProgram(build, program, failure)) logProgramFailure(failure, label);
    return program;
}

void deleteProgram(Program& program) {
    if (program.handle) gl.DeleteProgram(program.handle);
    program = {};
}
