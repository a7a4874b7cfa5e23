// A show's folder that lives as long as a test, and a process of its own for what loads once per process.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

class TempShow {
public:
    TempShow() {
        std::string pattern = (std::filesystem::temp_directory_path() / "quillon-show-XXXXXX").string();
        const char* made = mkdtemp(pattern.data());
        EXPECT_NE(made, nullptr) << pattern;
        baseDir = made ? made : ".";
    }
    ~TempShow() {
        std::error_code error;
        std::filesystem::remove_all(baseDir, error);
    }
    TempShow(const TempShow&) = delete;
    TempShow& operator=(const TempShow&) = delete;

    std::string path(const std::string& relative) const { return baseDir + "/" + relative; }

    // Writes a file, with the directories around it, and returns its path.
    std::string write(const std::string& relative, const std::string& bytes) const {
        const std::filesystem::path file = path(relative);
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
        return file.string();
    }

    std::string baseDir; // without a trailing slash
};

// Runs the checks in a child process; the ones that fail there fail the test here.
template <class Checks> void runInChild(Checks checks) {
    const auto failures = [] {
        return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
    };
    std::fflush(nullptr);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const int before = failures();
        checks();
        std::fflush(nullptr);
        _exit(failures() > before ? 1 : 0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << "the child process failed; its checks are listed above";
}
