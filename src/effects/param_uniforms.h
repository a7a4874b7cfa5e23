// A show sets a shader's own uniforms from an entry's "params".
#pragma once

#include "foundation/json.h"
#include "gpu/uniform_values.h"

// Sets every number, bool and array of 2 to 4 numbers of `params` for the program's uniforms of that name and of
// "u" + name with a capital ("speed": uSpeed). Names that the player writes itself are left alone.
void setParamValues(UniformValues& values, const Program& program, const JsonValue& params);
