// SPDX-License-Identifier: MIT
// A camera of the same serial number that comes back with another size: the sizes
// of the last start stay, and every copy stays within the new buffers.
#include "tests/support/one_channel.h"

namespace {

using ::testing::ElementsAre;

class SmallerFrame : public COneChannel {
protected:
    void restoredAs(const std::string& before, const std::string& after) {
        openLive(before);
        loadRig(after);
        EXPECT_EQ(waitForDelivery(), done());
    }
};

TEST_F(SmallerFrame, OfGreyIsCopiedAsFarAsItGoes) {
    restoredAs(rigs::camera("SIM", "1", "\"Y800 (8x4)\""),
               rigs::camera("SIM", "1", "\"Y800 (4x2)\""));
    const CHostMemory& frame = copiedFrame();
    EXPECT_THAT(frame.bytes(0, 8), ElementsAre(0xC0, 0xC0, 0xC0, 0xC0, 0xC1, 0xC0, 0xC0, 0xC0));
    EXPECT_TRUE(frame.isUntouched(8, 24));
    EXPECT_EQ(channel().width(), 8);
}

TEST_F(SmallerFrame, OfRawIsMovedAsFarAsItGoes) {
    restoredAs(rigs::camera("SIM", "1", "\"BY8 (8x4)\", \"Y800 (8x4)\""),
               rigs::camera("SIM", "1", "\"Y800 (4x3)\"", "colour = true"));
    const CHostMemory& frame = copiedFrame();
    // Twelve bytes in rows of eight: three bytes of row 1.
    EXPECT_FALSE(frame.isUntouched(0, 3));
    EXPECT_TRUE(frame.isUntouched(3, 29));
}

TEST_F(SmallerFrame, OfColorIsRebuiltAsFarAsItGoes) {
    restoredAs(rigs::camera("SIM", "1", "\"RGB24 (8x4)\""),
               rigs::camera("SIM", "1", "\"RGB24 (8x2)\""));
    const CHostMemory& frame = copiedFrame();
    // Rows 3 and 2 lie outside; the others come without a gap.
    EXPECT_TRUE(frame.isUntouched(16, 16));
    EXPECT_THAT(frame.bytes(0, 16), ElementsAre(0x40, 0x80, 0x40, 0x80, 0x41, 0x80, 0x40, 0x80,  //
                                                0x01, 0x40, 0x00, 0x40, 0x01, 0x40, 0x00, 0x40));
}

TEST_F(SmallerFrame, OfRawLeavesTheLastRowAloneInALargerBufferToo) {
    restoredAs(rigs::camera("SIM", "1", "\"BY8 (8x4)\", \"Y800 (8x4)\""),
               rigs::camera("SIM", "1", "\"Y800 (8x8)\"", "colour = true"));
    const CHostMemory& frame = copiedFrame();
    EXPECT_FALSE(frame.isUntouched(16, 7));
    EXPECT_TRUE(frame.isUntouched(23, 9));
}

TEST_F(SmallerFrame, IsNotWhatALargerOneGives) {
    restoredAs(rigs::camera("SIM", "1", "\"Y800 (8x4)\""),
               rigs::camera("SIM", "1", "\"Y800 (16x8)\""));
    const CHostMemory& frame = copiedFrame();
    EXPECT_FALSE(frame.isUntouched(0, 32));
    ImageInfo image{};
    EXPECT_EQ(imageInfo(&image), done());
    EXPECT_EQ(image.width, 16) << "read from the camera at every call";
}

}  // namespace
