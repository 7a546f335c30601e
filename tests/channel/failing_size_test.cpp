// SPDX-License-Identifier: MIT
// A start that throws once the camera is live: the host still knows the size of the start
// before it, and has memory for no more.
#include "tests/support/library_faults.h"
#include "tests/support/one_channel.h"

namespace {

class FailingSize : public COneChannel {
protected:
    // Started once with 8 x 4 pixels, then live with 64 x 48 behind the host's back.
    void startAgainInVain(const char* pixelType, const char* failing) {
        open(rigs::camera("SIM Color 23", "3C4D", "\"RGB24 (8x4)\", \"RGB24 (64x48)\""));
        EXPECT_EQ(set("pixelformat", pixelType), accepted());
        EXPECT_EQ(start(), accepted());
        EXPECT_EQ(stop(), accepted());
        EXPECT_EQ(set("videoformat", "RGB24 (64x48)"), accepted());
        throwFromCall(failing, "broken");
        EXPECT_THROW(channel().StartAcquisition(nullptr), char*);
        EXPECT_EQ(alive().liveDevices, 1U);
        EXPECT_EQ(waitForDelivery(), done());
    }
};

TEST_F(FailingSize, AFrameStaysWithinTheMemoryOfTheLastStart) {
    for (const char* failing : {"Grabber::getAcqSizeMaxX", "Grabber::getAcqSizeMaxY"}) {
        SCOPED_TRACE(failing);
        startAgainInVain("mono8", failing);
        EXPECT_EQ(channel().width(), 8);
        EXPECT_EQ(channel().height(), 4);
        copiedFrame(8 * 4);
        close();
    }
}

TEST_F(FailingSize, AColorFrameStaysWithinTheMemoryOfTheLastStart) {
    startAgainInVain("rgb24", "Grabber::getAcqSizeMaxY");
    EXPECT_FALSE(copiedFrame(8 * 4 * 3).isUntouched(8 * 4 * 3 - 4, 4));
}

TEST_F(FailingSize, TheNextStartTakesTheNewSize) {
    startAgainInVain("rgb24", "Grabber::getAcqSizeMaxX");
    EXPECT_EQ(stop(), accepted());
    EXPECT_EQ(start(), accepted());
    EXPECT_FALSE(receiveFrame(64 * 48 * 3).isUntouched(64 * 48 * 3 - 4, 4));
}

}  // namespace
