#include "gpu/uniform_values.h"

#include "gpu/gl_functions.h"

#include <algorithm>
#include <string>

namespace {

// Every draw sets these.
bool isAlwaysWritten(const UniformTable& table, GLint location) {
    using U = StandardUniform;
    for (const U name : {U::iResolution, U::uResolution, U::iTime, U::uTime, U::iFrame, U::uAlpha, U::iMouse}) {
        if (standardUniform(table, name).location == location) return true;
    }
    return false;
}

bool isVector(GLenum type) {
    return type == GL_FLOAT_VEC2 || type == GL_FLOAT_VEC3 || type == GL_FLOAT_VEC4;
}

void write(const UniformValue& value) {
    const std::array<float, 4>& c = value.components;
    switch (value.count) {
    case 0: resetUniform(value.uniform); break;
    case 1: setUniformFloat(value.uniform, c[0]); break;
    case 2: setUniformVec2(value.uniform, c[0], c[1]); break;
    case 3: setUniformVec3(value.uniform, c[0], c[1], c[2]); break;
    default: setUniformVec4(value.uniform, c[0], c[1], c[2], c[3]); break;
    }
}

} // namespace

UniformValues makeUniformValues(ProgramTable& table, const Program& program) {
    UniformValues values;
    values.writer = ++table.writers;
    for (const auto& [name, uniform] : program.uniforms.byName) {
        const bool isElsewhere = name == "iChannelResolution" || isAlwaysWritten(program.uniforms, uniform.location);
        if (!isElsewhere && hasSetter(uniform)) values.values.push_back({uniform, 0, {}});
    }
    return values;
}

void setUniformValue(UniformValues& values, const Program& program, std::string_view name, const float* components,
                     int count) {
    const std::string key(name);
    if (isStandardUniform(key)) return;
    const UniformInfo uniform = uniformNamed(program.uniforms, key);
    if (uniform.location < 0 || isVector(uniform.type) != (count > 1)) return;
    const auto found = std::find_if(values.values.begin(), values.values.end(), [&](const UniformValue& value) {
        return value.uniform.location == uniform.location;
    });
    if (found == values.values.end()) return;
    found->count = count;
    std::copy(components, components + count, found->components.begin());
}

void useProgram(Program& program, const UniformValues& values) {
    gl.UseProgram(program.handle);
    if (program.writer == values.writer) return;
    for (const UniformValue& value : values.values) write(value);
    program.writer = values.writer;
}
