// SPDX-License-Identifier: MIT
// Frames as they reach the host's memory, by value: every pixel tells its frame, row,
// column and colour plane.
#include <gtest/gtest.h>

#include <deque>

#include "tests/border/support/border_test.h"
#include "tests/border/support/message_boxes.h"
#include "virtual_cameras/scenes/scene_code.h"

namespace {

using virtual_cameras::counterValue;
using virtual_cameras::Plane;

constexpr std::uint32_t width = 64;
constexpr std::uint32_t height = 48;

// The colours of a picture's first two rows and columns, repeated over it.
struct Pattern {
    Plane planes[2][2];
};
constexpr Pattern grey = {{{Plane::grey, Plane::grey}, {Plane::grey, Plane::grey}}};
constexpr Pattern greenBlueRedGreen = {{{Plane::green, Plane::blue}, {Plane::red, Plane::green}}};
constexpr Pattern greenRedBlueGreen = {{{Plane::green, Plane::red}, {Plane::blue, Plane::green}}};

class Frames : public CBorderTest {
protected:
    void SetUp() override {
        CBorderTest::SetUp();
        control().setClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    }

    // One frame in memory of exactly `size` bytes.
    const CHostMemory& grab(const CHostChannel& camera, std::size_t size) {
        CHostMemory& memory = m_frames.emplace_back(size);
        EXPECT_EQ(camera.start(), accepted());
        EXPECT_TRUE(camera.waitForFrame());
        EXPECT_EQ(camera.copy(memory), done());
        EXPECT_EQ(camera.stop(), accepted());
        return memory;
    }

    // The number in columns 4 to 7, the first of which is at `place`.
    static std::uint32_t frameAt(const CHostMemory& memory, std::size_t place,
                                 std::size_t step = 1) {
        const std::uint8_t four[4] = {memory[place], memory[place + step], memory[place + 2 * step],
                                      memory[place + 3 * step]};
        return virtual_cameras::counterFrame(four);
    }

    static void expectPicture(const CHostMemory& memory, std::uint32_t pictureWidth,
                              std::uint32_t pictureHeight, const Pattern& pattern) {
        const std::uint32_t frame = frameAt(memory, 4);
        EXPECT_GE(frame, 1U);
        for (std::uint32_t row = 0; row < pictureHeight; ++row) {
            for (std::uint32_t column = 0; column < pictureWidth; ++column) {
                ASSERT_EQ(memory[row * pictureWidth + column],
                          counterValue(frame, row, column, pattern.planes[row % 2][column % 2]))
                    << "row " << row << " column " << column;
            }
        }
    }

    // Row and column 0 are gone, and the last row and column are the host's own.
    static void expectShiftedPicture(const CHostMemory& memory, std::uint32_t pictureWidth,
                                     std::uint32_t pictureHeight, const Pattern& pattern) {
        const std::uint32_t frame = frameAt(memory, 3);
        EXPECT_GE(frame, 1U);
        for (std::uint32_t row = 0; row < pictureHeight; ++row) {
            for (std::uint32_t column = 0; column < pictureWidth; ++column) {
                const bool isWritten = row + 1 < pictureHeight && column + 1 < pictureWidth;
                const std::uint8_t expected =
                    isWritten ? counterValue(frame, row + 1, column + 1,
                                             pattern.planes[row % 2][column % 2])
                              : CHostMemory::filler;
                ASSERT_EQ(memory[row * pictureWidth + column], expected)
                    << "row " << row << " column " << column;
            }
        }
    }

