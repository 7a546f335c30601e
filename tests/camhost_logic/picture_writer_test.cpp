// SPDX-License-Identifier: MIT
#include "camhost/pictures/picture_writer.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/camhost_logic/camhost_fixture.h"
#include "velmora/host_blocks.h"

namespace camhost {
namespace {

class PictureWriter : public testing::Test {
protected:
    Picture picture(const std::string& name, std::uint8_t value) const {
        return {m_folder.file(name), PictureFormat::Raw, {2, 1, HOST_PIXEL_MONO8},
                {value, value},      std::nullopt,       {}};
    }

    test::CTestFolder m_folder;
};

TEST_F(PictureWriter, EveryPictureIsWrittenOnceFinished) {
    CPictureWriter writer(2, 3);
    for (int i = 0; i < 40; ++i) {
        writer.add(picture("p" + std::to_string(i), static_cast<std::uint8_t>('A' + i)));
    }
    writer.finish();
    EXPECT_EQ(writer.waiting(), 0U);
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(m_folder.content("p" + std::to_string(i)),
                  std::string(2, static_cast<char>('A' + i)));
    }
}

TEST_F(PictureWriter, AFailureComesOutAtTheEnd) {
    CPictureWriter writer(2, 1);
    writer.add(picture("missing/p", 'A'));
    EXPECT_THROW(writer.finish(), Failure);
}

TEST_F(PictureWriter, AFailureEndsTheWaitForAPlace) {
    CPictureWriter writer(1, 1);
    const auto addMany = [&] {
        for (int i = 0; i < 1000; ++i) {
            writer.add(picture("missing/p", 'A'));
        }
    };
    EXPECT_THROW(addMany(), Failure);
}

TEST_F(PictureWriter, WhatWaitsIsLeftOutWithoutAnEnd) {
    { CPictureWriter writer(4, 1); }
    EXPECT_TRUE(std::filesystem::is_empty(m_folder.path()));
}

}  // namespace
}  // namespace camhost
