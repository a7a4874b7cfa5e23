#include "effects/param_uniforms.h"

#include "gpu/gl_functions.h"
#include "gpu/uniforms.h"

#include <cstdio>

namespace {

std::string prefixed(const std::string& name) {
    std::string uniform = "u" + name;
    if (name.empty() || name[0] < 'a' || name[0] > 'z') return uniform;
    uniform[1] = static_cast<char>(name[0] - 'a' + 'A');
    return uniform;
}

void writeValue(GLuint program, const std::string& name, const ShaderParam& param) {
    if (isStandardUniform(name)) return;
    const std::array<float, 4>& c = param.values;
    switch (param.count) {
    case 1: setUniformFloat(program, name, c[0]); break;
    case 2: setUniformVec2(program, name, c[0], c[1]); break;
    case 3: setUniformVec3(program, name, c[0], c[1], c[2]); break;
    default: setUniformVec4(program, name, c[0], c[1], c[2], c[3]); break;
    }
}

} // namespace

void writeParamUniforms(GLuint program, const std::vector<ShaderParam>& params) {
    gl.UseProgram(program);
    for (const ShaderParam& param : params) {
        writeValue(program, param.name, param);
        writeValue(program, prefixed(param.name), param);
    }
}

std::string describeParamUniforms(const std::vector<ShaderParam>& params) {
    std::string text;
    for (const ShaderParam& param : params) {
        text += param.name;
        for (int i = 0; i < param.count; ++i) {
            char number[32];
            const double value = static_cast<double>(param.values[static_cast<size_t>(i)]);
            std::snprintf(number, sizeof number, "%c%.9g", i ? ',' : '=', value);
            text += number;
        }
        text += '\0';
    }
    return text;
}
