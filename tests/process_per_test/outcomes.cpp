// SPDX-License-Identifier: MIT
// Tests that pass, fail and crash, to try main.cpp on.
#include <gtest/gtest.h>

#include <cstdlib>

TEST(Outcomes, Fail) {
    FAIL();
}

TEST(Outcomes, Pass) {
    SUCCEED();
}

TEST(Outcomes, Crash) {
    std::abort();
}

TEST(Outcomes, PassBehindACrash) {
    SUCCEED();
}
