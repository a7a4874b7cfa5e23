#include "foundation/json.h"
#include "foundation/text.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>

namespace {

using namespace std::string_literals;

// The tree in one line, so that a table can state it: [1,"x",{a:null}].
std::string dump(const JsonValue& value) {
    std::ostringstream text;
    const auto comma = [&] { return text.tellp() > 0 ? "," : ""; };
    for (const JsonValue& item : value.items) text << comma() << dump(item);
    for (const auto& [key, child] : value.members) text << comma() << key << ':' << dump(child);
    switch (value.kind) {
    case JsonKind::null: return "null";
    case JsonKind::boolean: return value.boolean ? "true" : "false";
    case JsonKind::number: text << value.number; break;
    case JsonKind::string: return '"' + value.text + '"';
    case JsonKind::array: return '[' + text.str() + ']';
    case JsonKind::object: return '{' + text.str() + '}';
    }
    return text.str();
}

// Value and end must both be those of strtod, whichever way the parser took.
void expectAsStrtod(const std::string& text) {
    SCOPED_TRACE(text.substr(0, 100));
    char* end = nullptr;
    const double expected = std::strtod(text.c_str(), &end);
    const char* cursor = text.c_str();
    const JsonValue value = parseJson(cursor);
    EXPECT_EQ(value.kind, JsonKind::number);
    EXPECT_EQ(std::memcmp(&value.number, &expected, sizeof expected), 0) << value.number << " is not " << expected;
    EXPECT_EQ(cursor, end);
}

TEST(Json, ReadsWhatItCanAndStopsWhereItMust) {
    const struct {
        const char* text;
        const char* tree;
        int consumed = -1;
    } cases[] = {
        // -1: all of it
        {" \t\r\n[ ]", "[]"},
        {"{ } ", "{}", 3},
        {"", "0"},
        {"abc", "0", 0},
        {" { \"a\" : [ 1 , { } ] , \"a\" : null } ", "{a:[1,{}],a:null}", 35},
        // Arrays: whatever follows an opening or a comma is an element, the end of the text excepted.
        {"[1,2,", "[1,2]"},
        {"[1, ", "[1,0]"},
        {"[,]", "[0,0]"},
        {"[1 2]", "[1]", 3},
        {"[1}", "[1]", 2},
        // Objects: keys and colons may be missing, and only a brace closes.
        {"{\"a\" 1}", "{a:1}"},
        {"{\"a\"", "{a:0}"},
        {"{\"a\":1,}", "{a:1,:0}"},
        {"{1:2}", "{:1}", 2},
        {"{a:1}", "{:0}", 1},
        {"{\"a\":1 \"b\":2}", "{a:1}", 7},
        {"{\"a\":1]", "{a:1}", 6},
        // Keywords are prefixes, and case matters.
        {"trueish", "true", 4},
        {"nullnull", "null", 4},
        {"[tru]", "[0]", 1},
        {"True", "0", 0},
        // Strings.
        {"\"a\\qb\"", "\"aqb\""},
        {"\"\\/\\\\\\\"\"", "\"/\\\"\""},
        {"\"\\b\\f\\n\\r\\t\"", "\"\b\f\n\r\t\""},
        {"\"\\u1\"2345\"", "\"?45\""},
        {"\"x\\u1", "\"x?\""},
        {"\"x\\", "\"x\""},
        {"{\"a\\u0020b\":\"c", "{a?b:\"c\"}"},
    };
    for (const auto& [text, tree, consumed] : cases) {
        SCOPED_TRACE(text);
        const char* cursor = text;
        EXPECT_EQ(dump(parseJson(cursor)), tree);
        EXPECT_EQ(cursor - text, consumed < 0 ? static_cast<int>(std::strlen(text)) : consumed);
    }
    EXPECT_EQ(dump(parseJson("[1,\"a\0b\",2]"s)), "[1,\"a\"]");
}

TEST(Json, KeepsEveryMemberThatWasCompleteBeforeACut) {
    const std::string document =
        R"({ "size": { "width": 1920, "loop": false }, "scenes": [{"id": "a\\\u00e9\n", "start": -1.5e-3}, []],
            "volume": 0.12345678901234567890,"last": [true, [[["deep"]]]] })";
    size_t seen = 0;
    for (size_t length = 0; length <= document.size(); ++length) {
        const std::string cut = document.substr(0, length); // apart, so that sanitizers see a read past its end
        const char* cursor = cut.c_str();
        const size_t members = parseJson(cursor).members.size();
        EXPECT_TRUE(cursor <= cut.c_str() + length && members >= seen) << cut;
        seen = members;
    }
    EXPECT_EQ(seen, 4u);
}

