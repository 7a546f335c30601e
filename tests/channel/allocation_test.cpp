// SPDX-License-Identifier: MIT
// The road of a frame, from the library's delivery to the end of the copy,
// allocates nothing.
#include <memory>

#include "acquisition/listener.h"
#include "tests/channel/counted_new.h"
#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

class Allocation : public CChannelTest {
protected:
    void SetUp() override {
        CChannelTest::SetUp();
        if (!counted_new::isPossible()) {
            GTEST_SKIP() << "the sanitizer of this build brings its own new";
        }
    }

    // Allocations of both threads over many frames, each waited for and copied.
    std::uint64_t overFrames(CVideoChannel& channel, std::size_t frameBytes) {
        virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
        start(channel);
        CHostMemory frame(frameBytes);
        CHostStatus status;
        std::uint32_t copied = 0;
        const auto round = [&] {
            channel.WaitFrame(nullptr, status);
            channel.CopyFrame(nullptr, frame.data(), status);
            copied += status.value() == 0 ? 1U : 0U;
        };
        // What is made on first use.
        round();
        counted_new::start();
        for (int i = 0; i < 50; ++i) {
            round();
        }
        const std::uint64_t allocations = counted_new::stop();
        stop(channel);
        // A slow host lets frames pass by that fill the log; nothing is asked of it here.
        win32::reset();
        EXPECT_EQ(copied, 51U);
        return allocations;
    }
    CVideoChannel& channelOf(const std::string& rig) {
        loadRig(rig);
        return makeChannel();
    }
};

TEST_F(Allocation, IsCounted) {
    counted_new::start();
    const auto number = std::make_unique<int>(7);
    EXPECT_EQ(counted_new::stop(), 1U);
    EXPECT_EQ(*number, 7);
}

TEST_F(Allocation, DoesNotHappenForAGreyFrame) {
    EXPECT_EQ(overFrames(channelOf(rigs::grey()), 32), 0U);
}

TEST_F(Allocation, DoesNotHappenForAMovedRawFrame) {
    EXPECT_EQ(overFrames(channelOf(rigs::raw()), 32), 0U);
}

TEST_F(Allocation, DoesNotHappenForAnAlignedRawFrame) {
    EXPECT_EQ(overFrames(channelOf(rigs::raw("model = \"QRM 52XAV07\"")), 32), 0U);
}

TEST_F(Allocation, DoesNotHappenForARebuiltRawFrame) {
    EXPECT_EQ(overFrames(channelOf(rigs::color()), 32), 0U);
}

TEST_F(Allocation, DoesNotHappenForAColorFrame) {
    CVideoChannel& channel = channelOf(rigs::color());
    ASSERT_EQ(setProperty(channel, "pixelformat", "RGB24"), "");
    EXPECT_EQ(overFrames(channel, 96), 0U);
}

TEST_F(Allocation, DoesNotHappenForAFrameThatNobodyWaitsFor) {
    CVideoChannel& channel = channelOf(rigs::grey());
    start(channel);
    EXPECT_EQ(virtualCamerasDeliverFrame("1A2B"), 1);
    counted_new::start();
    for (int i = 0; i < 50; ++i) {
        virtualCamerasDeliverFrame("1A2B");
    }
    EXPECT_EQ(counted_new::stop(), 0U);
}

TEST_F(Allocation, OfASettingIsTheLibrarysAlone) {
    loadRig(rigs::grey(rigs::range("Contrast adjustment", 0, 255, 51)));
    CVideoChannel& channel = makeChannel();
    const auto calls = [&](const char* key, const char* value) {
        CHostText message;
        CHostText read;
        counted_new::start();
        channel.SetPropertyValue(message, key, value);
        channel.GetPropertyValue(message, key, read);
        return counted_new::stop();
    };
    // The virtual camera itself is part of the program here: what it makes is its own.
    virtualCamerasRecordCalls(0);
    EXPECT_EQ(calls("Contrast Adjustment Value Range", "77"), 0U);
    EXPECT_EQ(calls("contrast adjustment value range max", "1"), 0U);
    EXPECT_EQ(calls("no key of any table, but a long one", "1"), 0U);
}

}  // namespace
