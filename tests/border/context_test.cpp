// SPDX-License-Identifier: MIT
// Contexts that name no channel, and the closing of channels.
#include <gtest/gtest.h>

#include "tests/border/support/border_test.h"

namespace {

class Context : public CBorderTest {
protected:
    // Every entry point but the last, with `context` in place of the channel's own.
    static void expectAllFailAndTouchNothing(const VideoChannelRecord& record, void* context) {
        CGuardedBytes text(256);
        CGuardedBytes output(256);
        auto* error = reinterpret_cast<char*>(text.data());
        auto* value = reinterpret_cast<char*>(output.data());
        auto* word = reinterpret_cast<std::uint32_t*>(output.data());
        auto* image = reinterpret_cast<ImageInfo*>(output.data());
        const CameraParameterBlock block{};

        EXPECT_EQ(record.SetCameraParameters(error, context, &block), 1);
        EXPECT_EQ(record.GetImageInfo(error, context, image, word), 1);
        EXPECT_EQ(record.WaitFrame(error, context, word), 1);
        EXPECT_EQ(record.CopyFrame(error, context, value, word), 1);
        EXPECT_EQ(record.StartAcquisition(error, context), 1);
        EXPECT_EQ(record.StopAcquisition(error, context), 1);
        EXPECT_EQ(record.ExecuteCommand(error, context, "propertydialog"), 1);
        EXPECT_EQ(record.GetPropertyValue(error, context, "pixelformat", value), 1);
        EXPECT_EQ(record.SetPropertyValue(error, context, "pixelformat", "raw8"), 1);
        EXPECT_EQ(record.GetPropertyName(error, context, 0, value), 1);
        EXPECT_EQ(record.GetPropertyType(error, context, "pixelformat", word), 1);
        EXPECT_EQ(record.GetPropertyChoice(error, context, "videoformat", 0, value), 1);
        EXPECT_EQ(record.GetPropertyAttribute(error, context, "pixelformat", 1, value), 1);
        EXPECT_TRUE(text.isUntouched());
        EXPECT_TRUE(output.isUntouched());
    }

    VideoChannelRecord m_record{};
};

TEST_F(Context, NullFailsEverywhereAndTouchesNothing) {
    expectAllFailAndTouchNothing(channel(0).record(), nullptr);
}

TEST_F(Context, UnknownFailsEverywhereAndTouchesNothing) {
    std::array<char, 64> notAChannel{};
    expectAllFailAndTouchNothing(channel(0).record(), notAChannel.data());
}

TEST_F(Context, ClosedFailsEverywhereAndTouchesNothing) {
    const CHostChannel closed = channel(1);
    EXPECT_EQ(closed.close(), succeeded());
    expectAllFailAndTouchNothing(closed.record(), closed.record().context);
}

TEST_F(Context, FailsStillWhenAllChannelsAreClosed) {
    const CHostChannel closed = channel(0);
    closeAll();
    expectAllFailAndTouchNothing(closed.record(), closed.record().context);
}

TEST_F(Context, ALivingChannelTakesNullForEveryTextAndOutput) {
    const VideoChannelRecord& record = m_record;
    ASSERT_EQ(adapter().getVideoChannel(0, &m_record), 0);
    void* const context = record.context;
    CHostText value;
    std::uint32_t status = untouchedWord;

    EXPECT_EQ(record.SetCameraParameters(nullptr, context, nullptr), 0);
    EXPECT_EQ(record.GetImageInfo(nullptr, context, nullptr, nullptr), 0);
    EXPECT_EQ(record.GetImageInfo(nullptr, context, nullptr, &status), 0);
    EXPECT_EQ(status, 0U);
    EXPECT_EQ(record.StartAcquisition(nullptr, context), 0);
    EXPECT_EQ(record.WaitFrame(nullptr, context, nullptr), 0);
    EXPECT_EQ(record.CopyFrame(nullptr, context, value.get(), nullptr), 0);
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
    EXPECT_EQ(value.text(), untouchedText);
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
    EXPECT_EQ(first.close(), succeeded());
    EXPECT_EQ(first.close(), succeeded());
    EXPECT_STREQ(channel(0).record().serialText, "C0102");
    EXPECT_STREQ(channel(2).record().serialText, "C0506");
}

TEST_F(Context, ClosingMovesLaterCamerasToTheFront) {
    const CHostChannel third = channel(2);
    EXPECT_EQ(channel(1).close(), succeeded());
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
    EXPECT_EQ(last.close(), succeeded());
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
