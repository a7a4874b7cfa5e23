// A process of its own for what loads once per process: googletest's, made for checks that end theirs.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

// Runs the checks in a child process; when one fails there, the test fails here with what it said. Suites that do so
// are called ...DeathTest: those run first, before a driver's threads are there, which a fork would leave behind.
template <class Checks>
void runInChild(Checks checks) {
    const auto runAndExit = [&] {
        const testing::TestResult& result = *testing::UnitTest::GetInstance()->current_test_info()->result();
        const int before = result.total_part_count();
        checks();
        for (int i = before; i < result.total_part_count(); ++i)
            std::cerr << result.GetTestPartResult(i).message() << "\n";
        std::_Exit(result.total_part_count() - before);
    };
    EXPECT_EXIT(runAndExit(), testing::ExitedWithCode(0), "");
}
