// A show sets a shader's own uniforms from an entry's "params".
#pragma once

#include "config/shader_params.h"
#include "gpu/uniform_values.h"

// Sets each value for the program's uniforms of its name and of "u" + name with a capital ("speed": uSpeed). Names that
// the player writes itself are left alone.
void setParamValues(UniformValues& values, const Program& program, const std::vector<ShaderParam>& params);
