#include "effects/param_uniforms.h"

namespace {

std::string prefixed(const std::string& name) {
    std::string uniform = "u" + name;
    if (name.empty() || name[0] < 'a' || name[0] > 'z') return uniform;
    uniform[1] = static_cast<char>(name[0] - 'a' + 'A');
    return uniform;
}

} // namespace

void setParamValues(UniformValues& values, const Program& program, const std::vector<ShaderParam>& params) {
    for (const ShaderParam& param : params) {
        setUniformValue(values, program, param.name, param.values.data(), param.count);
        setUniformValue(values, program, prefixed(param.name), param.values.data(), param.count);
    }
}
