// A process of its own for what loads once per process.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>

#include <sys/wait.h>
#include <unistd.h>

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
