// A show sets a shader's own uniforms from an entry's "params".
#pragma once

#include "foundation/json.h"
#include "platform/gl.h"

#include <string>

// Writes every number, bool and array of 2 to 4 numbers of `params` to the program's uniforms of that name
// and of "u" + name with a capital ("speed": uSpeed). Names that the player writes itself are left alone.
// Uniforms keep their values, so once is enough. Leaves the program in use.
void writeParamUniforms(GLuint program, const JsonValue& params);

// The values that writeParamUniforms would write, as text that is equal for equal values.
std::string describeParamUniforms(const JsonValue& params);
