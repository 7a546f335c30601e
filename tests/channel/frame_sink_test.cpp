// SPDX-License-Identifier: MIT
// The default video format, and the sink for each pixel type.
#include "tests/support/one_channel.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* greySink =
    "FrameHandlerSink::create(5,1,{30303859-0000-0010-8000-00AA00389B71}) -> sink";
constexpr const char* rgb32Sink =
    "FrameHandlerSink::create(5,1,{E436EB7E-524F-11CE-9F53-0020AF0BA770}) -> sink";
constexpr const char* rgb24Sink =
    "FrameHandlerSink::create(5,1,{E436EB7D-524F-11CE-9F53-0020AF0BA770}) -> sink";

class FrameSink : public CGreyCamera {
protected:
    static std::vector<std::string> created() {
        return library_log::lines({"FrameHandlerSink::create"});
    }
    static std::vector<std::string> chosen() {
        return library_log::lines({"Grabber::setVideoFormat"});
    }
    // A channel of a camera that offers these formats.
    CVideoChannel& withFormats(std::string_view formats, std::string_view rest = "") {
        return openRecorded(rigs::camera("SIM Camera", "1", formats, rest));
    }
};

TEST_F(FrameSink, IsGreyForACameraThatOffersGreyAlone) {
    withFormats("\"Y800 (6x4)\", \"Y800 (8x4)\"");
    EXPECT_EQ(get("pixelformat"), accepted("Mono8"));
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, KnowsForWhatItWasMade) {
    open();
    DShowLib::Grabber grabber;
    CFrameSink sink(grabber);
    EXPECT_FALSE(sink.isFor(PixelType::mono8));
    EXPECT_EQ(sink.outputSize(), std::nullopt);
    sink.CreateNewSink(PixelType::mono8);
    EXPECT_TRUE(sink.isFor(PixelType::mono8));
    EXPECT_FALSE(sink.isFor(PixelType::rgb24));
}

TEST_F(FrameSink, SetsEveryGreyFormatInTurn) {
    withFormats("\"Y800 (6x4)\", \"BY8 (6x4)\", \"Y800 (8x4)\", \"RGB24 (8x4)\"");
    EXPECT_THAT(chosen(), ElementsAre("Grabber::setVideoFormat(Y800 (6x4)) -> true",
                                      "Grabber::setVideoFormat(Y800 (8x4)) -> true"));
    EXPECT_EQ(get("videoformat"), accepted("Y800 (8x4)"));
    EXPECT_EQ(get("pixelformat"), accepted("Raw8"));
    EXPECT_THAT(created(), ElementsAre(greySink));
    EXPECT_EQ(channel().width(), 8);
}

TEST_F(FrameSink, IsRgb32ForRawOfACameraWithoutGrey) {
    withFormats("\"BY8 (8x4)\", \"RGB24 (8x4)\"");
    EXPECT_THAT(chosen(), IsEmpty());
    EXPECT_EQ(get("pixelformat"), accepted("Raw8"));
    EXPECT_THAT(created(), ElementsAre(rgb32Sink));
}

TEST_F(FrameSink, IsRgb32ForRawOnceAnotherFormatIsChosen) {
    withFormats("\"BY8 (8x4)\", \"Y800 (8x4)\"");
    recordAll();
    EXPECT_EQ(set("videoformat", "BY8 (8x4)"), accepted());
    EXPECT_THAT(created(), ElementsAre(rgb32Sink));
    recordAll();
    EXPECT_EQ(set("videoformat", "Y800 (8x4)"), accepted());
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, IsRgb24ForColor) {
    withFormats("\"RGB24 (8x4)\"");
    recordAll();
    EXPECT_EQ(set("pixelformat", "rgb24"), accepted());
    EXPECT_THAT(created(), ElementsAre(rgb24Sink));
}

TEST_F(FrameSink, IsGreyForMonoWhateverTheFormat) {
    withFormats("\"RGB24 (8x4)\"");
    recordAll();
    EXPECT_EQ(set("pixelformat", "MONO8"), accepted());
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, IsMadeAgainForATextThatIsRefused) {
    withFormats("\"RGB24 (8x4)\"");
    recordAll();
    EXPECT_EQ(
        set("pixelformat", "raw16"),
        refused("Unsupported pixelformat:\"raw16\". Valid formats are \"mono8\", \"raw8\" and "
                "\"rgb24\"."));
    EXPECT_THAT(created(), ElementsAre(rgb32Sink));
}

TEST_F(FrameSink, DeliversContinuouslyAndGoesToTheGrabber) {
    withFormats("\"Y800 (8x4)\"");
    EXPECT_THAT(library_log::lines({"FrameHandlerSink::", "Grabber::setSinkType"}),
                ElementsAre(greySink, "FrameHandlerSink::setSnapMode(false)",
                            "Grabber::setSinkType(sink) -> true"));
}

