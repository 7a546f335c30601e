// SPDX-License-Identifier: MIT
// The out-of-range failure by whose text hosts know it.
#include "platform/checked_access.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

// The text of the failure, or what was found instead.
std::string failureText(const std::vector<int>& items, std::int64_t index) {
    try {
        return "found " + std::to_string(checkedAt(items, index));
    } catch (const std::out_of_range& failure) {
        return failure.what();
    }
}

TEST(CheckedAccess, EveryIndexBelowTheSizeGivesItsItem) {
    const std::vector<int> items = {10, 20, 30};
    EXPECT_EQ(10, checkedAt(items, 0));
    EXPECT_EQ(20, checkedAt(items, 1));
    EXPECT_EQ(30, checkedAt(items, 2));
}

TEST(CheckedAccess, GivesTheItemItselfAndNoCopy) {
    const std::vector<int> items = {10, 20};
    EXPECT_EQ(&items[1], &checkedAt(items, 1));
}

TEST(CheckedAccess, IndexFromTheSizeOnIsOutOfRange) {
    const std::vector<int> items = {10, 20, 30};
    EXPECT_EQ("invalid vector<T> subscript", failureText(items, 3));
    EXPECT_EQ("invalid vector<T> subscript", failureText(items, 4));
    EXPECT_EQ("invalid vector<T> subscript", failureText(items, 4294967296));
    EXPECT_EQ("invalid vector<T> subscript",
              failureText(items, std::numeric_limits<std::int64_t>::max()));
}

TEST(CheckedAccess, NegativeIndexIsOutOfRange) {
    const std::vector<int> items = {10, 20, 30};
    EXPECT_EQ("invalid vector<T> subscript", failureText(items, -1));
    EXPECT_EQ("invalid vector<T> subscript", failureText(items, -2147483648LL));
    EXPECT_EQ("invalid vector<T> subscript",
              failureText(items, std::numeric_limits<std::int64_t>::min()));
}

TEST(CheckedAccess, EmptyListHasNoItemAtAll) {
    EXPECT_EQ("invalid vector<T> subscript", failureText({}, 0));
    EXPECT_EQ("invalid vector<T> subscript", failureText({}, -1));
}

}  // namespace
