// SPDX-License-Identifier: MIT
#include "host/picture_writer.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "velmora/host_blocks.h"

namespace camhost {
namespace {

class PictureWriter : public testing::Test {
protected:
    PictureWriter() {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        m_folder =
            std::filesystem::temp_directory_path() / (std::string("camhost_") + test->name());
        std::filesystem::remove_all(m_folder);
        std::filesystem::create_directories(m_folder);
    }
    ~PictureWriter() override { std::filesystem::remove_all(m_folder); }

    Picture picture(const std::string& name, std::uint8_t value) const {
        return {(m_folder / name).string(),
                PictureFormat::Raw,
                {2, 1, HOST_PIXEL_MONO8},
                {value, value},
                std::nullopt,
                {}};
    }

    std::filesystem::path m_folder;
};

TEST_F(PictureWriter, EveryPictureIsWrittenOnceFinished) {
    CPictureWriter writer(2, 3);
    for (int i = 0; i < 40; ++i) {
        writer.add(picture("p" + std::to_string(i), static_cast<std::uint8_t>('A' + i)));
    }
    writer.finish();
    EXPECT_EQ(writer.waiting(), 0U);
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(readTextFile((m_folder / ("p" + std::to_string(i))).string()),
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
    EXPECT_TRUE(std::filesystem::is_empty(m_folder));
}

}  // namespace
}  // namespace camhost
