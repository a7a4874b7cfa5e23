// Byte-wise text helpers: letter case in the C locale, parts of texts, printable names.
#pragma once

#include <string>
#include <string_view>

// ASCII letters only: names in shows are compared the same way on every system and in every locale.
char toLower(char c);
std::string toLower(std::string_view text);

bool equalsIgnoringCase(std::string_view a, std::string_view b);
bool lessIgnoringCase(std::string_view a, std::string_view b);
bool endsWith(std::string_view text, std::string_view tail);
bool containsText(std::string_view text, std::string_view part);

// The text with control bytes as "?": a name of a show's must not begin a line of its own in the log.
std::string printableName(std::string text);

// For log lines: the text itself, or "(none)" when it is empty. Valid as long as `text` is.
const char* orNone(const std::string& text);
