// SPDX-License-Identifier: MIT
// The description of the image that a host asks for.
#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

using ::testing::ElementsAre;

class ImageDescription : public CChannelTest {};

TEST_F(ImageDescription, FillsEveryFieldButTheHostsOwn) {
    loadRig(rigs::camera("SIM", "1", "\"Y800 (640x480)\""));
    CVideoChannel& channel = makeRecordedChannel();
    recordAll();
    CHostMemory memory(44);
    CHostText text;
    CHostStatus status;
    auto* image = static_cast<ImageInfo*>(static_cast<void*>(memory.data()));
    EXPECT_EQ(channel.GetImageInfo(text, image, status), 0);
    EXPECT_EQ(status.value(), 0U);
    EXPECT_TRUE(text.isUntouched());
    EXPECT_TRUE(memory.isUntouched(0, 4));
    EXPECT_THAT(memory.bytes(4, 40),
                ElementsAre(0x80, 2, 0, 0, 0xE0, 1, 0, 0, 0x80, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                            0, 0, 0, 0x80, 2, 0, 0, 0xE0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_THAT(
        library_log::lines(),
        ElementsAre("Grabber::isDevValid() -> true", "Grabber::getAcqSizeMaxX() -> 640",
                    "Grabber::getAcqSizeMaxY() -> 480", "Grabber::getAcqSizeMaxX() -> 640"));
}

TEST_F(ImageDescription, TellsThePixelType) {
    loadRig(rigs::color());
    CVideoChannel& channel = makeChannel();
    ImageInfo image{};
    CHostStatus status;
    EXPECT_EQ(channel.GetImageInfo(nullptr, &image, status), 0);
    EXPECT_EQ(image.pixelType, 4U);
    EXPECT_EQ(setProperty(channel, "pixelformat", "RGB24"), "");
    EXPECT_EQ(channel.GetImageInfo(nullptr, &image, status), 0);
    EXPECT_EQ(image.pixelType, 7U);
    EXPECT_EQ(setProperty(channel, "pixelformat", "Mono8"), "");
    EXPECT_EQ(channel.GetImageInfo(nullptr, &image, status), 0);
    EXPECT_EQ(image.pixelType, 0U);
}

TEST_F(ImageDescription, FollowsTheFormatBeforeTheStart) {
    loadRig(rigs::camera("SIM", "1", "\"Y800 (8x4)\", \"Y800 (16x2)\""));
    CVideoChannel& channel = makeChannel();
    EXPECT_EQ(setProperty(channel, "videoformat", "Y800 (8x4)"), "");
    ImageInfo image{};
    EXPECT_EQ(channel.GetImageInfo(nullptr, &image, nullptr), 0);
    EXPECT_EQ(image.width, 8);
    EXPECT_EQ(image.height, 4);
    EXPECT_EQ(channel.width(), 16) << "the start takes the size again";
}

TEST_F(ImageDescription, SaysThatThereIsNoDevice) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    virtualCamerasUnplug("1A2B");
    recordAll();
    CHostMemory memory(44);
    CHostText text;
    CHostStatus status;
    auto* image = static_cast<ImageInfo*>(static_cast<void*>(memory.data()));
    EXPECT_EQ(channel.GetImageInfo(text, image, status), 1);
    EXPECT_EQ(text.text(), "No valid video capture device selected.");
    EXPECT_EQ(status.value(), 8192U);
    EXPECT_TRUE(memory.isUntouched());
    EXPECT_THAT(library_log::lines(), ElementsAre("Grabber::isDevValid() -> false"));
}

TEST_F(ImageDescription, TakesNullForEveryOutput) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    EXPECT_EQ(channel.GetImageInfo(nullptr, nullptr, nullptr), 0);
    CHostStatus status;
    EXPECT_EQ(channel.GetImageInfo(nullptr, nullptr, status), 0);
    EXPECT_EQ(status.value(), 0U);
    virtualCamerasUnplug("1A2B");
    EXPECT_EQ(channel.GetImageInfo(nullptr, nullptr, nullptr), 1);
    CHostText text;
    EXPECT_EQ(channel.GetImageInfo(text, nullptr, nullptr), 1);
    EXPECT_EQ(text.text(), "No valid video capture device selected.");
}

}  // namespace
