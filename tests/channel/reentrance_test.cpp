// SPDX-License-Identifier: MIT
// A host that calls again from inside a call: message boxes pump its messages.
#include "tests/channel/start_up_fixture.h"

namespace {

class Reentrance : public CStartUpTest {
protected:
    // Shows the box of a null destination, with work of the host inside it.
    static std::int32_t copyIntoNothing(const VideoChannelRecord& record, CHostStatus& status,
                                        const std::function<void()>& inside) {
        win32::runInside("MessageBoxW", inside);
        const std::int32_t result = record.CopyFrame(nullptr, record.context, nullptr, status);
        win32::runInside("MessageBoxW", {});
        return result;
    }
};

TEST_F(Reentrance, AChannelClosedInsideItsOwnCallLivesUntilThatCallLeaves) {
    const VideoChannelRecord record = openRecord();
    CHostStatus status;
    std::uint32_t grabbersInside = 0;
    std::size_t exitsInside = 0;
    EXPECT_EQ(copyIntoNothing(record, status,
                              [&] {
                                  recordAll();
                                  EXPECT_EQ(record.CloseChannel(nullptr, record.context), 0);
                                  grabbersInside = alive().grabbers;
                                  exitsInside = library_log::count("ExitLibrary");
                              }),
              0);
    EXPECT_EQ(status.value(), 4096U);
    EXPECT_EQ(grabbersInside, 1U);
    EXPECT_EQ(exitsInside, 0U);
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(library_log::count("ExitLibrary"), 1U);
    EXPECT_EQ(library_log::operations().back(), "ExitLibrary");
}

TEST_F(Reentrance, AChannelClosedInsideItsPropertyPageLivesUntilThePageIsGone) {
    const VideoChannelRecord record = openRecord();
    virtualCamerasInPage(
        [](void* context) {
            const auto& inPage = *static_cast<const VideoChannelRecord*>(context);
            EXPECT_EQ(inPage.CloseChannel(nullptr, inPage.context), 0);
            EXPECT_EQ(inPage.StopAcquisition(nullptr, inPage.context), 1) << "a dead context";
            EXPECT_EQ(alive().grabbers, 1U);
            EXPECT_EQ(library_log::count("ExitLibrary"), 0U);
        },
        const_cast<VideoChannelRecord*>(&record));
    recordAll();
    EXPECT_EQ(record.ExecuteCommand(nullptr, record.context, "propertydialog"), 0);
    EXPECT_EQ(virtualCamerasPagesShown(), 1U);
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(library_log::count("ExitLibrary"), 1U);
    EXPECT_EQ(library_log::operations().back(), "ExitLibrary");
}

TEST_F(Reentrance, AskingForCamerasInsideAPropertyPageIsAnswered) {
    const VideoChannelRecord record = openRecord();
    VideoChannelRecord asked{};
    virtualCamerasInPage(
        [](void* context) {
            EXPECT_EQ(GetVideoChannel(nullptr, 0, static_cast<VideoChannelRecord*>(context)), 0);
        },
        &asked);
    EXPECT_EQ(record.ExecuteCommand(nullptr, record.context, "propertydialog"), 0);
    EXPECT_EQ(asked.context, record.context);
}

TEST_F(Reentrance, AChannelClosedInsideItsOwnCallIsUnlistedAtOnce) {
    loadRig(rigs::grey() + rigs::color());
    const VideoChannelRecord first = openRecord(0);
    const VideoChannelRecord second = openRecord(1);
    CHostStatus status;
    copyIntoNothing(first, status, [&] {
        first.CloseChannel(nullptr, first.context);
        EXPECT_EQ(openRecord(0).context, second.context);
        EXPECT_EQ(first.StopAcquisition(nullptr, first.context), 1) << "a dead context";
    });
    EXPECT_EQ(alive().grabbers, 1U);
}

TEST_F(Reentrance, TheOutermostOfNestedCallsDestroysTheChannel) {
    const VideoChannelRecord record = openRecord();
    CHostStatus outer;
    CHostStatus inner;
    bool nested = false;
    win32::runInside("MessageBoxW", [&] {
        if (nested) {
            return;
        }
        nested = true;
        // The subset allows no box inside a box; any call of the channel serves.
        EXPECT_EQ(record.GetImageInfo(nullptr, record.context, nullptr, inner), 0);
        EXPECT_EQ(record.CloseChannel(nullptr, record.context), 0);
        EXPECT_EQ(alive().grabbers, 1U);
    });
    EXPECT_EQ(record.CopyFrame(nullptr, record.context, nullptr, outer), 0);
    win32::runInside("MessageBoxW", {});
    EXPECT_EQ(outer.value(), 4096U);
    EXPECT_EQ(alive().grabbers, 0U);
}

TEST_F(Reentrance, AChannelClosedInsideTheInnerOfTwoCallsLivesUntilTheOuterLeaves) {
    const VideoChannelRecord record = openRecord();
    EXPECT_EQ(record.StartAcquisition(nullptr, record.context), 0);
    CHostStatus outer;
    CHostStatus inner;
    win32::runInside("WaitForSingleObject", [&] {
        win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
        EXPECT_EQ(record.CloseChannel(nullptr, record.context), 0);
    });
    copyIntoNothing(record, outer, [&] {
        EXPECT_EQ(record.WaitFrame(nullptr, record.context, inner), 0);
        EXPECT_EQ(alive().grabbers, 1U);
    });
    win32::runInside("WaitForSingleObject", {});
    EXPECT_EQ(inner.value(), 4096U);
    EXPECT_EQ(outer.value(), 4096U);
    EXPECT_EQ(alive().grabbers, 0U);
}

TEST_F(Reentrance, ALibraryThatThrowsInItsEndLeavesTheAnswerOfTheCallThatLeaves) {
    const VideoChannelRecord record = openRecord();
    CHostStatus status;
    EXPECT_EQ(copyIntoNothing(record, status,
                              [&] {
                                  EXPECT_EQ(record.CloseChannel(nullptr, record.context), 0);
                                  throwFromCall("ExitLibrary", "broken");
                              }),
              0);
    EXPECT_EQ(status.value(), 4096U);
    EXPECT_EQ(alive().grabbers, 0U);
}

TEST_F(Reentrance, AnotherChannelClosedInsideACallGoesAtOnceAndTheLibraryStays) {
    loadRig(rigs::grey() + rigs::color());
    const VideoChannelRecord first = openRecord(0);
    const VideoChannelRecord second = openRecord(1);
    CHostStatus status;
    copyIntoNothing(first, status, [&] {
        recordAll();
        first.CloseChannel(nullptr, first.context);
        second.CloseChannel(nullptr, second.context);
        EXPECT_EQ(alive().grabbers, 1U);
        second.CloseChannel(nullptr, nullptr);
        EXPECT_EQ(library_log::count("ExitLibrary"), 0U) << "the first is still inside";
    });
    EXPECT_EQ(library_log::count("ExitLibrary"), 1U);
}

TEST_F(Reentrance, AskingForCamerasInsideTheListingChangesNothing) {
    loadRig(rigs::grey() + rigs::color());
    throwFromCall("Grabber::openDev", "in use");
    std::int32_t answer = -1;
    win32::runInside("MessageBoxW", [&] { answer = ask(); });
    VideoChannelRecord outer{};
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &outer), 0);
    win32::runInside("MessageBoxW", {});
    EXPECT_EQ(answer, 1);
    EXPECT_TRUE(isRecordUntouched());
    EXPECT_EQ(channelCount(), 1);
    EXPECT_EQ(alive().grabbers, 1U);
    EXPECT_STREQ(outer.deviceName, "SIM Color 23");
}

TEST_F(Reentrance, ClosingNothingInsideTheListingLeavesTheLibraryStarted) {
    loadRig(rigs::grey() + rigs::color());
    throwFromCall("Grabber::openDev", "in use");
    win32::runInside("MessageBoxW", [] { channelRegistry().close(nullptr); });
    EXPECT_EQ(ask(), 0);
    win32::runInside("MessageBoxW", {});
    EXPECT_EQ(library_log::count("ExitLibrary"), 0U);
}

}  // namespace
