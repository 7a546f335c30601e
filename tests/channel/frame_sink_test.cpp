// SPDX-License-Identifier: MIT
// The default video format, and the sink for each pixel type.
#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* greySink =
    "FrameHandlerSink::create(5,1,{30303859-0000-0010-8000-00AA00389B71}) -> sink";
constexpr const char* rgb32Sink =
    "FrameHandlerSink::create(5,1,{E436EB7E-524F-11CE-9F53-0020AF0BA770}) -> sink";
constexpr const char* rgb24Sink =
    "FrameHandlerSink::create(5,1,{E436EB7D-524F-11CE-9F53-0020AF0BA770}) -> sink";

class FrameSink : public CChannelTest {
protected:
    static std::vector<std::string> created() {
        return library_log::lines({"FrameHandlerSink::create"});
    }
    static std::vector<std::string> chosen() {
        return library_log::lines({"Grabber::setVideoFormat"});
    }
    // A channel of a camera that offers these formats.
    CVideoChannel& withFormats(std::string_view formats, std::string_view rest = "") {
        loadRig(rigs::camera("SIM Camera", "1", formats, rest));
        return makeRecordedChannel();
    }
};

TEST_F(FrameSink, IsGreyForACameraThatOffersGreyAlone) {
    CVideoChannel& channel = withFormats("\"Y800 (6x4)\", \"Y800 (8x4)\"");
    EXPECT_EQ(property(channel, "pixelformat"), "Mono8");
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, SetsEveryGreyFormatInTurn) {
    CVideoChannel& channel =
        withFormats("\"Y800 (6x4)\", \"BY8 (6x4)\", \"Y800 (8x4)\", \"RGB24 (8x4)\"");
    EXPECT_THAT(chosen(), ElementsAre("Grabber::setVideoFormat(Y800 (6x4)) -> true",
                                      "Grabber::setVideoFormat(Y800 (8x4)) -> true"));
    EXPECT_EQ(property(channel, "videoformat"), "Y800 (8x4)");
    EXPECT_EQ(property(channel, "pixelformat"), "Raw8");
    EXPECT_THAT(created(), ElementsAre(greySink));
    EXPECT_EQ(channel.width(), 8);
}

TEST_F(FrameSink, IsRgb32ForRawOfACameraWithoutGrey) {
    CVideoChannel& channel = withFormats("\"BY8 (8x4)\", \"RGB24 (8x4)\"");
    EXPECT_THAT(chosen(), IsEmpty());
    EXPECT_EQ(property(channel, "pixelformat"), "Raw8");
    EXPECT_THAT(created(), ElementsAre(rgb32Sink));
}

TEST_F(FrameSink, IsRgb32ForRawOnceAnotherFormatIsChosen) {
    CVideoChannel& channel = withFormats("\"BY8 (8x4)\", \"Y800 (8x4)\"");
    recordAll();
    EXPECT_EQ(setProperty(channel, "videoformat", "BY8 (8x4)"), "");
    EXPECT_THAT(created(), ElementsAre(rgb32Sink));
    recordAll();
    EXPECT_EQ(setProperty(channel, "videoformat", "Y800 (8x4)"), "");
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, IsRgb24ForColor) {
    CVideoChannel& channel = withFormats("\"RGB24 (8x4)\"");
    recordAll();
    EXPECT_EQ(setProperty(channel, "pixelformat", "rgb24"), "");
    EXPECT_THAT(created(), ElementsAre(rgb24Sink));
}

TEST_F(FrameSink, IsGreyForMonoWhateverTheFormat) {
    CVideoChannel& channel = withFormats("\"RGB24 (8x4)\"");
    recordAll();
    EXPECT_EQ(setProperty(channel, "pixelformat", "MONO8"), "");
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, IsMadeAgainForATextThatIsRefused) {
    CVideoChannel& channel = withFormats("\"RGB24 (8x4)\"");
    recordAll();
    EXPECT_EQ(setProperty(channel, "pixelformat", "raw16"),
              "Unsupported pixelformat:\"raw16\". Valid formats are \"mono8\", \"raw8\" and "
              "\"rgb24\".");
    EXPECT_THAT(created(), ElementsAre(rgb32Sink));
}

