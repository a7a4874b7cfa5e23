#include "foundation/json.h"
#include "foundation/log.h"
#include "foundation/text.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

// The tree in one line, so that a table can state it: [1,"x",{a:null}].
std::string dump(const JsonValue& value) {
    std::string text;
    switch (value.kind) {
    case JsonKind::null:
        return "null";
    case JsonKind::boolean:
        return value.boolean ? "true" : "false";
    case JsonKind::number: {
        char digits[32];
        std::snprintf(digits, sizeof digits, "%.17g", value.number);
        return digits;
    }
    case JsonKind::string:
        return '"' + value.text + '"';
    case JsonKind::array:
        for (const JsonValue& item : value.items) {
            text += text.empty() ? "" : ",";
            text += dump(item);
        }
        return '[' + text + ']';
    case JsonKind::object:
        for (const auto& [key, child] : value.members) {
            text += text.empty() ? "" : ",";
            text += key + ':' + dump(child);
        }
        return '{' + text + '}';
    }
    return text;
}

bool sameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Value and end must both be those of strtod, whichever way the parser took.
void expectAsStrtod(const std::string& text) {
    SCOPED_TRACE(text);
    char* end = nullptr;
    double expected = std::strtod(text.c_str(), &end);
    const char* cursor = text.c_str();
    JsonValue value = parseJson(cursor);
    EXPECT_EQ(value.kind, JsonKind::number);
    EXPECT_TRUE(sameBits(value.number, expected)) << value.number << " is not " << expected;
    EXPECT_EQ(cursor - text.c_str(), end - text.c_str());
}

JsonValue numberValue(double number) {
    JsonValue value;
    value.kind = JsonKind::number;
    value.number = number;
    return value;
}

TEST(Json, readsWhatItCanAndStopsWhereItMust) {
    const struct {
        const char* text;
        const char* tree;
        int consumed; // -1: all of it
    } cases[] = {
        {"{}", "{}", -1},
        {"[]", "[]", -1},
        {" \t\r\n[ ]", "[]", -1},
        {"{ } ", "{}", 3},
        {"", "0", -1},
        {"abc", "0", 0},
        {"\xEF\xBB\xBF{}", "0", 0},
        {"{\"a\":1,\"a\":2}", "{a:1,a:2}", -1},
        {" { \"a\" : [ 1 , { } ] , \"b\" : null } ", "{a:[1,{}],b:null}", 35},
        // Arrays: whatever follows an opening or a comma is an element, the end of the text excepted.
        {"[1,2,", "[1,2]", -1},
        {"[1, ", "[1,0]", -1},
        {"[1,2,]", "[1,2,0]", -1},
        {"[,]", "[0,0]", -1},
        {"[ ", "[]", -1},
        {"[1 2]", "[1]", 3},
        {"[1}", "[1]", 2},
        {"[abc,1]", "[0]", 1},
        {"[[1", "[[1]]", -1},
        // Objects: keys and colons may be missing, and only a brace closes.
        {"{\"a\" 1}", "{a:1}", -1},
        {"{\"a\"", "{a:0}", -1},
        {"{\"a\":1,", "{a:1}", -1},
        {"{\"a\":1, ", "{a:1,:0}", -1},
        {"{\"a\":1,}", "{a:1,:0}", -1},
        {"{1:2}", "{:1}", 2},
        {"{a:1}", "{:0}", 1},
        {"{:1}", "{:1}", -1},
        {"{\"a\":1 \"b\":2}", "{a:1}", 7},
        {"{\"a\":1]", "{a:1}", 6},
        // Keywords are prefixes, and case matters.
        {"trueish", "true", 4},
        {"falsey", "false", 5},
        {"nullnull", "null", 4},
        {"[tru]", "[0]", 1},
        {"True", "0", 0},
        {"fals", "0", 0},
        // Strings.
        {"\"a\\qb\"", "\"aqb\"", -1},
        {"\"\\/\\\\\\\"\"", "\"/\\\"\"", -1},
        {"\"\\b\\f\\n\\r\\t\"", "\"\b\f\n\r\t\"", -1},
        {"\"\\u00e9\"", "\"?\"", -1},
        {"\"\\u1\"2345\"", "\"?45\"", -1},
        {"\"x\\u1", "\"x?\"", -1},
        {"\"x\\", "\"x\"", -1},
        {"\"a\nb\xFF", "\"a\nb\xFF\"", -1},
        {"{\"a\\u0020b\":\"c", "{a?b:\"c\"}", -1},
    };
    for (const auto& [text, tree, consumed] : cases) {
        SCOPED_TRACE(text);
        const char* cursor = text;
        EXPECT_EQ(dump(parseJson(cursor)), tree);
        EXPECT_EQ(cursor - text, consumed < 0 ? static_cast<int>(std::strlen(text)) : consumed);
    }
    using namespace std::string_literals;
    EXPECT_EQ(dump(parseJson("[1,\"a\0b\",2]"s)), "[1,\"a\"]");
}

