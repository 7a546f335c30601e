// SPDX-License-Identifier: MIT
// Where the adapter calls its silent trace, and with what.
#include "tests/channel/trace_recorder.h"
#include "tests/support/one_channel.h"

namespace {

using ::testing::ElementsAre;

class Trace : public CGreyCamera {
protected:
    void SetUp() override {
        CGreyCamera::SetUp();
        trace_recorder::clear();
    }
    void TearDown() override {
        for (const TraceCall& call : trace_recorder::calls()) {
            EXPECT_EQ(call.file, "orvlum.txt");
        }
        CGreyCamera::TearDown();
    }

    // The one call since the last clear.
    static TraceCall only() {
        const auto calls = trace_recorder::calls();
        EXPECT_EQ(calls.size(), 1U);
        return calls.empty() ? TraceCall{} : calls[0];
    }
    static void expectOnly(const char* format, const std::vector<std::string>& texts) {
        EXPECT_EQ(only().format, format);
        EXPECT_EQ(only().texts, texts);
    }
    // From here on, of a channel that is there.
    void openThenTrace() {
        open();
        trace_recorder::clear();
    }
};

TEST_F(Trace, MarksEveryCallOfTheExport) {
    loadRig("");
    VideoChannelRecord record{};
    for (int call = 0; call < 2; ++call) {
        trace_recorder::clear();
        GetVideoChannel(nullptr, 0, &record);
        expectOnly("%s \n", {"\n*** Starting new Session ***"});
    }
}

TEST_F(Trace, MarksEveryCallOfTheExportWithoutTheLibraryToo) {
    win32::setFiles({});
    VideoChannelRecord record{};
    GetVideoChannel(nullptr, 0, &record);
    expectOnly("%s \n", {"\n*** Starting new Session ***"});
}

TEST_F(Trace, NamesTheModelAndTheSinkForGrey) {
    open(rigs::grey("model = \"Mono\u00e9 23\""));
    expectOnly("%s %s \n", {"Mono\u00e9 23", " CreateNewSink default eY800\n"});
}

TEST_F(Trace, NamesTheModelAndTheSinkForRawFromGrey) {
    open(rigs::raw());
    expectOnly("%s %s \n", {"SIM Raw 23", " CreateNewSink ck_pt_RAW8 eY800\n"});
}

TEST_F(Trace, NamesTheModelAndTheSinkForRawFromColor) {
    open(rigs::color());
    expectOnly("%s %s \n", {"SIM Color 23", " CreateNewSink ck_pt_RAW8 eRGB32\n"});
}

TEST_F(Trace, NamesTheModelAndTheSinkForColor) {
    open(rigs::color());
    trace_recorder::clear();
    EXPECT_EQ(set("pixelformat", "RGB24"), accepted());
    expectOnly("%s %s \n", {"SIM Color 23", " CreateNewSink ck_pt_RAW8 eRGB24 \n"});
}

TEST_F(Trace, StandsBetweenTheMakingOfASinkAndItsUse) {
    openRecorded();
    const auto calls = library_log::operations();
    const std::uint64_t at = only().libraryCalls;
    ASSERT_GT(calls.size(), at);
    EXPECT_EQ(calls[at], "FrameHandlerSink::setSnapMode");
}

TEST_F(Trace, MarksAStartThatStartedAndStopsCom) {
    openThenTrace();
    // A thread of its own, on which nobody has started COM.
    CHostThread host([&] {
        EXPECT_EQ(start(), accepted());
        EXPECT_EQ(stop(), accepted());
    });
    host.join();
    EXPECT_EQ(only().format, "%s");
    EXPECT_TRUE(only().wide);
    EXPECT_THAT(only().texts, ElementsAre("startAcquisition CoInit: stopped\n"));
}

TEST_F(Trace, MarksAFailedStartThatStartedComToo) {
    open();
    refuseCall("Grabber::startLive");
    trace_recorder::clear();
    win32::injectResults("CoInitializeEx", {S_OK});
    EXPECT_EQ(start().result, 1);
    EXPECT_THAT(only().texts, ElementsAre("startAcquisition CoInit: stopped\n"));
}

TEST_F(Trace, SaysNothingOfAStartWhoseThreadHadComAlready) {
    openThenTrace();
    win32::injectResults("CoInitializeEx", {S_FALSE, S_FALSE, RPC_E_CHANGED_MODE});
    EXPECT_EQ(start(), accepted());
    EXPECT_EQ(stop(), accepted());
    EXPECT_EQ(start(), accepted());
    EXPECT_TRUE(trace_recorder::calls().empty());
    CoUninitialize();
}

TEST_F(Trace, MarksATimeOut) {
    openThenTrace();
    EXPECT_EQ(waitInVain(), noFrame());
    expectOnly("%s \n", {"Timeout"});
}

TEST_F(Trace, SaysNothingOfAWaitThatEndsOtherwise) {
    openThenTrace();
    win32::injectResults("WaitForSingleObject", {WAIT_OBJECT_0, WAIT_FAILED, WAIT_ABANDONED});
    wait();
    wait();
    wait();
    EXPECT_TRUE(trace_recorder::calls().empty());
}

}  // namespace
