// SPDX-License-Identifier: MIT
// The road of a frame, from the library's delivery to the end of the copy,
// allocates nothing.
#include <memory>

#include "acquisition/listener.h"
#include "tests/channel/counted_new.h"
#include "tests/support/one_channel.h"

namespace {

class Allocation : public CGreyCamera {
protected:
    void SetUp() override {
        CGreyCamera::SetUp();
        if (!counted_new::isPossible()) {
            GTEST_SKIP() << "the sanitizer of this build brings its own new";
        }
    }

    // Allocations of both threads over many frames, each waited for and copied.
    std::uint64_t overFrames(std::size_t frameBytes) {
        virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
        EXPECT_EQ(start(), accepted());
        CHostMemory frame(frameBytes);
        CHostStatus status;
        std::uint32_t copied = 0;
        const auto round = [&] {
            channel().WaitFrame(nullptr, status);
            channel().CopyFrame(nullptr, frame.data(), status);
            copied += status.value() == 0 ? 1U : 0U;
        };
        // What is made on first use.
        round();
        counted_new::start();
        for (int i = 0; i < 50; ++i) {
            round();
        }
        const std::uint64_t allocations = counted_new::stop();
        EXPECT_EQ(stop(), accepted());
        // A slow host lets frames pass by that fill the log; nothing is asked of it here.
        win32::reset();
        EXPECT_EQ(copied, 51U);
        return allocations;
    }
    // Of the camera of this rig.
    std::uint64_t overFrames(const std::string& rig) {
        open(rig);
        return overFrames(32);
    }
};

TEST_F(Allocation, IsCounted) {
    counted_new::start();
    const auto number = std::make_unique<int>(7);
    EXPECT_EQ(counted_new::stop(), 1U);
    EXPECT_EQ(*number, 7);
}

TEST_F(Allocation, DoesNotHappenForAGreyFrame) {
    EXPECT_EQ(overFrames(rigs::grey()), 0U);
}

TEST_F(Allocation, DoesNotHappenForAMovedRawFrame) {
    EXPECT_EQ(overFrames(rigs::raw()), 0U);
}

TEST_F(Allocation, DoesNotHappenForAnAlignedRawFrame) {
    EXPECT_EQ(overFrames(rigs::raw("model = \"QRM 52XAV07\"")), 0U);
}

TEST_F(Allocation, DoesNotHappenForARebuiltRawFrame) {
    EXPECT_EQ(overFrames(rigs::color()), 0U);
}

TEST_F(Allocation, DoesNotHappenForAColorFrame) {
    open(rigs::color());
    ASSERT_EQ(set("pixelformat", "RGB24"), accepted());
    EXPECT_EQ(overFrames(96), 0U);
}

TEST_F(Allocation, DoesNotHappenForAFrameThatNobodyWaitsFor) {
    openLive();
    deliver();
    counted_new::start();
    for (int i = 0; i < 50; ++i) {
        virtualCamerasDeliverFrame("1A2B");
    }
    EXPECT_EQ(counted_new::stop(), 0U);
}

TEST_F(Allocation, OfASettingIsTheLibrarysAlone) {
    open(rigs::grey(rigs::range("Contrast adjustment", 0, 255, 51)));
    const auto calls = [&](const char* key, const char* value) {
        CHostText message;
        CHostText read;
        counted_new::start();
        channel().SetPropertyValue(message, key, value);
        channel().GetPropertyValue(message, key, read);
        return counted_new::stop();
    };
    // The virtual camera itself is part of the program here: what it makes is its own.
    virtualCamerasRecordCalls(0);
    EXPECT_EQ(calls("Contrast Adjustment Value Range", "77"), 0U);
    EXPECT_EQ(calls("contrast adjustment value range max", "1"), 0U);
    EXPECT_EQ(calls("no key of any table, but a long one", "1"), 0U);
}

}  // namespace
