// SPDX-License-Identifier: MIT
// Where the adapter calls its silent trace, and with what.
#include "tests/channel/trace_recorder.h"
#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

using ::testing::ElementsAre;

class Trace : public CChannelTest {
protected:
    void SetUp() override {
        CChannelTest::SetUp();
        trace_recorder::clear();
    }
    void TearDown() override {
        for (const TraceCall& call : trace_recorder::calls()) {
            EXPECT_EQ(call.file, "orvlum.txt");
        }
        CChannelTest::TearDown();
    }

    // The one call since the last clear.
    static TraceCall only() {
        const auto calls = trace_recorder::calls();
        EXPECT_EQ(calls.size(), 1U);
        return calls.empty() ? TraceCall{} : calls[0];
    }
};

TEST_F(Trace, MarksEveryCallOfTheExport) {
    loadRig("");
    VideoChannelRecord record{};
    for (int call = 0; call < 2; ++call) {
        trace_recorder::clear();
        GetVideoChannel(nullptr, 0, &record);
        EXPECT_EQ(only().format, "%s \n");
        EXPECT_THAT(only().texts, ElementsAre("\n*** Starting new Session ***"));
    }
}

TEST_F(Trace, MarksEveryCallOfTheExportWithoutTheLibraryToo) {
    win32::setFiles({});
    VideoChannelRecord record{};
    GetVideoChannel(nullptr, 0, &record);
    EXPECT_EQ(only().format, "%s \n");
    EXPECT_THAT(only().texts, ElementsAre("\n*** Starting new Session ***"));
}

TEST_F(Trace, NamesTheModelAndTheSinkForGrey) {
    loadRig(rigs::grey("model = \"Mono\u00e9 23\""));
    makeChannel();
    EXPECT_EQ(only().format, "%s %s \n");
    EXPECT_THAT(only().texts, ElementsAre("Mono\u00e9 23", " CreateNewSink default eY800\n"));
}

TEST_F(Trace, NamesTheModelAndTheSinkForRawFromGrey) {
    loadRig(rigs::raw());
    makeChannel();
    EXPECT_EQ(only().format, "%s %s \n");
    EXPECT_THAT(only().texts, ElementsAre("SIM Raw 23", " CreateNewSink ck_pt_RAW8 eY800\n"));
}

TEST_F(Trace, NamesTheModelAndTheSinkForRawFromColor) {
    loadRig(rigs::color());
    makeChannel();
    EXPECT_EQ(only().format, "%s %s \n");
    EXPECT_THAT(only().texts, ElementsAre("SIM Color 23", " CreateNewSink ck_pt_RAW8 eRGB32\n"));
}

TEST_F(Trace, NamesTheModelAndTheSinkForColor) {
    loadRig(rigs::color());
    CVideoChannel& channel = makeChannel();
    trace_recorder::clear();
    EXPECT_EQ(setProperty(channel, "pixelformat", "RGB24"), "");
    EXPECT_EQ(only().format, "%s %s \n");
    EXPECT_THAT(only().texts, ElementsAre("SIM Color 23", " CreateNewSink ck_pt_RAW8 eRGB24 \n"));
}

TEST_F(Trace, StandsBetweenTheMakingOfASinkAndItsUse) {
    loadRig(rigs::grey());
    makeRecordedChannel();
    const auto calls = library_log::operations();
    const std::uint64_t at = only().libraryCalls;
    ASSERT_GT(calls.size(), at);
    EXPECT_EQ(calls[at], "FrameHandlerSink::setSnapMode");
}

TEST_F(Trace, MarksAStartThatStartedAndStopsCom) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    trace_recorder::clear();
    // A thread of its own, on which nobody has started COM.
    CHostThread host([&] {
        CHostText text;
        EXPECT_EQ(channel.StartAcquisition(text), 0);
        EXPECT_EQ(channel.StopAcquisition(text), 0);
    });
    host.join();
    EXPECT_EQ(only().format, "%s");
    EXPECT_TRUE(only().wide);
    EXPECT_THAT(only().texts, ElementsAre("startAcquisition CoInit: stopped\n"));
}

TEST_F(Trace, MarksAFailedStartThatStartedComToo) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    virtualCamerasFailCall("Grabber::startLive", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    trace_recorder::clear();
    win32::injectResults("CoInitializeEx", {S_OK});
    CHostText text;
    EXPECT_EQ(channel.StartAcquisition(text), 1);
    EXPECT_THAT(only().texts, ElementsAre("startAcquisition CoInit: stopped\n"));
}

TEST_F(Trace, SaysNothingOfAStartWhoseThreadHadComAlready) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    trace_recorder::clear();
    win32::injectResults("CoInitializeEx", {S_FALSE, S_FALSE, RPC_E_CHANGED_MODE});
    CHostText text;
    EXPECT_EQ(channel.StartAcquisition(text), 0);
    EXPECT_EQ(channel.StopAcquisition(text), 0);
    EXPECT_EQ(channel.StartAcquisition(text), 0);
    EXPECT_TRUE(trace_recorder::calls().empty());
    CoUninitialize();
}

TEST_F(Trace, MarksATimeOut) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    trace_recorder::clear();
    EXPECT_EQ(waitInVain(channel).status, 4096U);
    EXPECT_EQ(only().format, "%s \n");
    EXPECT_THAT(only().texts, ElementsAre("Timeout"));
}

TEST_F(Trace, SaysNothingOfAWaitThatEndsOtherwise) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    trace_recorder::clear();
    win32::injectResults("WaitForSingleObject", {WAIT_OBJECT_0, WAIT_FAILED, WAIT_ABANDONED});
    waitFrame(channel);
    waitFrame(channel);
    waitFrame(channel);
    EXPECT_TRUE(trace_recorder::calls().empty());
}

}  // namespace
