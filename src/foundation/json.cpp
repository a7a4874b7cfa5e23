#include "foundation/json.h"

#include "foundation/log.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <type_traits>

// Growing a vector of values would otherwise copy whole subtrees.
static_assert(std::is_nothrow_move_constructible_v<JsonValue>);
static_assert(std::is_nothrow_move_constructible_v<JsonValue::Member>);

namespace {

// Every parse function below takes the place to read from and returns the place after what it consumed.
// NUL ends the text, so no function steps past a byte that it has not seen to be something else.

// More digits, or a larger power of ten, and one multiplication or division would no longer give the
// correctly rounded double: 10^15 < 2^53, and 10^22 is the last power that a double holds exactly.
constexpr int kMaxExactDigits = 15;
constexpr int kMaxDecimalDigits = 64; // leading zeros included; only bounds what is read twice
constexpr std::array<double, 23> kPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                                 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Colours and vectors are four numbers; growing to that one by one cost a sixth of the time. More would
// let a hostile text of many small containers claim too much memory a byte.
constexpr size_t kUsualChildren = 4;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

const char* skipWhitespace(const char* at) {
    while (*at == ' ' || *at == '\t' || *at == '\n' || *at == '\r') ++at;
    return at;
}

// The digits before and after the point, read as one whole number.
struct Decimal {
    uint64_t digits = 0;
    int count = 0;       // leading zeros included
    int significant = 0; // counted from the first digit that is not zero
    int fraction = 0;    // how many of the count stand after the point
};

// Stops before a digit that would be one too many, and so leaves `at` on it.
const char* parseDigits(const char* at, Decimal& decimal, int fractionStep) {
    while (isDigit(*at) && decimal.significant < kMaxExactDigits && decimal.count < kMaxDecimalDigits) {
        decimal.digits = decimal.digits * 10 + static_cast<uint64_t>(*at - '0');
        decimal.count += 1;
        decimal.significant += decimal.digits != 0 ? 1 : 0;
        decimal.fraction += fractionStep;
        ++at;
    }
    return at;
}

// Reads nothing when no digit follows the "e" ("1e" is the number 1). Returns null past three digits.
const char* parseExponent(const char* at, int& exponent) {
    if (*at != 'e' && *at != 'E') return at;
    const char* digit = at + 1;
    bool negative = *digit == '-';
    if (*digit == '-' || *digit == '+') ++digit;
    if (!isDigit(*digit)) return at;
    int magnitude = 0;
    for (; isDigit(*digit) && magnitude < 100; ++digit) magnitude = magnitude * 10 + (*digit - '0');
    exponent = negative ? -magnitude : magnitude;
    return isDigit(*digit) ? nullptr : digit;
}

// The short decimals that shows are full of, exact to the bit as strtod reads them, but cheaper. Returns
// null for everything else: long or extreme decimals, hexadecimal forms, infinity and NaN words, no number.
const char* parseShortDecimal(const char* at, double& number) {
    bool negative = *at == '-';
    if (*at == '-' || *at == '+') ++at;
    if (*at == '0' && (at[1] == 'x' || at[1] == 'X')) return nullptr;
    Decimal decimal;
    at = parseDigits(at, decimal, 0);
    if (*at == '.') at = parseDigits(at + 1, decimal, 1);
    if (decimal.count == 0 || isDigit(*at)) return nullptr;
    int exponent = 0;
    at = parseExponent(at, exponent);
    int power = exponent - decimal.fraction;
    if (at == nullptr || std::abs(power) >= static_cast<int>(kPowersOfTen.size())) return nullptr;
    double magnitude = static_cast<double>(decimal.digits);
    double scale = kPowersOfTen[static_cast<size_t>(std::abs(power))];
    magnitude = power < 0 ? magnitude / scale : magnitude * scale;
    number = negative ? -magnitude : magnitude;
    return at;
}

// Leaves 0 and consumes nothing where no number stands.
const char* parseNumber(const char* at, double& number) {
    if (const char* end = parseShortDecimal(at, number)) return end;
    char* end = nullptr;
    number = std::strtod(at, &end);
    return end;
}

// Entered after the backslash. Code points are never decoded: text beyond ASCII comes as raw UTF-8.
const char* parseEscape(const char* at, std::string& text) {
    switch (*at) {
    case '\0': return at;
    case 'b': text += '\b'; return at + 1;
    case 'f': text += '\f'; return at + 1;
    case 'n': text += '\n'; return at + 1;
    case 'r': text += '\r'; return at + 1;
    case 't': text += '\t'; return at + 1;
    case 'u':
        text += '?';
        ++at;
        for (int skipped = 0; skipped < 4 && *at != '\0'; ++skipped) ++at;
        return at;
    default: text += *at; return at + 1;
    }
}

// Anything but a quote at the start gives the empty string and consumes nothing.
const char* parseString(const char* at, std::string& text) {
    if (*at != '"') return at;
    ++at;
    while (true) {
        const char* run = at;
        while (*at != '"' && *at != '\\' && *at != '\0') ++at;
        text.append(run, static_cast<size_t>(at - run));
        if (*at != '\\') return *at == '"' ? at + 1 : at;
        at = parseEscape(at + 1, text);
    }
}

// What the lists of a text may still take, and why it was not read to its end.
struct Limits {
    size_t bytes = kJsonMaxBytes;
    JsonLimit reached = JsonLimit::none;
};

// False when there is no memory left for another child: then every container around it ends too. Growing is done
// here, so that the count does not hang on how the library would do it.
template <typename Child>
bool makeRoom(std::vector<Child>& children, Limits& limits) {
    if (children.size() < children.capacity()) return limits.reached == JsonLimit::none;
    const size_t more = std::max(children.capacity(), kUsualChildren);
    if (more * sizeof(Child) > limits.bytes) limits.reached = JsonLimit::memory;
    if (limits.reached != JsonLimit::none) return false;
    limits.bytes -= more * sizeof(Child);
    children.reserve(children.capacity() + more);
    return true;
}

const char* parseValue(const char* at, JsonValue& value, int depth, Limits& limits);

// `depth` counts the containers around a value, this one included.
const char* parseArray(const char* at, JsonValue& value, int depth, Limits& limits) {
    value.kind = JsonKind::array;
    at = skipWhitespace(at + 1);
    if (*at == ']') return at + 1;
    while (*at != '\0' && makeRoom(value.items, limits)) {
        at = skipWhitespace(parseValue(at, value.items.emplace_back(), depth, limits));
        if (*at == ']') return at + 1;
        if (*at != ',') return at;
        ++at;
    }
    return at;
}

const char* parseObject(const char* at, JsonValue& value, int depth, Limits& limits) {
    value.kind = JsonKind::object;
    at = skipWhitespace(at + 1);
    if (*at == '}') return at + 1;
    while (*at != '\0' && makeRoom(value.members, limits)) {
        auto& [key, child] = value.members.emplace_back();
        at = skipWhitespace(parseString(skipWhitespace(at), key));
        if (*at == ':') ++at;
        at = skipWhitespace(parseValue(at, child, depth, limits));
        if (*at != ',') break;
        ++at;
    }
    return *at == '}' ? at + 1 : at;
}

// Expects an empty `value`, and fills it where it stands: children are never moved into their parents.
const char* parseValue(const char* at, JsonValue& value, int depth, Limits& limits) {
    at = skipWhitespace(at);
    if (*at == '{' || *at == '[') {
        // An unread bracket is neither comma nor closing bracket, so every container around it ends here.
        if (depth == kJsonMaxDepth) {
            limits.reached = JsonLimit::depth;
            return at;
        }
        return *at == '{' ? parseObject(at, value, depth + 1, limits) : parseArray(at, value, depth + 1, limits);
    }
    if (*at == '"') {
        value.kind = JsonKind::string;
        return parseString(at, value.text);
    }
    if (*at == 't' && std::strncmp(at, "true", 4) == 0) {
        value.kind = JsonKind::boolean;
        value.boolean = true;
        return at + 4;
    }
    if (*at == 'f' && std::strncmp(at, "false", 5) == 0) {
        value.kind = JsonKind::boolean;
        return at + 5;
    }
    if (*at == 'n' && std::strncmp(at, "null", 4) == 0) return at + 4;
    value.kind = JsonKind::number;
    return parseNumber(at, value.number);
}

} // namespace

