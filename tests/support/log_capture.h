// Catches the log for as long as it lives.
#pragma once

#include "foundation/log.h"

#include <cstdio>
#include <filesystem>
#include <random>
#include <string>

class LogCapture {
public:
    // A name of its own: Wine's tmpfile gives two programs that ask for one at the same time the same file.
    LogCapture() {
        std::random_device random;
        const std::string name = "quillon-log-" + std::to_string(random()) + std::to_string(random());
        path = std::filesystem::temp_directory_path() / name;
        file = std::fopen(path.string().c_str(), "w+b");
        if (!file) std::perror(path.string().c_str());
        setLogStream(file);
    }
    ~LogCapture() {
        setLogStream(nullptr);
        std::fclose(file);
        std::error_code error;
        std::filesystem::remove(path, error);
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
    std::filesystem::path path;
    std::FILE* file;
};