    // Bottom row first; blue, green, red.
    static void expectColourPicture(const CHostMemory& memory, std::uint32_t pictureWidth,
                                    std::uint32_t pictureHeight, const Plane (&planes)[3]) {
        const std::uint32_t frame = frameAt(memory, 12, 3);
        EXPECT_GE(frame, 1U);
        std::size_t place = 0;
        for (std::uint32_t line = 0; line < pictureHeight; ++line) {
            const std::uint32_t row = pictureHeight - 1 - line;
            for (std::uint32_t column = 0; column < pictureWidth; ++column) {
                for (const Plane plane : planes) {
                    ASSERT_EQ(memory[place++], counterValue(frame, row, column, plane))
                        << "row " << row << " column " << column;
                }
            }
        }
    }

private:
    std::deque<CHostMemory> m_frames;
};

TEST_F(Frames, GreyCameraStartsWithMono8AndArrivesUnchanged) {
    const CHostChannel camera = channel(0);
    EXPECT_EQ(camera.get("pixelformat"), accepted("Mono8"));
    expectPicture(grab(camera, 96 * 64), 96, 64, grey);
}

TEST_F(Frames, GreyCameraInRaw8IsShiftedByOneRowAndColumn) {
    expectShiftedPicture(grab(channelIn(0, "raw8"), 96 * 64), 96, 64, grey);
}

TEST_F(Frames, GreyCameraInRgb24ArrivesBottomUp) {
    expectColourPicture(grab(channelIn(0, "rgb24"), 96 * 64 * 3), 96, 64,
                        {Plane::grey, Plane::grey, Plane::grey});
}

TEST_F(Frames, ColourCameraStartsWithRaw8RebuiltTopDown) {
    const CHostChannel camera = channel(1);
    EXPECT_EQ(camera.get("pixelformat"), accepted("Raw8"));
    expectPicture(grab(camera, width * height), width, height, greenRedBlueGreen);
}

TEST_F(Frames, ColourCameraInRgb24ArrivesBottomUp) {
    expectColourPicture(grab(channelIn(1, "rgb24"), width * height * 3), width, height,
                        {Plane::blue, Plane::green, Plane::red});
}

TEST_F(Frames, ColourCameraInMono8ArrivesGrey) {
    expectPicture(grab(channelIn(1, "mono8"), width * height), width, height, grey);
}

TEST_F(Frames, ColourCameraAtAGreyFormatStartsWithRaw8Shifted) {
    const CHostChannel camera = channel(2);
    EXPECT_EQ(camera.get("pixelformat"), accepted("Raw8"));
    // The sensor begins with green, blue / red, green.
    expectShiftedPicture(grab(camera, width * height), width, height, greenRedBlueGreen);
}

TEST_F(Frames, ColourCameraAtAGreyFormatInMono8IsNotShifted) {
    expectPicture(grab(channelIn(2, "mono8"), width * height), width, height, greenBlueRedGreen);
}

TEST_F(Frames, ColourCameraAtAGreyFormatInRgb24ArrivesBottomUp) {
    expectColourPicture(grab(channelIn(2, "rgb24"), width * height * 3), width, height,
                        {Plane::blue, Plane::green, Plane::red});
}

TEST_F(Frames, AnAlignedModelInRaw8ArrivesUnchanged) {
    const CHostChannel camera = channel(3);
    EXPECT_EQ(camera.get("pixelformat"), accepted("Raw8"));
    expectPicture(grab(camera, width * height), width, height, greenBlueRedGreen);
}

TEST_F(Frames, AnOddWidthInRaw8HasOneByteMorePerRow) {
    control().loadRig(R"toml([[camera]]
name = "Odd"
serial = "0DD"
formats = ["RGB32 (15x5)"]
scene = "counter")toml");
    const CHostChannel camera = channel(0);
    EXPECT_EQ(camera.get("pixelformat"), accepted("Raw8"));
    const CHostMemory& memory = grab(camera, 16 * 5);

    const std::uint32_t frame = frameAt(memory, 4);
    // The lines of memory are counted from the bottom of the picture: even ones, the
    // first and last among them, give blue and green, odd ones green and red.
    for (std::uint32_t row = 0; row < 5; ++row) {
        const bool isEven = row % 2 == 0;
        const Plane planes[2] = {isEven ? Plane::blue : Plane::green,
                                 isEven ? Plane::green : Plane::red};
        for (std::uint32_t column = 0; column < 15; ++column) {
            EXPECT_EQ(memory[row * 16 + column],
                      counterValue(frame, row, column, planes[column % 2]))
                << "row " << row << " column " << column;
        }
        // The extra byte is the next pixel in memory; after the last there is none.
        EXPECT_EQ(memory[row * 16 + 15], row == 0 ? 0 : counterValue(frame, row - 1, 0, planes[1]))
            << "row " << row;
    }
}

TEST_F(Frames, LaterFramesHaveLaterNumbers) {
    const CHostChannel camera = liveChannel(0);
    std::uint32_t last = 0;
    for (int i = 0; i < 20; ++i) {
        CHostMemory memory(96 * 64);
        ASSERT_TRUE(camera.waitForFrame());
        ASSERT_EQ(camera.copy(memory), done());
        expectPicture(memory, 96, 64, grey);
        EXPECT_GT(frameAt(memory, 4), last);
        last = frameAt(memory, 4);
    }
    EXPECT_EQ(camera.stop(), accepted());
}

TEST_F(Frames, CamerasDeliverSideBySide) {
    const CHostChannel greyCamera = channel(0);
    const CHostChannel colourCamera = channel(1);
    CHostMemory greyMemory(96 * 64);
    CHostMemory colourMemory(width * height);
    ASSERT_EQ(greyCamera.start(), accepted());
    ASSERT_EQ(colourCamera.start(), accepted());
    ASSERT_TRUE(greyCamera.waitForFrame());
    ASSERT_TRUE(colourCamera.waitForFrame());
    EXPECT_EQ(colourCamera.copy(colourMemory), done());
    EXPECT_EQ(greyCamera.copy(greyMemory), done());
    expectPicture(greyMemory, 96, 64, grey);
    expectPicture(colourMemory, width, height, greenRedBlueGreen);
}

TEST_F(Frames, AFrameIsCopiedOnce) {
    const CHostChannel camera = channel(0);
    CHostMemory memory(96 * 64);
    ASSERT_EQ(camera.start(), accepted());
    ASSERT_TRUE(camera.waitForFrame());
    EXPECT_EQ(camera.copy(memory), done());
    memory.refill();
    EXPECT_EQ(camera.copy(memory), noFrame());
    EXPECT_TRUE(memory.isUntouched());
}

TEST_F(Frames, WithoutAWaitThereIsNothingToCopy) {
    const CHostChannel camera = channel(0);
    CHostMemory memory(96 * 64);
    EXPECT_EQ(camera.copy(memory), noFrame());
    ASSERT_EQ(camera.start(), accepted());
    EXPECT_EQ(camera.copy(memory), noFrame());
    EXPECT_TRUE(memory.isUntouched());
}

TEST_F(Frames, AfterAStopThereIsNothingToCopy) {
    const CHostChannel camera = channel(0);
    CHostMemory memory(96 * 64);
    ASSERT_EQ(camera.start(), accepted());
    ASSERT_TRUE(camera.waitForFrame());
    EXPECT_EQ(camera.stop(), accepted());
    EXPECT_EQ(camera.copy(memory), noFrame());
    EXPECT_TRUE(memory.isUntouched());
}

TEST_F(Frames, ACopyToNowhereShowsTheBoxAndDropsTheFrame) {
    const CHostChannel camera = channel(0);
    CMessageBoxes boxes;
    CHostMemory memory(96 * 64);
    ASSERT_EQ(camera.start(), accepted());
    ASSERT_TRUE(camera.waitForFrame());
    EXPECT_EQ(camera.copy(nullptr), noFrame());
    EXPECT_EQ(boxes.take(), (std::vector<MessageBoxSeen>{
                                {L"Eror", L"rawMemory == NULL", false, false, false, {L"OK"}}}));
    EXPECT_EQ(camera.copy(memory), noFrame());
    EXPECT_TRUE(memory.isUntouched());
    EXPECT_TRUE(boxes.seen().empty());
}

TEST_F(Frames, ImageInfoDescribesWhatIsCopied) {
    struct Case {
        std::int32_t index;
        const char* pixelFormat;
        std::int32_t width;
        std::int32_t height;
        std::uint32_t pixelType;
    };
    for (const Case& expected :
         {Case{0, "mono8", 96, 64, 0}, Case{0, "raw8", 96, 64, 4}, Case{1, "rgb24", 64, 48, 7}}) {
        const CHostChannel camera = channel(expected.index);
        ASSERT_EQ(camera.set("pixelformat", expected.pixelFormat), accepted());
        ImageInfo image{};
        image.hostOwn = 0x12345678;
        image.reserved0 = image.reserved1 = image.regionLeft = image.regionTop = -1;
        EXPECT_EQ(camera.imageInfo(&image), done());
        EXPECT_EQ(image.hostOwn, 0x12345678U);
        EXPECT_EQ(image.width, expected.width);
        EXPECT_EQ(image.height, expected.height);
        EXPECT_EQ(image.lineWidth, expected.width);
        EXPECT_EQ(image.pixelType, expected.pixelType);
        EXPECT_EQ(image.regionLeft, 0);
        EXPECT_EQ(image.regionTop, 0);
        EXPECT_EQ(image.regionWidth, expected.width);
        EXPECT_EQ(image.regionHeight, expected.height);
        EXPECT_EQ(image.reserved0, 0);
        EXPECT_EQ(image.reserved1, 0);
    }
}

}  // namespace