TEST(Json, StopsAtTheGreatestDepth) {
    for (const std::string opening : {"[", "{\"a\":"}) {
        std::string text;
        for (int i = 0; i < 10000000; ++i) text += opening;
        const char* cursor = text.c_str();
        parseJson(cursor);
        EXPECT_EQ(cursor - text.c_str(), kJsonMaxDepth * opening.size());
    }
}

TEST(Json, ReadsNumbersAsStrtodDoes) {
    for (const char* text : {"-1.5e2",
                             "-0.0",
                             "+7",
                             "5.",
                             ".5",
                             ".",
                             "-",
                             "+-1",
                             "-.",
                             "e5",
                             "1e",
                             "1e+",
                             "1e-x",
                             "1.2.3",
                             "007",
                             "0x1F",
                             "-0x1.8p3",
                             "0x",
                             "0X1p-1074",
                             "-Infinity",
                             "infinite",
                             "-NaN",
                             "nan(12)",
                             "nan(1",
                             "1e22",
                             "1e23",
                             "1e-23",
                             "123456789012345e22",
                             "9999999999999999",
                             "9007199254740993",
                             "1e308",
                             "1e309",
                             "5e-324",
                             "1e-400",
                             "1e0000000000000000005",
                             "1e99999999999999999999",
                             "\v5"}) {
        expectAsStrtod(text);
    }
    expectAsStrtod("0." + std::string(70, '0') + "1e71");
    expectAsStrtod(std::string(1000000, '9') + "." + std::string(1000000, '9') + "e-1000000");

    std::mt19937 random(20240229);
    const auto upTo = [&](unsigned highest) { return static_cast<unsigned>(random() % (highest + 1)); };
    std::string text;
    const auto addDigits = [&] {
        for (unsigned i = upTo(11); i > 0; --i) text += static_cast<char>('0' + (upTo(3) == 0 ? 0 : upTo(9)));
    };
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        text = upTo(1) ? "-" : "";
        addDigits();
        if (upTo(3) > 0) text += '.', addDigits();
        if (upTo(2) == 0) text += 'e' + std::to_string(static_cast<int>(upTo(60)) - 30);
        expectAsStrtod(text);
    }
}

TEST(Json, LookUpsChainAndNeverConvert) {
    const JsonValue root = parseJson(R"({"a":1,"a":2,"s":"5","t":true,"list":[{"a":1}]})"s);
    EXPECT_EQ(getNumber(find(root, "a"), 7), 1);
    EXPECT_EQ(getNumber(find(find(root, "list"), "a"), 7), 7);
    EXPECT_EQ(getNumber(find(root, "s"), 7), 7);
    EXPECT_EQ(getString(find(root, "a"), "x"), "x");
    const std::pair<const char*, int32_t> whole[] = {
        {"-1919.9", -1919}, {"2147483648", INT32_MAX}, {"-1e300", INT32_MIN}, {"nan", 42}, {"-1e999", 42}, {"inf", 42},
        {"true", 42}};
    for (const auto& [number, wanted] : whole) EXPECT_EQ(getInt(parseJson(std::string(number)), 42), wanted) << number;
}

