// The JSON document model and its forgiving parser: malformed text yields what could be read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

enum class JsonKind : uint32_t { null = 0, boolean = 1, number = 2, string = 3, array = 4, object = 5 };

// One tagged value. Only the member that matches `kind` is meaningful, the others stay empty.
struct JsonValue {
    struct Member;

    JsonKind kind = JsonKind::null;
    bool boolean = false;
    double number = 0.0;
    std::string text;             // bytes as read, not validated
    std::vector<JsonValue> items; // document order
    std::vector<Member> members;  // document order; a repeated key is kept, look-up finds the first
};

// A record of its own: std::pair would ask for the whole of JsonValue before that is complete.
struct JsonValue::Member {
    std::string first; // the key
    JsonValue second;
};

// Containers nested deeper than this read as null, and parsing stops there: reading, copying and releasing
// a tree all recurse, and the stack must last however many brackets a file opens.
constexpr int kJsonMaxDepth = 512;

// Parsing stops where the lists of values would take more memory than this: a comma is enough for a value of a hundred
// bytes. Some two million numbers, or half as many members of objects.
constexpr size_t kJsonMaxBytes = size_t{1} << 28;

// What made parsing stop before the end of what a text holds.
enum class JsonLimit { none, memory, depth };

// Parses the value at `cursor`, which points into NUL-terminated text and is advanced past what was
// consumed. Never fails: malformed input gives a partial tree, text that is no JSON the number 0.
JsonValue parseJson(const char*& cursor, JsonLimit* reached = nullptr);
JsonValue parseJson(const std::string& text);

// The same; `leftOut` says from where on a limit left something out, and why, and is empty where none did.
JsonValue parseJson(const char* text, std::string& leftOut);

// The same for the text of a file: what a limit leaves out is said in the log, under the file's path.
JsonValue parseJsonFile(const char* text, const std::string& path);

// The first member named `key` (compared byte for byte), or a shared null value when there is none or
// `value` is not an object, so that look-ups chain without a test between them.
const JsonValue& find(const JsonValue& value, std::string_view key);

// Typed readers. A value of another kind gives `fallback`; nothing is converted between kinds.
float getNumber(const JsonValue& value, float fallback);
std::string getString(const JsonValue& value, const char* fallback);
bool getBool(const JsonValue& value, bool fallback);

// Numbers that are not finite would poison every comparison on their way, so a show's settings are read by the
// three below. What "nan" or "1e999" gives is decided here alone.

constexpr float kNoBound = std::numeric_limits<float>::infinity();

// A number brought into low..high, where -kNoBound and kNoBound are no ends. An infinite one takes the end on its
// side, and `fallback` where there is none; so does NaN. The fallback is brought into the range too.
float getBounded(const JsonValue& value, float fallback, float low, float high);

// The same without any range: a number that is not finite gives `fallback`.
float getFinite(const JsonValue& value, float fallback);

// Narrowed toward zero; numbers outside the 32-bit range stop at its ends, one that is not finite gives `fallback`.
int32_t getInt(const JsonValue& value, int32_t fallback);
