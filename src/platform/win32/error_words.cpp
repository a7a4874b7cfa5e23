#include "platform/win32/error_words.h"

#include <windows.h>

std::string errorWords(unsigned long error) {
    char text[512] = {};
    const DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const DWORD length = FormatMessageA(flags, nullptr, error, 0, text, sizeof text, nullptr);
    std::string words(text, length);
    words.erase(words.find_last_not_of("\r\n .") + 1);
    return words.empty() ? "error " + std::to_string(error) : words;
}

std::string lastErrorWords() {
    return errorWords(GetLastError());
}