JsonValue parseJson(const char*& cursor, JsonLimit* reached) {
    JsonValue value;
    Limits limits;
    cursor = parseValue(cursor, value, 0, limits);
    if (reached) *reached = limits.reached;
    return value;
}

JsonValue parseJson(const std::string& text) {
    const char* cursor = text.c_str();
    return parseJson(cursor);
}

JsonValue parseJson(const char* text, std::string& leftOut) {
    const char* end = text;
    JsonLimit reached = JsonLimit::none;
    JsonValue root = parseJson(end, &reached);
    leftOut.clear();
    if (reached == JsonLimit::none) return root;
    const std::string reason = reached == JsonLimit::memory
                                   ? "its values take more than " + std::to_string(kJsonMaxBytes >> 20) + " MB"
                                   : "nested deeper than " + std::to_string(kJsonMaxDepth) + " lists and objects";
    leftOut = "left out from line " + std::to_string(std::count(text, end, '\n') + 1) + ", byte " +
              std::to_string(end - text) + " on: " + reason;
    return root;
}

JsonValue parseJsonFile(const char* text, const std::string& path) {
    std::string leftOut;
    JsonValue root = parseJson(text, leftOut);
    if (!leftOut.empty()) logLine("[WARN] %s: %s\n", path.c_str(), leftOut.c_str());
    return root;
}

const JsonValue& find(const JsonValue& value, std::string_view key) {
    static const JsonValue nullValue{};
    for (const auto& [name, child] : value.members) {
        if (name == key) return child;
    }
    return nullValue;
}

float getNumber(const JsonValue& value, float fallback) {
    return value.kind == JsonKind::number ? static_cast<float>(value.number) : fallback;
}

float getBounded(const JsonValue& value, float fallback, float low, float high) {
    const float number = std::clamp(getNumber(value, fallback), low, high); // leaves NaN as it is
    return std::isfinite(number) ? number : std::clamp(fallback, low, high);
}

float getFinite(const JsonValue& value, float fallback) {
    return getBounded(value, fallback, -kNoBound, kNoBound);
}

std::string getString(const JsonValue& value, const char* fallback) {
    return value.kind == JsonKind::string ? value.text : std::string(fallback);
}

bool getBool(const JsonValue& value, bool fallback) {
    return value.kind == JsonKind::boolean ? value.boolean : fallback;
}

int32_t getInt(const JsonValue& value, int32_t fallback) {
    constexpr int32_t kLowest = std::numeric_limits<int32_t>::min();
    constexpr int32_t kHighest = std::numeric_limits<int32_t>::max();
    if (value.kind != JsonKind::number || !std::isfinite(value.number)) return fallback;
    if (value.number <= kLowest) return kLowest;
    if (value.number >= kHighest) return kHighest;
    return static_cast<int32_t>(value.number);
}
