#include "effects/param_uniforms.h"

#include "gpu/gl_functions.h"
#include "gpu/uniforms.h"

#include <cmath>
#include <cstdio>
#include <string_view>
#include <unordered_set>

namespace {

constexpr size_t kMaxComponents = 4;

struct ParamValue {
    float components[kMaxComponents] = {};
    size_t count = 0; // 0: no value for a uniform; 1: a number or bool
};

ParamValue readValue(const JsonValue& json) {
    ParamValue value;
    if (json.kind == JsonKind::number || json.kind == JsonKind::boolean) {
        value.components[0] = getNumber(json, json.boolean ? 1.0f : 0.0f);
        value.count = std::isfinite(value.components[0]) ? 1 : 0;
    } else if (json.kind == JsonKind::array && json.items.size() >= 2 && json.items.size() <= kMaxComponents) {
        for (const JsonValue& item : json.items) {
            const float component = getNumber(item, 0.0f);
            if (item.kind != JsonKind::number || !std::isfinite(component)) return {};
            value.components[value.count++] = component;
        }
    }
    return value;
}

// The entry's own settings, read elsewhere.
bool isEntrySetting(const std::string& name) {
    return name == "alpha" || name == "timeScale";
}

std::string prefixed(const std::string& name) {
    std::string uniform = "u" + name;
    if (name.empty() || name[0] < 'a' || name[0] > 'z') return uniform;
    uniform[1] = static_cast<char>(name[0] - 'a' + 'A');
    return uniform;
}

// Calls `use(name, value)` for the first member of each name, where it holds a value for a uniform.
template <typename Use>
void forEachParam(const JsonValue& params, Use use) {
    std::unordered_set<std::string_view> seen;
    for (const auto& [name, json] : params.members) {
        if (isEntrySetting(name) || !seen.insert(name).second) continue;
        const ParamValue value = readValue(json);
        if (value.count > 0) use(name, value);
    }
}

} // namespace

void setParamValues(UniformValues& values, const Program& program, const JsonValue& params) {
    forEachParam(params, [&](const std::string& name, const ParamValue& value) {
        const int count = static_cast<int>(value.count);
        setUniformValue(values, program, name, value.components, count);
        setUniformValue(values, program, prefixed(name), value.components, count);
    });
}
