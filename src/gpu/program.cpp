#include "gpu/program.h"

#include "foundation/log.h"
#include "gpu/gl_functions.h"
#include "gpu/uniforms.h"

namespace {
constexpr GLsizei kInfoLogSize = 2048;
}

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

GLuint compileShader(GLenum stage, const std::string& source, const std::string& label) {
    const GLuint shader = gl.CreateShader(stage);
    const char* text = source.c_str();
    gl.ShaderSource(shader, 1, &text, nullptr);
    gl.CompileShader(shader);
    GLint compiled = 0;
    gl.GetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled) return shader;

    char infoLog[kInfoLogSize] = {};
    gl.GetShaderInfoLog(shader, kInfoLogSize, nullptr, infoLog);
    logLine("[SHADER ERROR] %s:\n%s\n", label.c_str(), infoLog);
    gl.DeleteShader(shader);
    return 0;
}

GLuint linkProgram(const std::string& vertexSource, const std::string& fragmentSource, const std::string& label) {
    if (vertexSource.empty() || fragmentSource.empty()) return 0;
    const GLuint vertex = compileShader(GL_VERTEX_SHADER, vertexSource, label);
    if (!vertex) return 0;
    const GLuint fragment = compileShader(GL_FRAGMENT_SHADER, fragmentSource, label);
    if (!fragment) {
        gl.DeleteShader(vertex);
        return 0;
    }

    GLuint program = gl.CreateProgram();
    gl.AttachShader(program, vertex);
    gl.AttachShader(program, fragment);
    gl.LinkProgram(program);
    GLint linked = 0;
    gl.GetProgramiv(program, GL_LINK_STATUS, &linked);
    if (!linked) {
        char infoLog[kInfoLogSize] = {};
        gl.GetProgramInfoLog(program, kInfoLogSize, nullptr, infoLog);
        logLine("[LINK ERROR] %s:\n%s\n", label.c_str(), infoLog);
        gl.DeleteProgram(program);
        program = 0;
    }
    gl.DeleteShader(vertex);
    gl.DeleteShader(fragment);
    return program;
}

void deleteProgram(GLuint program) {
    if (!program) return;
    forgetProgramUniforms(program);
    gl.DeleteProgram(program);
}
