// Catches the log for as long as it lives.
#pragma once

#include "foundation/log.h"

#include <cstdio>
#include <string>

class LogCapture {
public:
    LogCapture() : file(std::tmpfile()) { setLogStream(file); }
    ~LogCapture() {
        setLogStream(nullptr);
        std::fclose(file);
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    // All that was logged so far.
    std::string text() const {
        std::string all;
        std::rewind(file);
        for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) all += static_cast<char>(c);
        std::fseek(file, 0, SEEK_END);
        return all;
    }

private:
    std::FILE* file;
};