TEST_F(FrameSink, DeliversContinuouslyAndGoesToTheGrabber) {
    withFormats("\"Y800 (8x4)\"");
    EXPECT_THAT(library_log::lines({"FrameHandlerSink::", "Grabber::setSinkType"}),
                ElementsAre(greySink, "FrameHandlerSink::setSnapMode(false)",
                            "Grabber::setSinkType(sink) -> true"));
}

TEST_F(FrameSink, IsStoredBeforeTheOldOneIsReleased) {
    CVideoChannel& channel = withFormats("\"Y800 (8x4)\"");
    virtualCamerasFailCall("Grabber::setSinkType", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    EXPECT_EQ(setProperty(channel, "pixelformat", "mono8"), "");
    recordAll();
    EXPECT_EQ(setProperty(channel, "pixelformat", "mono8"), "");
    EXPECT_THAT(
        library_log::operations({"FrameHandlerSink::", "Grabber::setSinkType"}),
        ElementsAre("FrameHandlerSink::create", "FrameHandlerSink::setSnapMode",
                    "Grabber::setSinkType",
                    // The grabber's own old sink, then the channel's.
                    "FrameHandlerSink::~FrameHandlerSink", "FrameHandlerSink::~FrameHandlerSink"));
    EXPECT_EQ(alive().sinks, 1U);
}

TEST_F(FrameSink, MayBeRefusedByTheGrabber) {
    CVideoChannel& channel = withFormats("\"Y800 (8x4)\"");
    virtualCamerasFailCall("Grabber::setSinkType", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    EXPECT_EQ(setProperty(channel, "pixelformat", "mono8"), "");
}

TEST_F(FrameSink, MayNotBeMadeAtAll) {
    loadRig(rigs::grey());
    const DShowLib::VideoCaptureDeviceItem item = device();
    virtualCamerasFailCall("FrameHandlerSink::create", 1, 0, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    recordAll();
    CVideoChannel channel(item);
    EXPECT_THAT(library_log::operations({"FrameHandlerSink::", "Grabber::setSinkType"}),
                ElementsAre("FrameHandlerSink::create"));
    EXPECT_EQ(setProperty(channel, "pixelformat", "rgb24"), "");
    CHostMemory frame(32);
    CHostStatus status;
    EXPECT_EQ(channel.CopyFrame(nullptr, frame.data(), status), 0);
    EXPECT_EQ(status.value(), 4096U);
}

TEST_F(FrameSink, HasItsThrownTextSwallowedByASet) {
    CVideoChannel& channel = withFormats("\"Y800 (8x4)\"");
    virtualCamerasFailCall("FrameHandlerSink::create", 1, 1, VIRTUAL_CAMERAS_FAIL_THROW, 0, "no");
    EXPECT_EQ(setProperty(channel, "pixelformat", "rgb24"), "Unknown property \"pixelformat\"");
}

TEST_F(FrameSink, LeavesTheFormatAloneWithoutAList) {
    CVideoChannel& channel = withFormats("");
    EXPECT_THAT(chosen(), IsEmpty());
    EXPECT_EQ(property(channel, "pixelformat"), "Mono8");
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, LeavesTheFormatAloneForAMissingList) {
    loadRig(rigs::color());
    const DShowLib::VideoCaptureDeviceItem item = device();
    virtualCamerasFailCall("Grabber::getAvailableVideoFormats_", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE,
                           0, "");
    recordAll();
    CVideoChannel channel(item);
    EXPECT_EQ(property(channel, "pixelformat"), "Mono8");
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, AsksForTheFormatsOfTheCurrentNorm) {
    loadRig(
        "[[camera]]\nname = \"SIM Video\"\nserial = \"1\"\ncurrent_norm = \"NTSC_M\"\n"
        "[[camera.norm]]\nname = \"PAL_B\"\nformats = [\"Y800 (8x6)\"]\n"
        "[[camera.norm]]\nname = \"NTSC_M\"\nformats = [\"Y800 (8x4)\"]\n");
    makeRecordedChannel();
    EXPECT_THAT(chosen(), ElementsAre("Grabber::setVideoFormat(Y800 (8x4)) -> true"));
}

TEST_F(FrameSink, KnowsGreyByItsFirstFourCharactersAlone) {
    // Each would be made current if it were taken for grey.
    CVideoChannel& channel = withFormats(
        "\"y800 (8x4)\", { name = \"Y80\", width = 8, height = 4 }, \" Y800 (8x4)\", "
        "{ name = \"\u00dd800\", width = 8, height = 4 }, \"Y80 0 (8x4)\"");
    EXPECT_THAT(chosen(), IsEmpty());
    EXPECT_EQ(property(channel, "pixelformat"), "Raw8");
    EXPECT_THAT(created(), ElementsAre(rgb32Sink));
}

TEST_F(FrameSink, KnowsGreyWithAnythingBehindTheFourCharacters) {
    withFormats("{ name = \"Y800\", width = 8, height = 4 }, \"Y8000 (8x4)\", \"Y800x (8x4)\"");
    EXPECT_EQ(chosen().size(), 3U);
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, GoesByTheWideTextOfAFormat) {
    CVideoChannel& channel = withFormats(
        "{ name = \"Y800 (8x4)\", text = \"BY8 (8x4)\" }, "
        "{ name = \"BY8 (6x4)\", text = \"Y800 (6x4)\" }");
    EXPECT_THAT(chosen(), ElementsAre("Grabber::setVideoFormat(BY8 (6x4)) -> true"));
    EXPECT_EQ(property(channel, "pixelformat"), "Raw8");
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, KeepsTheOriginOfRawThroughOtherPixelTypes) {
    // The origin that is kept over a change of type is read by the raw copy alone.
    CVideoChannel& channel = withFormats("\"RGB24 (8x4)\", \"Y800 (8x4)\"");
    EXPECT_EQ(setProperty(channel, "videoformat", "RGB24 (8x4)"), "");
    EXPECT_EQ(setProperty(channel, "pixelformat", "RGB24"), "");
    EXPECT_EQ(setProperty(channel, "videoformat", "Y800 (8x4)"), "");
    recordAll();
    EXPECT_EQ(setProperty(channel, "pixelformat", "Raw8"), "");
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, IsKeptOverStopAndStart) {
    CVideoChannel& channel = withFormats("\"Y800 (8x4)\"");
    recordAll();
    CHostText text;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(channel.StartAcquisition(text), 0);
        EXPECT_EQ(channel.StopAcquisition(text), 0);
    }
    EXPECT_THAT(created(), IsEmpty());
    EXPECT_THAT(library_log::lines({"Grabber::setSinkType"}), IsEmpty());
}

TEST_F(FrameSink, IsMadeAgainWhileLiveOnlyForAFlagThatWasRaisedBefore) {
    CVideoChannel& channel = withFormats("\"Y800 (8x4)\"");
    CHostText text;
    ASSERT_EQ(channel.StartAcquisition(text), 0);
    recordAll();
    EXPECT_EQ(setProperty(channel, "pixelformat", "mono8"),
              "Can not set pixelformat, while live video is running.");
    EXPECT_THAT(created(), IsEmpty());
    ASSERT_EQ(channel.StopAcquisition(text), 0);
    EXPECT_EQ(setProperty(channel, "pixelformat", "mono8"), "");
    ASSERT_EQ(channel.StartAcquisition(text), 0);
    recordAll();
    EXPECT_EQ(setProperty(channel, "pixelformat", "mono8"),
              "Can not set pixelformat, while live video is running.");
    EXPECT_THAT(created(), ElementsAre(greySink));
    // The grabber goes on with the sink that it has.
    EXPECT_EQ(waitForDelivery(channel, "1").status, 0U);
    CHostMemory frame(32);
    CHostStatus status;
    EXPECT_EQ(channel.CopyFrame(text, frame.data(), status), 0);
    EXPECT_EQ(status.value(), 0U);
    EXPECT_FALSE(frame.isUntouched());
    EXPECT_EQ(channel.StopAcquisition(text), 0);
}

class SinkWhileLive : public CChannelTest {
protected:
    // A colour camera that delivers RGB24; the flag for a new sink is up.
    CVideoChannel& liveInColor() {
        loadRig(rigs::color());
        CVideoChannel& channel = makeChannel();
        EXPECT_EQ(setProperty(channel, "pixelformat", "RGB24"), "");
        start(channel);
        return channel;
    }
    static void expectAWholeFrame(CVideoChannel& channel) {
        ASSERT_EQ(waitForDelivery(channel, "3C4D").status, 0U);
        CHostMemory frame(96);
        EXPECT_EQ(copyFrame(channel, frame), 0U);
        EXPECT_EQ(frame[24], 0x02);
        EXPECT_EQ(frame[48], 0x01);
        EXPECT_EQ(frame[95], 0x80);
    }
    static void refusePixelFormat(CVideoChannel& channel) {
        EXPECT_EQ(setProperty(channel, "pixelformat", "Mono8"),
                  "Can not set pixelformat, while live video is running.");
    }
};

TEST_F(SinkWhileLive, GoesOnDeliveringAfterARefusedSet) {
    CVideoChannel& channel = liveInColor();
    refusePixelFormat(channel);
    expectAWholeFrame(channel);
    EXPECT_EQ(alive().sinks, 1U);
}

TEST_F(SinkWhileLive, StaysInUseOverStopAndStart) {
    CVideoChannel& channel = liveInColor();
    refusePixelFormat(channel);
    stop(channel);
    start(channel);
    expectAWholeFrame(channel);
}

TEST_F(SinkWhileLive, HasItsRingUnlockedByAStopAfterARefusedSet) {
    CVideoChannel& channel = liveInColor();
    ASSERT_EQ(waitForDelivery(channel, "3C4D").status, 0U);
    refusePixelFormat(channel);
    recordAll();
    stop(channel);
    EXPECT_EQ(library_log::operations({"MemBuffer::unlock"}).size(), 6U);
    EXPECT_EQ(virtualCamerasBufferLocks("3C4D", 0), 0);
}

TEST_F(SinkWhileLive, KeepsTheOriginOfRawThatItWasMadeFor) {
    // The norm's format changes without a new sink: grey frames go on coming.
    loadRig(
        "[[camera]]\nname = \"SIM Video\"\nserial = \"1\"\ncurrent_norm = \"GREY\"\n"
        "scene = \"counter\"\n"
        "[[camera.norm]]\nname = \"GREY\"\nformats = [\"BY8 (8x4)\", \"Y800 (8x4)\"]\n"
        "[[camera.norm]]\nname = \"COLOR\"\nformats = [\"RGB24 (8x4)\"]\n");
    CVideoChannel& channel = makeChannel();
    EXPECT_EQ(setProperty(channel, "pixelformat", "raw8"), "");
    EXPECT_EQ(setProperty(channel, "videonorm", "COLOR"), "");
    start(channel);
    EXPECT_EQ(setProperty(channel, "pixelformat", "raw8"),
              "Can not set pixelformat, while live video is running.");
    ASSERT_EQ(waitForDelivery(channel, "1").status, 0U);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    // Moved by one row and one column, as grey frames are: the rest is untouched.
    EXPECT_TRUE(frame.isUntouched(7, 1));
    EXPECT_TRUE(frame.isUntouched(24, 8));
    EXPECT_FALSE(frame.isUntouched(0, 7));
}

}  // namespace