TEST(Json, keepsEveryMemberThatWasCompleteBeforeACut) {
    const struct {
        const char* key;
        const char* value;
    } parts[] = {
        {"schemaVersion", "\"native-runtime/v1\""},
        {"globals", "{ \"width\": 1920, \"loop\": false, \"none\": null }"},
        {"scenes", R"([{"id": "a\\\u00e9\n", "entries": [{"start": -1.5e-3, "params": {"c": [1]}}]}, []])"},
        {"volume", "0.12345678901234567890"},
        {"last", "[true, [[[\"deep\"]]]]"},
    };
    std::string document = "{";
    std::vector<size_t> ends; // where each part is complete
    for (const auto& [key, value] : parts) {
        document += (ends.empty() ? " \"" : ",\n \"") + std::string(key) + "\": " + value;
        ends.push_back(document.size());
    }
    document += "}";
    for (size_t length = 0; length <= document.size(); ++length) {
        SCOPED_TRACE(length);
        // A text of its own, so that the address sanitizer sees a read past its end.
        std::vector<char> cut(document.begin(), document.begin() + static_cast<ptrdiff_t>(length));
        cut.push_back('\0');
        const char* cursor = cut.data();
        JsonValue root = parseJson(cursor);
        EXPECT_LE(cursor - cut.data(), length);
        for (size_t i = 0; i < ends.size() && ends[i] <= length; ++i) {
            ASSERT_LT(i, root.members.size());
            EXPECT_EQ(root.members[i].first, parts[i].key);
            EXPECT_EQ(dump(root.members[i].second), dump(parseJson(std::string(parts[i].value))));
        }
    }
}

TEST(Json, stopsBelowTheGreatestDepth) {
    for (std::string opening : {"[", "{\"a\":"}) {
        for (size_t levels : {size_t{512}, size_t{513}, size_t{100000}, size_t{10000000}}) {
            SCOPED_TRACE(opening + std::to_string(levels));
            std::string text;
            text.reserve(levels * opening.size() + 8);
            for (size_t i = 0; i < levels; ++i) {
                text += opening;
            }
            text += "7,8";
            const char* cursor = text.c_str();
            JsonValue root = parseJson(cursor);
            bool tooDeep = levels > kJsonMaxDepth;
            EXPECT_EQ(cursor - text.c_str(), tooDeep ? kJsonMaxDepth * opening.size() : text.size());

            const JsonValue* value = &root;
            for (int level = 0; level < kJsonMaxDepth; ++level) {
                size_t children = level < kJsonMaxDepth - 1 || tooDeep ? 1 : 2;
                ASSERT_EQ(value->items.size() + value->members.size(), children);
                value = value->items.empty() ? &value->members[0].second : &value->items[0];
            }
            EXPECT_EQ(dump(*value), tooDeep ? "null" : "7");
        }
    }
}

TEST(Json, readsEveryNumberFormAsStrtodDoes) {
    for (const char* text :
         {"-1.5e2", "0", "-0", "-0.0", "+7", "5.", ".5", "-.5e1", ".", "-", "+-1", "-.", "e5", "1e", "1e+",
          "1e-x", "1.e2", "1.2.3", "1..2", "007", "00x1", "0x1F", "-0x1.8p3", "0x", "0x.8", "0X1p-1074", "inf",
          "-Infinity", "infinite", "nan", "-NaN", "nan(12)", "nan(1", "1e22", "1e23", "9e22", "1e-22", "1e-23",
          "123456789012345e22", "999999999999999", "9999999999999999", "9007199254740993", "123456789012345.6",
          "1e308", "1e309", "-1e999", "5e-324", "1e-400", "1e0000000000000000005", "1e1000", "1e-1000",
          "1e99999999999999999999", "\v5"}) {
        expectAsStrtod(text);
    }
    expectAsStrtod("0." + std::string(70, '0') + "1e71");
    expectAsStrtod(std::string(70, '0') + "1");
    expectAsStrtod("0." + std::string(30, '0') + "25e30");
    expectAsStrtod(std::string(1000000, '9') + "." + std::string(1000000, '9') + "e-1000000");
    EXPECT_EQ(parseJson(std::string("-1.5e2")).number, -150.0);
}