TEST_F(FrameSink, IsStoredBeforeTheOldOneIsReleased) {
    withFormats("\"Y800 (8x4)\"");
    refuseCall("Grabber::setSinkType");
    EXPECT_EQ(set("pixelformat", "mono8"), accepted());
    recordAll();
    EXPECT_EQ(set("pixelformat", "mono8"), accepted());
    EXPECT_THAT(
        library_log::operations({"FrameHandlerSink::", "Grabber::setSinkType"}),
        ElementsAre("FrameHandlerSink::create", "FrameHandlerSink::setSnapMode",
                    "Grabber::setSinkType",
                    // The grabber's own old sink, then the channel's.
                    "FrameHandlerSink::~FrameHandlerSink", "FrameHandlerSink::~FrameHandlerSink"));
    EXPECT_EQ(alive().sinks, 1U);
}

TEST_F(FrameSink, MayBeRefusedByTheGrabber) {
    withFormats("\"Y800 (8x4)\"");
    refuseCall("Grabber::setSinkType");
    EXPECT_EQ(set("pixelformat", "mono8"), accepted());
}

TEST_F(FrameSink, MayNotBeMadeAtAll) {
    refuseCall("FrameHandlerSink::create", 1, 0);
    openRecorded();
    EXPECT_THAT(library_log::operations({"FrameHandlerSink::", "Grabber::setSinkType"}),
                ElementsAre("FrameHandlerSink::create"));
    EXPECT_EQ(set("pixelformat", "rgb24"), accepted());
    expectNoFrame();
}

TEST_F(FrameSink, HasItsThrownTextSwallowedByASet) {
    withFormats("\"Y800 (8x4)\"");
    throwFromCall("FrameHandlerSink::create", "no");
    EXPECT_EQ(set("pixelformat", "rgb24"), refused("Unknown property \"pixelformat\""));
}

TEST_F(FrameSink, LeavesTheFormatAloneWithoutAList) {
    withFormats("");
    EXPECT_THAT(chosen(), IsEmpty());
    EXPECT_EQ(get("pixelformat"), accepted("Mono8"));
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, LeavesTheFormatAloneForAMissingList) {
    loadRig(rigs::color());
    refuseCall("Grabber::getAvailableVideoFormats_");
    openRecorded();
    EXPECT_EQ(get("pixelformat"), accepted("Mono8"));
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, AsksForTheFormatsOfTheCurrentNorm) {
    openRecorded(
        "[[camera]]\nname = \"SIM Video\"\nserial = \"1\"\ncurrent_norm = \"NTSC_M\"\n"
        "[[camera.norm]]\nname = \"PAL_B\"\nformats = [\"Y800 (8x6)\"]\n"
        "[[camera.norm]]\nname = \"NTSC_M\"\nformats = [\"Y800 (8x4)\"]\n");
    EXPECT_THAT(chosen(), ElementsAre("Grabber::setVideoFormat(Y800 (8x4)) -> true"));
}

TEST_F(FrameSink, KnowsGreyByItsFirstFourCharactersAlone) {
    // Each would be made current if it were taken for grey.
    withFormats(
        "\"y800 (8x4)\", { name = \"Y80\", width = 8, height = 4 }, \" Y800 (8x4)\", "
        "{ name = \"\u00dd800\", width = 8, height = 4 }, \"Y80 0 (8x4)\"");
    EXPECT_THAT(chosen(), IsEmpty());
    EXPECT_EQ(get("pixelformat"), accepted("Raw8"));
    EXPECT_THAT(created(), ElementsAre(rgb32Sink));
}

TEST_F(FrameSink, KnowsGreyWithAnythingBehindTheFourCharacters) {
    withFormats("{ name = \"Y800\", width = 8, height = 4 }, \"Y8000 (8x4)\", \"Y800x (8x4)\"");
    EXPECT_EQ(chosen().size(), 3U);
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, GoesByTheWideTextOfAFormat) {
    withFormats(
        "{ name = \"Y800 (8x4)\", text = \"BY8 (8x4)\" }, "
        "{ name = \"BY8 (6x4)\", text = \"Y800 (6x4)\" }");
    EXPECT_THAT(chosen(), ElementsAre("Grabber::setVideoFormat(BY8 (6x4)) -> true"));
    EXPECT_EQ(get("pixelformat"), accepted("Raw8"));
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, KeepsTheOriginOfRawThroughOtherPixelTypes) {
    // The origin that is kept over a change of type is read by the raw copy alone.
    withFormats("\"RGB24 (8x4)\", \"Y800 (8x4)\"");
    EXPECT_EQ(set("videoformat", "RGB24 (8x4)"), accepted());
    EXPECT_EQ(set("pixelformat", "RGB24"), accepted());
    EXPECT_EQ(set("videoformat", "Y800 (8x4)"), accepted());
    recordAll();
    EXPECT_EQ(set("pixelformat", "Raw8"), accepted());
    EXPECT_THAT(created(), ElementsAre(greySink));
}

