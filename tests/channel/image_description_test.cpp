// SPDX-License-Identifier: MIT
// The description of the image that a host asks for.
#include "tests/support/one_channel.h"

namespace {

using ::testing::ElementsAre;

class ImageDescription : public CGreyCamera {
protected:
    // Into the host's raw memory.
    Answer describe(CHostMemory& memory) const {
        return imageInfo(static_cast<ImageInfo*>(static_cast<void*>(memory.data())));
    }
};

TEST_F(ImageDescription, FillsEveryFieldButTheHostsOwn) {
    open(rigs::camera("SIM", "1", "\"Y800 (640x480)\""));
    recordAll();
    CHostMemory memory(44);
    EXPECT_EQ(describe(memory), done());
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
    open(rigs::color());
    ImageInfo image{};
    EXPECT_EQ(imageInfo(&image), done());
    EXPECT_EQ(image.pixelType, 4U);
    EXPECT_EQ(set("pixelformat", "RGB24"), accepted());
    EXPECT_EQ(imageInfo(&image), done());
    EXPECT_EQ(image.pixelType, 7U);
    EXPECT_EQ(set("pixelformat", "Mono8"), accepted());
    EXPECT_EQ(imageInfo(&image), done());
    EXPECT_EQ(image.pixelType, 0U);
}

TEST_F(ImageDescription, FollowsTheFormatBeforeTheStart) {
    open(rigs::camera("SIM", "1", "\"Y800 (8x4)\", \"Y800 (16x2)\""));
    EXPECT_EQ(set("videoformat", "Y800 (8x4)"), accepted());
    ImageInfo image{};
    EXPECT_EQ(imageInfo(&image), done());
    EXPECT_EQ(image.width, 8);
    EXPECT_EQ(image.height, 4);
    EXPECT_EQ(channel().width(), 16) << "the start takes the size again";
}

TEST_F(ImageDescription, SaysThatThereIsNoDevice) {
    open();
    unplug();
    recordAll();
    CHostMemory memory(44);
    EXPECT_EQ(describe(memory), deviceLost("No valid video capture device selected."));
    EXPECT_TRUE(memory.isUntouched());
    EXPECT_THAT(library_log::lines(), ElementsAre("Grabber::isDevValid() -> false"));
}

TEST_F(ImageDescription, TakesNullForEveryOutput) {
    open();
    EXPECT_EQ(channel().GetImageInfo(nullptr, nullptr, nullptr), 0);
    CHostStatus status;
    EXPECT_EQ(channel().GetImageInfo(nullptr, nullptr, status), 0);
    EXPECT_EQ(status.value(), 0U);
    unplug();
    EXPECT_EQ(channel().GetImageInfo(nullptr, nullptr, nullptr), 1);
    CHostText text;
    EXPECT_EQ(channel().GetImageInfo(text, nullptr, nullptr), 1);
    EXPECT_EQ(text.text(), "No valid video capture device selected.");
}

}  // namespace