TEST(Json, readsGeneratedDecimalsAsStrtodDoes) {
    std::mt19937 random(20240229);
    auto upTo = [&](int highest) { return static_cast<int>(random() % static_cast<unsigned>(highest + 1)); };
    auto digits = [&](int count) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            text += static_cast<char>('0' + (upTo(3) == 0 ? 0 : upTo(9)));
        }
        return text;
    };
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        std::string text = std::array{"", "-", "+"}[static_cast<size_t>(upTo(2))];
        text += digits(upTo(11));
        if (upTo(3) > 0) {
            text += '.';
            text += digits(upTo(11));
        }
        if (upTo(2) == 0) {
            text += 'e';
            text += std::to_string(upTo(60) - 30);
        }
        expectAsStrtod(text);
    }
}

TEST(Json, lookUpsChainAndNeverConvert) {
    JsonValue root = parseJson(std::string(R"({"a":1,"a":2,"A":3,"s":"5","t":true,"list":[{"a":1}],"":4})"));
    EXPECT_EQ(getNumber(find(root, "a"), 7), 1);
    EXPECT_EQ(getNumber(find(root, "A"), 7), 3);
    EXPECT_EQ(getNumber(find(root, ""), 7), 4);
    EXPECT_EQ(getNumber(find(root, std::string_view("a\0", 2)), 7), 7);
    EXPECT_EQ(&find(find(root, "none"), "a"), &find(find(root, "list"), "a"));
    EXPECT_EQ(find(find(root, "s"), "a").kind, JsonKind::null);

    EXPECT_EQ(getNumber(find(root, "s"), 7), 7);
    EXPECT_EQ(getNumber(find(root, "t"), 3), 3);
    EXPECT_EQ(getInt(find(root, "t"), 3), 3);
    EXPECT_EQ(getString(find(root, "a"), "x"), "x");
    EXPECT_EQ(getString(find(root, "s"), "x"), "5");
    EXPECT_TRUE(getBool(find(root, "t"), false));
    EXPECT_TRUE(getBool(find(root, "a"), true));
}

TEST(Json, narrowsNumbersWithoutOverflow) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const struct {
        double number;
        int32_t whole;
    } cases[] = {
        {1919.9, 1919}, {-1919.9, -1919}, {-0.5, 0},
        {2147483646.9, INT32_MAX - 1}, {2147483647.5, INT32_MAX}, {2147483648.0, INT32_MAX},
        {1e300, INT32_MAX}, {kInfinity, INT32_MAX}, {-2147483647.9, INT32_MIN + 1}, {-2147483648.9, INT32_MIN},
        {-1e300, INT32_MIN}, {-kInfinity, INT32_MIN}, {std::nan(""), 42},
    };
    for (const auto& [number, whole] : cases) {
        SCOPED_TRACE(number);
        EXPECT_EQ(getInt(numberValue(number), 42), whole);
    }
    EXPECT_EQ(getNumber(numberValue(0.1), 0), 0.1f);
    EXPECT_EQ(getNumber(numberValue(-1e300), 0), -std::numeric_limits<float>::infinity());
}

TEST(Log, masksControlCharactersAndKeepsLongMessagesWhole) {
    FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    setLogStream(file);
    std::string expected = "[A] ?[31mred??b??c\t\xC3\xA9 \xC2\xA0?\n";
    logLine("[A] %s%c\n", "\x1B[31mred\r\x7F" "b\xC2\x9B" "c\t\xC3\xA9 \xC2\xA0", '\0');
    // Around the size at which a message stops fitting on the stack.
    for (int size : {1022, 1023, 1024, 1025, 100000}) {
        logLine("%s%c", std::string(static_cast<size_t>(size) - 1, 'x').c_str(), '\x1B');
        expected += std::string(static_cast<size_t>(size) - 1, 'x') + '?';
    }
    setLogStream(nullptr);

    std::string written(expected.size() + 16, '\0');
    std::rewind(file);
    written.resize(std::fread(written.data(), 1, written.size(), file));
    std::fclose(file);
    EXPECT_EQ(written, expected);
}

TEST(Text, foldsAsciiLettersOnly) {
    EXPECT_EQ(toLower("AZ@[`{ \xC3\x89"), "az@[`{ \xC3\x89");
    EXPECT_TRUE(equalsIgnoringCase("Fade.PNG", "fADE.png"));
    EXPECT_FALSE(equalsIgnoringCase("fade", "fades"));
    EXPECT_TRUE(lessIgnoringCase("Alpha", "beta"));
    EXPECT_FALSE(lessIgnoringCase("b", "B"));
    EXPECT_TRUE(lessIgnoringCase("z", "\xC3\xA9")); // bytes above 127 come last, whatever sign char has
}

} // namespace
