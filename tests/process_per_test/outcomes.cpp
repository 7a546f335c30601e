// SPDX-License-Identifier: MIT
// Tests that end in every way, to try main.cpp on.
#include <gtest/gtest.h>

#include <cstdlib>

TEST(Outcomes, Fail) {
    FAIL();
}

TEST(Outcomes, Pass) {
    SUCCEED();
}

TEST(Outcomes, Skip) {
    GTEST_SKIP();
}

TEST(Outcomes, DISABLED_Fail) {
    FAIL();
}

TEST(Outcomes, Crash) {
    std::abort();
}

TEST(Outcomes, PassBehindACrash) {
    SUCCEED();
}
