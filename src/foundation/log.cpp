#include "foundation/log.h"

#include <algorithm>
#include <cstdarg>
#include <unordered_set>

namespace {

struct LogState {
    FILE* stream = nullptr;               // null: standard output, which is no constant that could stand here
    LogRecord* record = nullptr;          // not owned
    bool isSilent = false;                // lines go to the record alone
    std::unordered_set<std::string> said; // keys of logOnce
};
LogState state;

bool isControl(unsigned char c) {
    return (c < 32 && c != '\n' && c != '\t') || c == 127;
}

void maskControlBytes(char* text, size_t size) {
    unsigned char previous = 0;
    for (size_t i = 0; i < size; ++i) {
        unsigned char c = static_cast<unsigned char>(text[i]);
        // U+0080 to U+009F in UTF-8: U+009B opens an escape sequence just as ESC [ does.
        bool upperControl = previous == 0xC2 && c >= 0x80 && c <= 0x9F;
        if (upperControl) text[i - 1] = '?';
        if (upperControl || isControl(c)) text[i] = '?';
        previous = c;
    }
}

std::string formatMessage(const char* format, va_list arguments) {
    char buffer[1024];
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    std::string message(buffer, static_cast<size_t>(std::clamp(length, 0, static_cast<int>(sizeof buffer) - 1)));
    if (length >= static_cast<int>(sizeof buffer)) {
        // vsnprintf also writes a terminator, which a string keeps room for after its last byte.
        message.resize(static_cast<size_t>(length));
        std::vsnprintf(message.data(), message.size() + 1, format, again);
    }
    va_end(again);
    maskControlBytes(message.data(), message.size());
    return message;
}

void write(FILE* stream, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

FILE* logStream() {
    return state.stream ? state.stream : stdout;
}

bool isFirst(const std::string& onceKey) {
    return onceKey.empty() || state.said.insert(onceKey).second;
}

void say(std::string message, const std::string& onceKey) {
    if (!state.isSilent && isFirst(onceKey)) write(logStream(), message);
    if (state.record) state.record->lines.push_back({std::move(message), onceKey});
}

} // namespace

void setLogStream(FILE* stream) {
    state.stream = stream;
}

void logLine(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    say(formatMessage(format, arguments), {});
    va_end(arguments);
}

void logOnce(const std::string& key, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    say(formatMessage(format, arguments), key);
    va_end(arguments);
}

void forgetOnce() {
    state.said.clear();
}

void recordLog(LogRecord* record, bool isSilent) {
    state.record = record;
    state.isSilent = record && isSilent;
}

void logAgain(const LogRecord& record) {
    std::string text;
    for (const LogRecord::Line& line : record.lines) {
        if (isFirst(line.onceKey)) text += line.text;
    }
    write(logStream(), text);
}

void printError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    write(stderr, formatMessage(format, arguments));
    va_end(arguments);
}