TEST_F(FrameSink, IsKeptOverStopAndStart) {
    withFormats("\"Y800 (8x4)\"");
    recordAll();
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(start(), accepted());
        EXPECT_EQ(stop(), accepted());
    }
    EXPECT_THAT(created(), IsEmpty());
    EXPECT_THAT(library_log::lines({"Grabber::setSinkType"}), IsEmpty());
}

TEST_F(FrameSink, IsMadeAgainWhileLiveOnlyForAFlagThatWasRaisedBefore) {
    withFormats("\"Y800 (8x4)\"");
    ASSERT_EQ(start(), accepted());
    recordAll();
    EXPECT_EQ(set("pixelformat", "mono8"),
              refused("Can not set pixelformat, while live video is running."));
    EXPECT_THAT(created(), IsEmpty());
    ASSERT_EQ(stop(), accepted());
    EXPECT_EQ(set("pixelformat", "mono8"), accepted());
    ASSERT_EQ(start(), accepted());
    recordAll();
    EXPECT_EQ(set("pixelformat", "mono8"),
              refused("Can not set pixelformat, while live video is running."));
    EXPECT_THAT(created(), ElementsAre(greySink));
    // The grabber goes on with the sink that it has.
    EXPECT_FALSE(receiveFrame().isUntouched());
    EXPECT_EQ(stop(), accepted());
}

// In RGB24 the flag for a new sink is up.
class SinkWhileLive : public CGreyCamera {
protected:
    void expectAWholeFrame() {
        const CHostMemory& frame = receiveFrame(96);
        EXPECT_EQ(frame[24], 0x02);
        EXPECT_EQ(frame[48], 0x01);
        EXPECT_EQ(frame[95], 0x80);
    }
    void refusePixelFormat() const {
        EXPECT_EQ(set("pixelformat", "Mono8"),
                  refused("Can not set pixelformat, while live video is running."));
    }
};

TEST_F(SinkWhileLive, GoesOnDeliveringAfterARefusedSet) {
    openLiveInRgb24();
    refusePixelFormat();
    expectAWholeFrame();
    EXPECT_EQ(alive().sinks, 1U);
}

TEST_F(SinkWhileLive, StaysInUseOverStopAndStart) {
    openLiveInRgb24();
    refusePixelFormat();
    EXPECT_EQ(stop(), accepted());
    EXPECT_EQ(start(), accepted());
    expectAWholeFrame();
}

TEST_F(SinkWhileLive, HasItsRingUnlockedByAStopAfterARefusedSet) {
    openLiveInRgb24();
    ASSERT_EQ(waitForDelivery(), done());
    refusePixelFormat();
    recordAll();
    EXPECT_EQ(stop(), accepted());
    EXPECT_EQ(library_log::operations({"MemBuffer::unlock"}).size(), 6U);
    EXPECT_EQ(lockedBuffers("3C4D"), 0);
}

TEST_F(SinkWhileLive, KeepsTheOriginOfRawThatItWasMadeFor) {
    // The norm's format changes without a new sink: grey frames go on coming.
    open(
        "[[camera]]\nname = \"SIM Video\"\nserial = \"1\"\ncurrent_norm = \"GREY\"\n"
        "scene = \"counter\"\n"
        "[[camera.norm]]\nname = \"GREY\"\nformats = [\"BY8 (8x4)\", \"Y800 (8x4)\"]\n"
        "[[camera.norm]]\nname = \"COLOR\"\nformats = [\"RGB24 (8x4)\"]\n");
    EXPECT_EQ(set("pixelformat", "raw8"), accepted());
    EXPECT_EQ(set("videonorm", "COLOR"), accepted());
    EXPECT_EQ(start(), accepted());
    EXPECT_EQ(set("pixelformat", "raw8"),
              refused("Can not set pixelformat, while live video is running."));
    const CHostMemory& frame = receiveFrame();
    // Moved by one row and one column, as grey frames are: the rest is untouched.
    EXPECT_TRUE(frame.isUntouched(7, 1));
    EXPECT_TRUE(frame.isUntouched(24, 8));
    EXPECT_FALSE(frame.isUntouched(0, 7));
}

}  // namespace
