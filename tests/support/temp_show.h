// A show's folder that lives as long as a test.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

// A path as the system writes it, from one with slashes.
inline std::string nativePath(std::string path) {
    for (char& c : path) {
        if (c == '/') c = static_cast<char>(std::filesystem::path::preferred_separator);
    }
    return path;
}

class TempShow {
public:
    TempShow() {
        std::random_device random;
        const std::string name = "/quillon-show-" + std::to_string(random()) + std::to_string(random());
        std::string parent = std::filesystem::temp_directory_path().string();
        if (parent.ends_with(nativePath("/"))) parent.pop_back();
        baseDir = nativePath(parent + name);
        EXPECT_TRUE(std::filesystem::create_directory(baseDir)) << baseDir;
    }
    ~TempShow() {
        std::error_code error;
        std::filesystem::remove_all(baseDir, error);
    }
    TempShow(const TempShow&) = delete;
    TempShow& operator=(const TempShow&) = delete;

    std::string path(const std::string& relative) const { return nativePath(baseDir + "/" + relative); }

    // Writes a file, with the directories around it, and returns its path.
    std::string write(const std::string& relative, const std::string& bytes) const {
        const std::string name = path(relative);
        const std::filesystem::path file(std::u8string(name.begin(), name.end()));
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
        return name;
    }

    std::string baseDir; // without a trailing slash
};
