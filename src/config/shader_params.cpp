#include "config/shader_params.h"

#include "foundation/json.h"

#include <cmath>
#include <string_view>
#include <unordered_set>

namespace {

// Leaves the count 0 where there is no value for a uniform.
void readValue(const JsonValue& json, ShaderParam& param) {
    if (json.kind == JsonKind::number || json.kind == JsonKind::boolean) {
        param.values[0] = getNumber(json, json.boolean ? 1.0f : 0.0f);
        param.count = std::isfinite(param.values[0]) ? 1 : 0;
    } else if (json.kind == JsonKind::array && json.items.size() >= 2 && json.items.size() <= param.values.size()) {
        for (size_t i = 0; i < json.items.size(); ++i) {
            param.values[i] = getNumber(json.items[i], NAN);
            if (!std::isfinite(param.values[i])) return;
        }
        param.count = static_cast<int>(json.items.size());
    }
}

// The effect's own settings, read elsewhere.
bool isEffectSetting(std::string_view name) {
    return name == "alpha" || name == "timeScale";
}

} // namespace

std::vector<ShaderParam> readShaderParams(const JsonValue& params) {
    std::vector<ShaderParam> values;
    std::unordered_set<std::string_view> seen;
    for (const auto& [name, json] : params.members) {
        if (isEffectSetting(name) || !seen.insert(name).second) continue;
        ShaderParam param;
        readValue(json, param);
        if (param.count == 0) continue;
        param.name = name;
        values.push_back(std::move(param));
    }
    return values;
}
