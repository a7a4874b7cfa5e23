// The values that an effect gives to a program's own uniforms, kept beside the effect: programs are shared, and
// uniforms keep whatever was written last.
#pragma once

#include "gpu/program_table.h"

#include <string_view>
#include <vector>

// One uniform with what it is to hold.
struct UniformValue {
    UniformInfo uniform;
    int count = 0; // components; 0: what the shader gave it
    std::array<float, 4> components = {};
};

struct UniformValues {
    uint64_t writer = 0; // tells these values from all others of the device; 0: none, the program is not drawn with
    std::vector<UniformValue> values; // every uniform of the program that a draw may leave changed
};

// Values for a program, all as its shader has them.
UniformValues makeUniformValues(ProgramTable& table, const Program& program);

// Sets the uniform of that name to 1 to 4 components, where there is one that takes so many: one goes to floats and
// to what is like an integer, more to vectors. Names that the player writes itself are left alone.
void setUniformValue(UniformValues& values, const Program& program, std::string_view name, const float* components,
                     int count);

// Puts the program in use, its uniforms holding these values.
void useProgram(Program& program, const UniformValues& values);
