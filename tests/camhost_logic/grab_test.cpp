// SPDX-License-Identifier: MIT
// camhost grab on a made-up adapter with a clock of its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "camhost/base/files.h"
#include "camhost/pictures/png_text.h"
#include "tests/camhost_logic/camhost_fixture.h"

namespace camhost::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

using namespace usual_waits;

class Grab : public CCamhostTest {
protected:
    Outcome grab(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "grab");
        return camhost(arguments);
    }
    // Only waits and copies.
    Outcome grabNothing(std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.end(), {"--format", "none"});
        return grab(std::move(arguments));
    }
    std::string file(const char* name) const { return m_folder.file(name); }
    std::string content(const char* name) const { return m_folder.content(name); }
};

TEST_F(Grab, FramesAreCountedAndVideoIsStopped) {
    const Outcome outcome = grabNothing({"-n", "20"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "done: 20 frames in 2.5 s, 8.0 fps while live, timeouts 0, lost 0, Mono8\n");
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
}

TEST_F(Grab, FilesAreNumberedFromOne) {
    const Outcome outcome = grab({"-n", "2", "-o", file("f_%02d.raw")});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(content("f_01.raw"), std::string("\0\1\2\3\4\5\6\7", 8));
    EXPECT_EQ(content("f_02.raw"), content("f_01.raw"));
    EXPECT_FALSE(std::filesystem::exists(file("f_03.raw")));
}

TEST_F(Grab, PngFilesTellWhatTheyHold) {
    camera().pixelType = HOST_PIXEL_RAW8;
    camera().choices["videoformat"].emplace_back("BY8 (4x2)");
    const Outcome outcome = grab({"-o", file("raw.png")});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, HasSubstr("Raw8 GRBG as delivered\n"));
    const std::string png = content("raw.png");
    EXPECT_THAT(readPngTexts(std::vector<std::uint8_t>(png.begin(), png.end())),
                ElementsAre(Pair("Software", "camhost"), Pair("PixelType", "Raw8"),
                            Pair("BayerOrder", "GRBG"), Pair("RowOrder", "as delivered"),
                            Pair("CameraSerial", "1A2B"), Pair("FrameNumber", "1")));
}

TEST_F(Grab, ColoursComeTopRowFirst) {
    camera().pixelType = HOST_PIXEL_RGB24;
    camera().width = 1;
    camera().frame = {'c', 'b', 'a', 'f', 'e', 'd'};
    EXPECT_EQ(grab({"-o", file("rgb.ppm")}).exit, 0);
    EXPECT_EQ(content("rgb.ppm"), "P6\n1 2\n255\ndefabc");
}

TEST_F(Grab, ABayerOrderCanBeChosen) {
    camera().pixelType = HOST_PIXEL_RAW8;
    camera().values["videoformat"] = "BY8 (4x1)";
    camera().height = 1;
    camera().frame.resize(4);
    EXPECT_THAT(grabNothing().out, HasSubstr("Raw8 BGGR as delivered\n"));
    camera().height = 2;
    camera().frame.resize(8);
    const Outcome outcome =
        grab({"--bayer", "rggb", "--demosaic", "fast", "-o", file("colour.pnm"), "--json"});
    EXPECT_THAT(outcome.out, HasSubstr("\"bayer\":\"RGGB\""));
    EXPECT_EQ(content("colour.pnm").substr(0, 11), "P6\n4 2\n255\n");
}

TEST_F(Grab, ThePixelFormatIsSetFirst) {
    grabNothing({"--pixelformat", "RGB24"});
    EXPECT_THAT(camera().log, ElementsAre("pixelformat=RGB24", "start", "stop", "close"));
    camera().log.clear();
    camera().refusals["pixelformat"] = "Unsupported pixelformat";
    EXPECT_EQ(grabNothing({"--pixelformat", "RAW8"}).exit, 1);
    EXPECT_THAT(camera().log, ElementsAre("pixelformat=Raw8", "close"));
}

