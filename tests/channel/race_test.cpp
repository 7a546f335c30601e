// SPDX-License-Identifier: MIT
// Two threads at once: frames as fast as they come, and a host that waits, gives
// up, copies, stops and starts at any moment. Made for the thread sanitizer; what
// is checked here besides is that no copied frame is mixed of two.
#include <random>

#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

class Race : public CChannelTest {
protected:
    static constexpr std::int32_t width = 64;
    static constexpr std::int32_t height = 24;

    void SetUp() override {
        CChannelTest::SetUp();
        loadRig(rigs::camera("SIM Fast", "F", "\"Y800 (64x24)\""));
        virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    }
    void TearDown() override {
        // The log runs full here, and nobody reads it.
        win32::reset();
        CChannelTest::TearDown();
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
    void copyIfAny(CVideoChannel& channel) {
        if (copyFrame(channel, m_frame) == 0) {
            ++m_copied;
            ASSERT_TRUE(isOneFrame(m_frame));
        }
    }
    static std::int32_t locks() {
        std::int32_t all = 0;
        for (std::uint32_t buffer = 0; buffer < 5; ++buffer) {
            all += virtualCamerasBufferLocks("F", buffer);
        }
        return all;
    }

    CHostMemory m_frame{64 * 24};
    std::uint32_t m_copied = 0;
};

TEST_F(Race, EveryWaitEndsWithAWholeFrame) {
    CVideoChannel& channel = makeChannel();
    start(channel);
    for (int round = 0; round < 300; ++round) {
        ASSERT_EQ(waitFrame(channel).status, 0U);
        copyIfAny(channel);
    }
    stop(channel);
    EXPECT_EQ(m_copied, 300U);
    EXPECT_EQ(locks(), 0);
}

TEST_F(Race, AHostThatGivesUpAtOnceGetsWholeFramesOrNone) {
    CVideoChannel& channel = makeChannel();
    start(channel);
    win32::injectAlways("WaitForSingleObject", WAIT_TIMEOUT);
    for (int round = 0; round < 5000; ++round) {
        EXPECT_EQ(waitFrame(channel).status, 4096U);
        copyIfAny(channel);
    }
    win32::clearInjected();
    stop(channel);
    EXPECT_EQ(locks(), 0);
}

TEST_F(Race, AHostThatDoesAnythingAtAnyMomentGetsWholeFramesOrNone) {
    CVideoChannel& channel = makeChannel();
    start(channel);
    std::mt19937 random(20240229);
    for (int round = 0; round < 3000; ++round) {
        switch (random() % 8) {
            case 0:
            case 1:
                win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
                EXPECT_EQ(waitFrame(channel).status, 4096U);
                break;
            case 2:
                win32::injectResults("WaitForSingleObject", {WAIT_FAILED});
                waitFrame(channel);
                break;
            case 3:
                waitFrame(channel);
                break;
            case 4:
                EXPECT_EQ(channel.StartAcquisition(nullptr), 1);
                break;
            default:
                copyIfAny(channel);
                break;
        }
    }
    stop(channel);
    EXPECT_GT(m_copied, 0U);
    EXPECT_EQ(locks(), 0);
}

TEST_F(Race, StopsAndStartsLeaveNoBufferLocked) {
    CVideoChannel& channel = makeChannel();
    for (int round = 0; round < 60; ++round) {
        start(channel);
        if (round % 2 == 0) {
            win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
        }
        waitFrame(channel);
        if (round % 3 == 0) {
            copyIfAny(channel);
        }
        stop(channel);
        EXPECT_EQ(locks(), 0) << round;
        EXPECT_EQ(copyFrame(channel, m_frame), 4096U);
    }
}

TEST_F(Race, ANewSinkDuringLiveVideoTouchesNoFrame) {
    CVideoChannel& channel = makeChannel();
    EXPECT_EQ(setProperty(channel, "pixelformat", "mono8"), "");
    start(channel);
    for (int round = 0; round < 100; ++round) {
        EXPECT_NE(setProperty(channel, "pixelformat", "mono8"), "");
        ASSERT_EQ(waitFrame(channel).status, 0U);
        copyIfAny(channel);
    }
    stop(channel);
    EXPECT_EQ(m_copied, 100U);
}

TEST_F(Race, AChannelMayBeClosedWhileFramesFlow) {
    for (int round = 0; round < 30; ++round) {
        CVideoChannel& channel = makeChannel();
        start(channel);
        win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
        waitFrame(channel);
        closeChannel(channel);
    }
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(alive().buffers, 0U);
}

TEST_F(Race, ACameraMayBeLostAndFoundWhileTheHostWaits) {
    CVideoChannel& channel = makeChannel();
    start(channel);
    for (int round = 0; round < 20; ++round) {
        CHostThread cable([&] {
            virtualCamerasUnplug("F");
            virtualCamerasPlug("F");
        });
        win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
        waitFrame(channel);
        copyIfAny(channel);
        cable.join();
        win32::clearInjected();
        ASSERT_EQ(waitFrame(channel).status, 0U);
        copyIfAny(channel);
    }
    stop(channel);
}

}  // namespace
