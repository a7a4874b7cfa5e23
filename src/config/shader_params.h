// The values that a show gives a shader's own uniforms: what "params" holds besides the player's keys.
#pragma once

#include <array>
#include <string>
#include <vector>

struct JsonValue;

struct ShaderParam {
    std::string name; // as written; the uniform has it, or "u" and the name with a capital
    int count = 0;    // 1 to 4 components
    std::array<float, 4> values = {};
};

// Every number, bool and array of 2 to 4 numbers of `params`, the first of each name, but for the effect's own
// settings ("alpha", "timeScale"). Whatever is not finite is no value.
std::vector<ShaderParam> readShaderParams(const JsonValue& params);