TEST_F(Grab, SettingsAreMadeFirstAndToldAsMessages) {
    const Outcome outcome = grabNothing(
        {"--set", "gain value range=12", "--set", "exposure value abs=0.010000", "--manual"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.err,
              "gain value range: 10 -> 12\nexposure auto switch: true -> false\n"
              "exposure value abs: 0.033333 -> 0.010000\n");
    EXPECT_EQ(camera().log.back(), "close");
    EXPECT_EQ(grab({"--set", "gain value range=much"}).exit, 2);
}

TEST_F(Grab, AnExposureLongerThanAWaitIsNamedAfterATimeout) {
    camera().waits.assign(2, timeout);
    camera().values["exposure value abs"] = "2.000000";
    const Outcome outcome = grabNothing({"--timeout", "2"});
    EXPECT_EQ(outcome.exit, 4);
    EXPECT_THAT(outcome.err,
                HasSubstr("hint:  the exposure is 2.000000 s, and one wait lasts 1 s"));
}

TEST_F(Grab, SkippedFramesAreNotSaved) {
    const Outcome outcome = grabNothing({"--json", "-n", "3", "--skip", "2"});
    EXPECT_THAT(outcome.out, HasSubstr("\"frames\":3,\"asked\":3,\"skipped\":2"));
}

TEST_F(Grab, NoFrameInTimeIsFour) {
    camera().waits.assign(5, timeout);
    camera().values["trigger enable switch"] = "true";
    const Outcome outcome = grabNothing({"-n", "3", "--timeout", "4"});
    EXPECT_EQ(outcome.exit, 4);
    EXPECT_EQ(outcome.out, "done: 0 frames in 4.0 s, timeouts 4, lost 0, Mono8\n");
    EXPECT_THAT(outcome.err, HasSubstr("error: no frame in 4.0 s; 0 of 3 frames\n"
                                       "hint:  trigger enable is on: no trigger arrived?\n"));
}

TEST_F(Grab, FewerFramesAreSix) {
    camera().waits = {frame, timeout, timeout, timeout};
    const Outcome outcome = grabNothing({"-n", "3", "--timeout", "3"});
    EXPECT_EQ(outcome.exit, 6);
    EXPECT_THAT(outcome.err, HasSubstr("error: no frame in 3.0 s; 1 of 3 frames\n"));
}

TEST_F(Grab, AShortTimeoutIsBridged) {
    camera().waits = {frame, timeout, timeout, frame};
    const Outcome outcome = grabNothing({"-n", "2", "--timeout", "3"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, HasSubstr("timeouts 2, lost 0"));
}

TEST_F(Grab, ALossIsToldOnceAndItsEndToo) {
    camera().waits = {frame, lost, lost, lost, frame};
    const Outcome outcome = grabNothing({"-n", "2"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.err, "lost 1A2B after frame 1; searching ...\nrestored after 0.7 s\n");
    EXPECT_THAT(outcome.out, HasSubstr("timeouts 0, lost 1 (0.7 s), Mono8"));
}

TEST_F(Grab, ACameraThatComesBackWithOtherPicturesEndsIt) {
    Wait back = frame;
    back.width = 8;
    camera().waits = {frame, lost, back, frame};
    const Outcome outcome = grabNothing({"-n", "3"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.err,
              "lost 1A2B after frame 1; searching ...\nrestored after 0.3 s\n"
              "error: the camera delivers 8x2 Mono8 now, no longer 4x2 Mono8\n"
              "hint:  --reapply sets its format again\n");
    EXPECT_THAT(outcome.out, HasSubstr("done: 1 frame in "));
}

TEST_F(Grab, ALossWithinOneWaitIsSeenByItsPicturesToo) {
    Wait back = timeout;
    back.width = 8;
    camera().waits = {frame, back, frame};
    const Outcome outcome = grabNothing({"-n", "3"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(outcome.err, HasSubstr("error: the camera delivers 8x2 Mono8 now, no longer 4x2 "
                                       "Mono8\n"));
}

TEST_F(Grab, ALossForGoodIsFive) {
    camera().waits.assign(1000, lost);
    const Outcome outcome = grabNothing({"--on-loss", "2"});
    EXPECT_EQ(outcome.exit, 5);
    EXPECT_THAT(outcome.out, HasSubstr("timeouts 0, lost 1 (2.0 s)"));
    EXPECT_THAT(outcome.err, HasSubstr("error: the camera is lost; 0 of 1 frames\n"));
    camera().waits.assign(1000, lost);
    const double before = m_system.time;
    EXPECT_EQ(grabNothing({"--on-loss", "fail"}).exit, 5);
    EXPECT_EQ(m_system.time, before);
}

TEST_F(Grab, ARefusedWaitIsOneAndNoLoss) {
    camera().waits = {{1, HOST_STATUS_DONE, 0.0, "not now"}};
    const Outcome outcome = grabNothing();
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.err, "error: waiting for a frame was refused: not now\n");
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
}

TEST_F(Grab, ARefusedStartIsOne) {
    camera().startRefused = true;
    const Outcome outcome = grabNothing();
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.err, "error: live video does not start: no bandwidth\n");
    EXPECT_THAT(camera().log, ElementsAre("start", "close"));
}

TEST_F(Grab, AnInterruptionStillPrintsTheTotals) {
    m_system.interruptAfter = m_system.time + 0.95;
    const Outcome outcome = grabNothing({"-n", "100"});
    EXPECT_EQ(outcome.exit, 130);
    EXPECT_THAT(outcome.out, HasSubstr("done: 8 frames in 1.0 s"));
    EXPECT_THAT(outcome.err, HasSubstr("error: interrupted after 8 of 100 frames\n"));
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
}

TEST_F(Grab, ACopyBehindTheFrameIsAnInternalError) {
    camera().overrun = 1;
    const Outcome outcome = grabNothing();
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.err, "error: the adapter wrote past the frame buffer\n");
}

TEST_F(Grab, ASizeThatCanNotBeIsRefused) {
    camera().width = 0;
    const Outcome outcome = grabNothing();
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.err, "error: the camera reports a picture of 0x2\n");
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
}

TEST_F(Grab, PlansThatCanNotBeCarriedOutAreUsageErrors) {
    EXPECT_EQ(grab({"-n", "2", "-o", file("one.png")}).exit, 2);
    EXPECT_EQ(grab({"-o", file("%s.png")}).exit, 2);
    EXPECT_EQ(grab({"--on-loss", "never"}).exit, 2);
    EXPECT_THAT(camera().log, Contains("close").Times(3));
}

TEST_F(Grab, AFileThatCanNotBeWrittenEndsIt) {
    const Outcome outcome = grab({"-o", file("missing/one.png")});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(outcome.err, HasSubstr("error: can not write \""));
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
}

TEST_F(Grab, TheFilesAreNamedAtTheEnd) {
    EXPECT_THAT(grab({"-o", file("one.png")}).out, HasSubstr("\nsaved " + file("one.png") + "\n"));
    EXPECT_THAT(grab({"-n", "3", "-o", file("s_%d.raw")}).out,
                HasSubstr("\nsaved 3 files, " + file("s_1.raw") + " to " + file("s_3.raw") + "\n"));
}

TEST_F(Grab, FilesThatAreThereAreWrittenOverOnRequestOnly) {
    writeTextFile(file("s_2.raw"), "mine");
    const Outcome outcome = grab({"-n", "3", "-o", file("s_%d.raw")});
    EXPECT_EQ(outcome.exit, 2);
    EXPECT_EQ(outcome.err, "error: \"" + file("s_2.raw") +
                               "\" is there already\n"
                               "hint:  choose another name with -o, or write over it with "
                               "--force\n");
    EXPECT_EQ(content("s_2.raw"), "mine");
    EXPECT_FALSE(std::filesystem::exists(file("s_1.raw")));
    EXPECT_THAT(camera().log, ElementsAre("close"));
    EXPECT_EQ(grab({"-n", "3", "--force", "-o", file("s_%d.raw")}).exit, 0);
    EXPECT_EQ(content("s_2.raw"), content("s_1.raw"));
}

TEST_F(Grab, TotalsAreToldWhenAFileCanNotBeWritten) {
    const Outcome outcome = grab({"--json", "-n", "2", "-o", file("missing/%d.png")});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(outcome.out, HasSubstr("\"result\":{\"frames\":"));
    EXPECT_THAT(outcome.out, HasSubstr("\"files\":[]},\"error\":{\"code\":\"file\","));
    const Outcome text = grab({"-o", file("missing/one.png")});
    EXPECT_THAT(text.out, testing::StartsWith("done: 1 frame in "));
    EXPECT_THAT(text.err, HasSubstr("one.png\": No such file or directory\n"));
}

TEST_F(Grab, OnlyFilesThatWereWrittenWholeAreNamed) {
    std::filesystem::create_directory(file("s_2.raw"));
    const Outcome outcome = grab({"-n", "2", "-o", file("s_%d.raw")});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(outcome.out, HasSubstr("saved " + file("s_1.raw") + "\n"));
    EXPECT_THAT(outcome.out, testing::Not(HasSubstr("s_2.raw")));
}

struct WrongName {
    std::vector<std::string> arguments;
    const char* message;
};

TEST_F(Grab, NamesThatTellNoFormatAreRefused) {
    const WrongName names[] = {
        {{"-o", "r_%d.jpg"}, "error: no format has the ending \".jpg\"\n"},
        {{"-o", "r_%d.jpg", "--format", "png"}, "error: no format has the ending \".jpg\"\n"},
        {{"-o", "picture"}, "error: \"picture\" does not tell the format\n"},
        {{"-o", "folder.png/picture"}, "does not tell the format\n"},
        {{"-o", "a.png", "--format", "raw"}, "error: \"a.png\" is no name for --format raw\n"},
        {{"-o", "-"}, "error: for the output the format must be named\n"},
        {{"-o", "-", "--format", "png", "--json"}, "can not take both pictures and --json\n"},
    };
    for (const WrongName& name : names) {
        const Outcome outcome = grab(name.arguments);
        EXPECT_EQ(outcome.exit, 2) << name.message;
        EXPECT_THAT(outcome.err, HasSubstr(name.message));
    }
    EXPECT_THAT(camera().log, testing::Each("close"));
}

TEST_F(Grab, ADashIsTheOutputInBytes) {
    const Outcome outcome = grab({"-n", "2", "--format", "pnm", "-o", "-"});
    EXPECT_EQ(outcome.exit, 0);
    const std::string picture = "P5\n4 2\n255\n" + std::string("\0\1\2\3\4\5\6\7", 8);
    EXPECT_EQ(outcome.out, picture + picture);
    EXPECT_THAT(outcome.err, testing::StartsWith("done: 2 frames in "));
    EXPECT_FALSE(std::filesystem::exists("-"));
}

TEST_F(Grab, TheRateIsThatOfTheFramesAndNotOfTheStart) {
    camera().waits = {{0, HOST_STATUS_DONE, 0.9, {}}, frame, frame};
    EXPECT_THAT(grabNothing({"-n", "3"}).out, HasSubstr(", 8.0 fps while live, "));
    EXPECT_EQ(grabNothing().out, "done: 1 frame in 0.1 s, timeouts 0, lost 0, Mono8\n");
    EXPECT_THAT(grabNothing({"--json"}).out, testing::Not(HasSubstr("fps")));
}

TEST_F(Grab, ATimeoutTellsTheSecondsThatWereWaited) {
    camera().waits.assign(1, timeout);
    EXPECT_THAT(grabNothing({"--timeout", "0.3"}).err,
                HasSubstr("error: no frame in 1.0 s (asked for 0.3 s; one wait lasts up to 1 s); 0 "
                          "of 1 frames\n"));
}

TEST_F(Grab, RawFramesOfAMonochromeCameraHaveNoMosaic) {
    camera().pixelType = HOST_PIXEL_RAW8;
    const Outcome outcome = grabNothing();
    EXPECT_THAT(outcome.out, HasSubstr(", Raw8\n"));
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(grabNothing({"--demosaic", "fast"}).err,
                HasSubstr("warning: --demosaic: all formats of this camera are grey"));
    EXPECT_THAT(grabNothing({"--bayer", "GBRG"}).out, HasSubstr(", Raw8 GBRG as chosen\n"));
}

TEST_F(Grab, OptionsOfAMosaicWarnWhereThereIsNone) {
    EXPECT_EQ(grabNothing({"--bayer", "rggb"}).err,
              "warning: --bayer has no effect on Mono8 frames\n");
    EXPECT_EQ(grabNothing({"--demosaic", "fast"}).err,
              "warning: --demosaic has no effect on Mono8 frames\n");
}

TEST_F(Grab, PngFilesTellTheFramesNumberAndHowColoursWereMade) {
    camera().pixelType = HOST_PIXEL_RAW8;
    grab({"--skip", "2", "--bayer", "rggb", "--demosaic", "fast", "-o", file("raw.png")});
    const std::string png = content("raw.png");
    const auto texts = readPngTexts(std::vector<std::uint8_t>(png.begin(), png.end()));
    EXPECT_THAT(texts, Contains(Pair("PixelType", "Raw8")));
    EXPECT_THAT(texts, Contains(Pair("Demosaic", "fast")));
    EXPECT_THAT(texts, Contains(Pair("FrameNumber", "3")));
}

TEST_F(Grab, TheLastProgressIsWholeAndOnALineOfItsOwn) {
    m_system.terminal = true;
    const Outcome outcome = grabNothing({"-n", "5"});
    EXPECT_THAT(outcome.err, HasSubstr("\r  5/5  8.0 fps  0.0 MiB/frame  timeouts 0  lost 0 "));
    EXPECT_EQ(outcome.err.back(), '\n');
}

TEST_F(Grab, ProgressIsALineEveryTwoSecondsInALog) {
    const Outcome outcome = grabNothing({"-n", "40"});
    EXPECT_EQ(outcome.err,
              "  16/40  8.0 fps  0.0 MiB/frame  timeouts 0  lost 0  eta 3.0 s\n"
              "  32/40  8.0 fps  0.0 MiB/frame  timeouts 0  lost 0  eta 1.0 s\n");
}

TEST_F(Grab, ProgressIsRedrawnOnATerminal) {
    m_system.terminal = true;
    const Outcome outcome = grabNothing({"-n", "5"});
    EXPECT_THAT(outcome.err, HasSubstr("\r  2/5  8.0 fps"));
    EXPECT_EQ(outcome.err.back(), '\n');
}

}  // namespace
}  // namespace camhost::test
