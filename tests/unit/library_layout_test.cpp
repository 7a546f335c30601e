// SPDX-License-Identifier: MIT
// The layouts at the capture library's border are those of every ABI.
#include "tests/unit/library_layout.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

TEST(LibraryLayout, IsTheApprovedOne) {
    std::ifstream file(VELMORA_SOURCE_DIR "/tests/golden/library_layout.txt");
    const std::string approved{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(libraryLayout(), approved);
}
