#include "foundation/text.h"

#include <algorithm>

char toLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string toLower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) c = toLower(c);
    return lower;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char left, char right) { return toLower(left) == toLower(right); });
}

bool lessIgnoringCase(std::string_view a, std::string_view b) {
    // As unsigned bytes: whether char is signed differs between processors, the order of names must not.
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char left, char right) {
        return static_cast<unsigned char>(toLower(left)) < static_cast<unsigned char>(toLower(right));
    });
}

bool endsWith(std::string_view text, std::string_view tail) {
    return text.ends_with(tail);
}

bool containsText(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

std::string printableName(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 32 || c == 127) c = '?';
    }
    return text;
}

const char* orNone(const std::string& text) {
    return text.empty() ? "(none)" : text.c_str();
}
