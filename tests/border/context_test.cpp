// SPDX-License-Identifier: MIT
// Contexts that name no channel, and the closing of channels.
#include <gtest/gtest.h>

#include <array>

#include "tests/border/support/border_test.h"
#include "tests/support/refused_calls.h"

namespace {

class Context : public CBorderTest {};

TEST_F(Context, NullFailsEverywhereAndTouchesNothing) {
    expectAllRefused(channel(0).with(nullptr));
}

TEST_F(Context, UnknownFailsEverywhereAndTouchesNothing) {
    std::array<char, 64> notAChannel{};
    expectAllRefused(channel(0).with(notAChannel.data()));
}

TEST_F(Context, ClosedFailsEverywhereAndTouchesNothing) {
    const CHostChannel closed = channel(1);
    EXPECT_EQ(closed.close(), accepted());
    expectAllRefused(closed);
}

TEST_F(Context, FailsStillWhenAllChannelsAreClosed) {
    const CHostChannel closed = channel(0);
    closeAll();
    expectAllRefused(closed);
}

TEST_F(Context, ALivingChannelTakesNullForEveryTextAndOutput) {
    const CHostChannel camera = channel(0);
    const VideoChannelRecord& record = camera.record();
    void* const context = record.context;
    CHostText value;
    CHostStatus status;

    EXPECT_EQ(record.SetCameraParameters(nullptr, context, nullptr), 0);
    EXPECT_EQ(record.GetImageInfo(nullptr, context, nullptr, nullptr), 0);
    EXPECT_EQ(record.GetImageInfo(nullptr, context, nullptr, status), 0);
    EXPECT_EQ(status.value(), 0U);
    EXPECT_EQ(record.StartAcquisition(nullptr, context), 0);
    EXPECT_EQ(record.WaitFrame(nullptr, context, nullptr), 0);
    EXPECT_EQ(record.CopyFrame(nullptr, context, static_cast<char*>(value), nullptr), 0);
    EXPECT_EQ(record.StopAcquisition(nullptr, context), 0);
    EXPECT_EQ(record.ExecuteCommand(nullptr, context, nullptr), 1);
    EXPECT_EQ(record.GetPropertyValue(nullptr, context, nullptr, nullptr), 1);
    EXPECT_EQ(record.GetPropertyValue(nullptr, context, "pixelformat", nullptr), 0);
    EXPECT_EQ(record.SetPropertyValue(nullptr, context, nullptr, nullptr), 1);
    EXPECT_EQ(record.SetPropertyValue(nullptr, context, "pixelformat", nullptr), 1);
    EXPECT_EQ(record.GetPropertyName(nullptr, context, 0, nullptr), 0);
    EXPECT_EQ(record.GetPropertyType(nullptr, context, nullptr, nullptr), 0);
    EXPECT_EQ(record.GetPropertyChoice(nullptr, context, nullptr, 0, nullptr), 1);
    EXPECT_EQ(record.GetPropertyChoice(nullptr, context, "videoformat", 0, nullptr), 0);
    EXPECT_EQ(record.GetPropertyAttribute(nullptr, context, nullptr, 1, nullptr), 0);
    EXPECT_TRUE(value.isUntouched());
}

TEST_F(Context, ClosingNullOrUnknownClosesNoCamera) {
    const CHostChannel first = channel(0);
    std::array<char, 64> notAChannel{};
    control().recordCalls(1);
    EXPECT_EQ(first.record().CloseChannel(nullptr, nullptr), 0);
    EXPECT_EQ(first.record().CloseChannel(nullptr, notAChannel.data()), 0);
    EXPECT_EQ(control().operations(), std::vector<std::string>{});
    EXPECT_STREQ(channel(3).record().serialText, "C0506");
}

TEST_F(Context, ClosingTwiceClosesOneCamera) {
    const CHostChannel first = channel(0);
    EXPECT_EQ(first.close(), accepted());
    EXPECT_EQ(first.close(), accepted());
    EXPECT_STREQ(channel(0).record().serialText, "C0102");
    EXPECT_STREQ(channel(2).record().serialText, "C0506");
}

TEST_F(Context, ClosingMovesLaterCamerasToTheFront) {
    const CHostChannel third = channel(2);
    EXPECT_EQ(channel(1).close(), accepted());
    EXPECT_EQ(channel(1).record().context, third.record().context);
    EXPECT_STREQ(channel(0).record().serialText, "1A2B");
    EXPECT_STREQ(channel(1).record().serialText, "C0304");
    EXPECT_STREQ(channel(2).record().serialText, "C0506");
    VideoChannelRecord record{};
    EXPECT_EQ(adapter().getVideoChannel(3, &record), 1);
}

TEST_F(Context, ClosingTheLastCameraShutsTheLibraryDown) {
    const CHostChannel first = channel(0);
    const CHostChannel last = channel(3);
    channel(2).close();
    channel(1).close();
    first.close();
    control().recordCalls(1);
    EXPECT_EQ(last.close(), accepted());
    EXPECT_EQ(control().operations().back(), "ExitLibrary");
    EXPECT_EQ(control().countOf("ExitLibrary"), 1U);
}

TEST_F(Context, ClosingOnAnEmptyRegistryShutsTheLibraryDownAgain) {
    const CHostChannel first = channel(0);
    closeAll();
    control().recordCalls(1);
    EXPECT_EQ(first.record().CloseChannel(nullptr, nullptr), 0);
    EXPECT_EQ(control().operations(), std::vector<std::string>{"ExitLibrary"});
}

TEST_F(Context, AProcessThatClosedAllCamerasGetsNoneAgain) {
    channel(0);
    closeAll();
    control().recordCalls(1);
    VideoChannelRecord record{};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(adapter().getVideoChannel(0, &record), 1);
    }
    EXPECT_EQ(control().operations(), std::vector<std::string>{});
}

TEST_F(Context, ClosingReleasesTheCamera) {
    channel(0);
    closeAll();
    const VirtualCamerasAlive alive = control().alive();
    EXPECT_EQ(alive.grabbers, 0U);
    EXPECT_EQ(alive.openDevices, 0U);
    EXPECT_EQ(alive.listeners, 0U);
    EXPECT_EQ(alive.sinks, 0U);
    EXPECT_EQ(alive.buffers, 0U);
    EXPECT_EQ(alive.items, 0U);
    EXPECT_EQ(control().misuses(), 0U) << control().lastMisuse();
}

}  // namespace
