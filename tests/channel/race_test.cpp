// SPDX-License-Identifier: MIT
// Two threads at once: frames as fast as they come, and a host that waits, gives
// up, copies, stops and starts at any moment. Made for the thread sanitizer; what
// is checked here besides is that no copied frame is mixed of two.
#include <random>

#include "tests/support/one_channel.h"

namespace {

class Race : public COneChannel {
protected:
    static constexpr std::int32_t width = 64;
    static constexpr std::int32_t height = 24;

    void SetUp() override {
        COneChannel::SetUp();
        loadRig(rigs::camera("SIM Fast", "F", "\"Y800 (64x24)\""));
        virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    }
    void TearDown() override {
        // The log runs full here, and nobody reads it.
        win32::reset();
        COneChannel::TearDown();
    }

    // The frame's number stands in every row; all rows must say the same.
    static bool isOneFrame(const CHostMemory& frame) {
        for (std::int32_t row = 1; row < height; ++row) {
            for (std::int32_t column = 4; column < 8; ++column) {
                if (frame[static_cast<std::size_t>(row * width + column)] !=
                    frame[static_cast<std::size_t>(column)]) {
                    return false;
                }
            }
        }
        return true;
    }
    void copyIfAny() {
        if (copy(m_frame) == done()) {
            ++m_copied;
            ASSERT_TRUE(isOneFrame(m_frame));
        }
    }

    CHostMemory m_frame{64 * 24};
    std::uint32_t m_copied = 0;
};

TEST_F(Race, EveryWaitEndsWithAWholeFrame) {
    openLive();
    for (int round = 0; round < 300; ++round) {
        ASSERT_EQ(wait(), done());
        copyIfAny();
    }
    EXPECT_EQ(stop(), accepted());
    EXPECT_EQ(m_copied, 300U);
    EXPECT_EQ(lockedBuffers("F"), 0);
}

TEST_F(Race, AHostThatGivesUpAtOnceGetsWholeFramesOrNone) {
    openLive();
    win32::injectAlways("WaitForSingleObject", WAIT_TIMEOUT);
    for (int round = 0; round < 5000; ++round) {
        EXPECT_EQ(wait(), noFrame());
        copyIfAny();
    }
    win32::clearInjected();
    EXPECT_EQ(stop(), accepted());
    EXPECT_EQ(lockedBuffers("F"), 0);
}

TEST_F(Race, AHostThatDoesAnythingAtAnyMomentGetsWholeFramesOrNone) {
    openLive();
    std::mt19937 random(20240229);
    for (int round = 0; round < 3000; ++round) {
        switch (random() % 8) {
            case 0:
            case 1:
                win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
                EXPECT_EQ(wait(), noFrame());
                break;
            case 2:
                win32::injectResults("WaitForSingleObject", {WAIT_FAILED});
                wait();
                break;
            case 3:
                wait();
                break;
            case 4:
                EXPECT_EQ(channel().StartAcquisition(nullptr), 1);
                break;
            default:
                copyIfAny();
                break;
        }
    }
    EXPECT_EQ(stop(), accepted());
    EXPECT_GT(m_copied, 0U);
    EXPECT_EQ(lockedBuffers("F"), 0);
}

TEST_F(Race, StopsAndStartsLeaveNoBufferLocked) {
    open();
    for (int round = 0; round < 60; ++round) {
        EXPECT_EQ(start(), accepted());
        if (round % 2 == 0) {
            win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
        }
        wait();
        if (round % 3 == 0) {
            copyIfAny();
        }
        EXPECT_EQ(stop(), accepted());
        EXPECT_EQ(lockedBuffers("F"), 0) << round;
        EXPECT_EQ(copy(m_frame), noFrame());
    }
}

TEST_F(Race, ANewSinkDuringLiveVideoTouchesNoFrame) {
    open();
    EXPECT_EQ(set("pixelformat", "mono8"), accepted());
    EXPECT_EQ(start(), accepted());
    for (int round = 0; round < 100; ++round) {
        EXPECT_EQ(set("pixelformat", "mono8").result, 1);
        ASSERT_EQ(wait(), done());
        copyIfAny();
    }
    EXPECT_EQ(stop(), accepted());
    EXPECT_EQ(m_copied, 100U);
}

TEST_F(Race, AChannelMayBeClosedWhileFramesFlow) {
    for (int round = 0; round < 30; ++round) {
        open();
        EXPECT_EQ(start(), accepted());
        win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
        wait();
        close();
    }
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(alive().buffers, 0U);
}

TEST_F(Race, ACameraMayBeLostAndFoundWhileTheHostWaits) {
    openLive();
    for (int round = 0; round < 20; ++round) {
        CHostThread cable([&] {
            unplug();
            plug();
        });
        win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
        wait();
        copyIfAny();
        cable.join();
        win32::clearInjected();
        ASSERT_EQ(wait(), done());
        copyIfAny();
    }
    EXPECT_EQ(stop(), accepted());
}

}  // namespace