TEST(Json, InfiniteNumbersTakeTheEndOfTheirRangeWhereItHasOne) {
    const struct {
        const char* number;
        float inRange, atLeast, anywhere; // 1..5, 1.., all
    } cases[] = {
        {"1e999", 5, 3, 3}, {"-inf", 1, 1, 3}, {"1e39", 5, 3, 3}, {"nan", 3, 3, 3},
        {"\"9\"", 3, 3, 3}, {"9", 5, 9, 9},    {"-9", 1, 1, -9},
    };
    for (const auto& c : cases) {
        const JsonValue value = parseJson(std::string(c.number));
        EXPECT_EQ(getBounded(value, 3, 1, 5), c.inRange) << c.number;
        EXPECT_EQ(getBounded(value, 3, 1, kNoBound), c.atLeast) << c.number;
        EXPECT_EQ(getFinite(value, 3), c.anywhere) << c.number;
    }
    EXPECT_EQ(getBounded({}, 0, 1, 5), 1);
}

TEST(Json, WhatALimitLeavesOutIsSaid) {
    // A list that takes nearly all of the memory there is, and what follows it.
    std::string text = "{\"a\": [0";
    const size_t most = size_t{1} << 21; // doubled once more it would be too large
    static_assert((size_t{1} << 21) * sizeof(JsonValue) < kJsonMaxBytes &&
                  (size_t{1} << 22) * sizeof(JsonValue) > kJsonMaxBytes);
    for (size_t i = 1; i < most; ++i) text += ",0";
    const LogCapture log;
    EXPECT_EQ(find(parseJsonFile((text + "], \"b\": 1}").c_str(), "show.json"), "b").number, 1);
    EXPECT_EQ(log.text(), "");
    const JsonValue cut = parseJsonFile((text + ",\n,], \"b\": 1}").c_str(), "show.json");
    EXPECT_EQ(find(cut, "a").items.size(), most);
    EXPECT_EQ(cut.members.size(), 1u);
    parseJsonFile(std::string(kJsonMaxDepth + 1, '[').c_str(), "deep.json");
    EXPECT_EQ(log.text(), "[WARN] show.json: left out from line 2, byte " + std::to_string(text.size() + 3) +
                              " on: its values take more than 256 MB\n"
                              "[WARN] deep.json: left out from line 1, byte 512 on: nested deeper than 512 lists and "
                              "objects\n");
}

TEST(Log, RecordedLinesAreSaidAgainAndOnceLinesOnce) {
    const LogCapture log;
    LogRecord record;
    recordLog(&record, true);
    logLine("[A]\x1B\n");
    logOnce("key", "[B]\n");
    EXPECT_EQ(log.text(), "");
    recordLog(nullptr);
    logLine("[C]\n");
    logAgain(record);
    logOnce("key", "[B]\n");
    EXPECT_EQ(log.text(), "[C]\n[A]?\n[B]\n");
    logAgain(record);
    EXPECT_EQ(log.text(), "[C]\n[A]?\n[B]\n[A]?\n");
    forgetOnce();
}

TEST(Log, MasksControlCharactersAndKeepsLongMessagesWhole) {
    const LogCapture log;
    logLine("[A] %s%c\n",
            "\x1B[31mred\r\x7F"
            "b\xC2\x9B"
            "c\t\xC3\xA9 \xC2\xA0",
            '\0');
    std::string expected = "[A] ?[31mred??b??c\t\xC3\xA9 \xC2\xA0?\n";
    for (const size_t size : {1023u, 1024u, 100000u}) { // the first has room on the stack
        logLine("%s", std::string(size, 'x').c_str());
        expected += std::string(size, 'x');
    }
    EXPECT_EQ(log.text(), expected);
}

TEST(Text, FoldsAsciiLettersOnly) {
    EXPECT_EQ(toLower("AZ@[`{ \xC3\x89"), "az@[`{ \xC3\x89");
    EXPECT_TRUE(lessIgnoringCase("z", "\xC3\xA9")); // bytes above 127 come last, whatever sign char has
}

} // namespace
