// SPDX-License-Identifier: MIT
// Every camera of the standard rig in every pixel type, at the real frame rate. Its
// scene has a pure red corner at the top left, which tells order and alignment.
#include <gtest/gtest.h>

#include <array>
#include <ostream>

#include "tests/border/support/border_test.h"

namespace {

// The luminance of pure red.
constexpr std::uint8_t greyOfRed = 76;

struct Case {
    std::int32_t camera;
    const char* name;
    const char* pixelFormat;
    std::uint32_t width;
    std::uint32_t height;
    // The first two pixels of the first two rows.
    std::array<std::uint8_t, 4> corner;
};

void PrintTo(const Case& tested, std::ostream* stream) {
    *stream << tested.name << " in " << tested.pixelFormat;
}

class StandardRig : public CBorderTest, public ::testing::WithParamInterface<Case> {
protected:
    void SetUp() override {
        CBorderTest::SetUp();
        control().chooseRig("standard");
        control().setClock(VIRTUAL_CAMERAS_CLOCK_REAL);
    }

    static void grab(const CHostChannel& camera, CHostMemory& memory) {
        ASSERT_EQ(camera.start(), accepted());
        ASSERT_TRUE(camera.waitForFrame());
        EXPECT_EQ(camera.copy(memory), done());
        EXPECT_EQ(camera.stop(), accepted());
    }
};

class StandardRigBytes : public StandardRig {};

TEST_P(StandardRigBytes, FirstPixelsAreTheScenes) {
    const Case& expected = GetParam();
    const CHostChannel camera = channel(expected.camera);
    ASSERT_STREQ(camera.record().deviceName, expected.name);
    ASSERT_EQ(camera.set("pixelformat", expected.pixelFormat), accepted());
    ImageInfo image{};
    ASSERT_EQ(camera.imageInfo(&image), done());
    ASSERT_EQ(image.width, static_cast<std::int32_t>(expected.width));
    ASSERT_EQ(image.height, static_cast<std::int32_t>(expected.height));

    CHostMemory memory(expected.width * expected.height);
    grab(camera, memory);
    const std::array<std::uint8_t, 4> corner = {memory[0], memory[1], memory[expected.width],
                                                memory[expected.width + 1]};
    EXPECT_EQ(corner, expected.corner);
    EXPECT_EQ(control().misuses(), 0U) << control().lastMisuse();
}

constexpr std::array<std::uint8_t, 4> allGrey = {greyOfRed, greyOfRed, greyOfRed, greyOfRed};
// Red filters behind a mosaic that begins green, red / blue, green: what hosts expect.
constexpr std::array<std::uint8_t, 4> redInFirstRow = {0, 255, 0, 0};
// And behind one that begins green, blue / red, green: a sensor not shifted.
constexpr std::array<std::uint8_t, 4> redInSecondRow = {0, 0, 255, 0};

INSTANTIATE_TEST_SUITE_P(
    , StandardRigBytes,
    ::testing::Values(Case{0, "SIM Mono 23", "mono8", 1280, 960, allGrey},
                      Case{0, "SIM Mono 23", "raw8", 1280, 960, allGrey},
                      Case{1, "SIM Colour 5", "mono8", 640, 480, allGrey},
                      Case{1, "SIM Colour 5", "raw8", 640, 480, redInFirstRow},
                      Case{2, "SIM Colour 1", "mono8", 640, 480, redInSecondRow},
                      Case{2, "SIM Colour 1", "raw8", 640, 480, redInFirstRow},
                      Case{3, "QRM 52", "mono8", 640, 480, redInFirstRow},
                      Case{3, "QRM 52", "raw8", 640, 480, redInFirstRow},
                      Case{4, "SIM Frame Grabber", "mono8", 768, 576, redInSecondRow},
                      Case{4, "SIM Frame Grabber", "raw8", 768, 576, redInFirstRow}));

class StandardRigColour : public StandardRig {};

// Rows come bottom first, so that the top left corner begins the last row.
TEST_P(StandardRigColour, TopLeftPixelStandsInTheLastRowAsBlueGreenRed) {
    const Case& expected = GetParam();
    const CHostChannel camera = channel(expected.camera);
    ASSERT_STREQ(camera.record().deviceName, expected.name);
    ASSERT_EQ(camera.set("pixelformat", expected.pixelFormat), accepted());

    CHostMemory memory(std::size_t{3} * expected.width * expected.height);
    grab(camera, memory);
    const std::size_t lastRow = std::size_t{3} * expected.width * (expected.height - 1);
    const std::array<std::uint8_t, 4> corner = {memory[lastRow], memory[lastRow + 1],
                                                memory[lastRow + 2], memory[lastRow + 3]};
    EXPECT_EQ(corner, expected.corner);
}

INSTANTIATE_TEST_SUITE_P(
    , StandardRigColour,
    ::testing::Values(Case{0, "SIM Mono 23", "rgb24", 1280, 960, allGrey},
                      Case{1, "SIM Colour 5", "rgb24", 640, 480, {0, 0, 255, 0}},
                      Case{2, "SIM Colour 1", "rgb24", 640, 480, {0, 0, 255, 0}},
                      Case{3, "QRM 52", "rgb24", 640, 480, {0, 0, 255, 0}},
                      Case{4, "SIM Frame Grabber", "rgb24", 768, 576, {0, 0, 255, 0}}));

}  // namespace
