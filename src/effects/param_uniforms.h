// A show sets a shader's own uniforms from an entry's "params".
#pragma once

#include "config/shader_params.h"
#include "platform/gl.h"

// Writes each value to the program's uniforms of its name and of "u" + name with a capital ("speed": uSpeed). Names
// that the player writes itself are left alone. Uniforms keep their values, so once is enough. Leaves the program in
// use.
void writeParamUniforms(GLuint program, const std::vector<ShaderParam>& params);

// The values that writeParamUniforms would write, as text that is equal for equal values.
std::string describeParamUniforms(const std::vector<ShaderParam>& params);
