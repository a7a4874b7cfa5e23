#include "foundation/log.h"

#include <cstdarg>
#include <string>

namespace {

FILE* currentStream = nullptr; // null: standard output, which is no constant that could stand here
bool isHeld = false;
std::string heldMessages;

FILE* logStream() {
    return currentStream ? currentStream : stdout;
}

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

void writeMessage(FILE* stream, char* text, size_t size) {
    maskControlBytes(text, size);
    if (isHeld && stream == logStream()) {
        heldMessages.append(text, size);
        return;
    }
    std::fwrite(text, 1, size, stream);
    std::fflush(stream);
}

void printMessage(FILE* stream, const char* format, va_list arguments) {
    char buffer[1024];
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    if (length >= static_cast<int>(sizeof buffer)) {
        // vsnprintf also writes a terminator, which a string keeps room for after its last byte.
        std::string message(static_cast<size_t>(length), '\0');
        std::vsnprintf(message.data(), message.size() + 1, format, again);
        writeMessage(stream, message.data(), message.size());
    } else if (length > 0) {
        writeMessage(stream, buffer, static_cast<size_t>(length));
    }
    va_end(again);
}

} // namespace

void setLogStream(FILE* stream) {
    currentStream = stream;
}

void holdLog() {
    isHeld = true;
}

void releaseLog() {
    isHeld = false;
    std::fwrite(heldMessages.data(), 1, heldMessages.size(), logStream());
    std::fflush(logStream());
    heldMessages = {};
}

void logLine(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    printMessage(logStream(), format, arguments);
    va_end(arguments);
}

void printError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    printMessage(stderr, format, arguments);
    va_end(arguments);
}
