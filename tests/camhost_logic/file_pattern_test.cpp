// SPDX-License-Identifier: MIT
#include "camhost/pictures/file_pattern.h"

#include <gtest/gtest.h>

namespace camhost {
namespace {

std::string nameOf(const char* pattern, std::uint64_t number) {
    std::string reason;
    const auto parsed = CFilePattern::parse(pattern, reason);
    return parsed ? parsed->name(number) : "refused: " + reason;
}

TEST(FilePattern, NumbersAreFilledIn) {
    EXPECT_EQ(nameOf("shot_%04d.png", 7), "shot_0007.png");
    EXPECT_EQ(nameOf("shot_%4d.png", 7), "shot_   7.png");
    EXPECT_EQ(nameOf("%d", 12345), "12345");
    EXPECT_EQ(nameOf("a%02d", 123), "a123");
    EXPECT_EQ(nameOf("100%%_%d", 1), "100%_1");
    EXPECT_EQ(nameOf("plain.png", 9), "plain.png");
}

TEST(FilePattern, OnlyOneNumberAndNothingElse) {
    EXPECT_EQ(nameOf("%s", 1), "refused: only %d, %4d, %04d and %% may follow a percent sign");
    EXPECT_EQ(nameOf("%n%d", 1), "refused: only %d, %4d, %04d and %% may follow a percent sign");
    EXPECT_EQ(nameOf("x%", 1), "refused: only %d, %4d, %04d and %% may follow a percent sign");
    EXPECT_EQ(nameOf("%d_%d", 1), "refused: only one number may stand in it");
    EXPECT_EQ(nameOf("%099d", 1), "refused: the number can have at most 18 digits");
    EXPECT_EQ(nameOf("%99999999999999999999d", 1),
              "refused: the number can have at most 18 digits");
    EXPECT_EQ(nameOf("", 1), "refused: it is empty");
}

}  // namespace
}  // namespace camhost
