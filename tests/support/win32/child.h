// A process of its own for what loads once per process.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include <process.h>

// Runs the checks in a child process; the ones that fail there fail the test here. The child is this program once
// more with this test alone: of all such checks in the test it runs those whose turn it is.
template <class Checks> void runInChild(Checks checks) {
    static const char* const kVariable = "QUILLON_CHILD";
    static std::string test;
    static int turn = 0;
    const testing::TestInfo& info = *testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = std::string(info.test_suite_name()) + "." + info.name();
    turn = name == test ? turn + 1 : 1;
    test = name;
    if (const char* mine = std::getenv(kVariable)) {
        if (std::stoi(mine) == turn) checks();
        return;
    }
    const std::string program = testing::internal::GetArgvs().front();
    const std::string quoted = "\"" + program + "\"", filter = "--gtest_filter=" + name;
    _putenv_s(kVariable, std::to_string(turn).c_str());
    const intptr_t code = _spawnl(_P_WAIT, program.c_str(), quoted.c_str(), filter.c_str(), "--gtest_brief=1", nullptr);
    _putenv_s(kVariable, "");
    EXPECT_EQ(code, 0) << "the child process failed; its checks are listed above";
}
