// SPDX-License-Identifier: MIT
// camhost.exe with the built adapter and the virtual cameras: what it prints
// where, and how it ends.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "camhost/base/json.h"
#include "camhost/pictures/png_text.h"
#include "tests/camhost/program.h"

namespace camhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::StartsWith;

// A camera that waits for a trigger that never comes.
constexpr const char* triggeredRig = R"toml(rig = 1
[[camera]]
name = "SIM Waiting"
serial = "ABC"
formats = ["Y800 (64x48)"]
framerates = [30.0]
[[camera.item]]
name = "Trigger"
Enable.switch = true
)toml";

// Two cameras of one name.
constexpr const char* twinRig = R"toml(rig = 1
[[camera]]
name = "SIM Twin"
serial = "A1"
formats = ["Y800 (64x48)"]
[[camera]]
name = "SIM Twin"
serial = "A2"
formats = ["Y800 (64x48)"]
)toml";

std::string rigFile(const char* toml) {
    const auto file = testFolder() / "rig.toml";
    writeFile(file, toml);
    return utf8(file);
}

Outcome standard(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--rig", "standard"});
    return runCamhost(arguments);
}

// With that camera of the standard rig.
Outcome onCamera(const char* camera, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"-c", camera});
    return standard(std::move(arguments));
}

Outcome grabFrom(const char* camera, std::vector<std::string> arguments) {
    // An earlier run of the test may have left its pictures.
    arguments.insert(arguments.begin(), {"--clock", "fast", "grab", "--force"});
    return onCamera(camera, std::move(arguments));
}

CJson json(const Outcome& outcome) {
    std::string reason;
    const auto json = CJson::parse(outcome.out, reason);
    EXPECT_TRUE(json) << reason << ": " << outcome.out;
    return json.value_or(CJson());
}

std::string textAt(const CJson& json, const std::vector<const char*>& path) {
    CJson at = json;
    for (const char* key : path) {
        const std::optional<CJson> member = at.find(key);
        if (!member) {
            return "missing";
        }
        at = *member;
    }
    return at.text().value_or("no text");
}

std::vector<std::uint8_t> bytes(const std::string& text) {
    return {text.begin(), text.end()};
}

std::size_t bigEndian(const std::string& text, std::size_t at) {
    std::size_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value * 256 + static_cast<unsigned char>(text[at + i]);
    }
    return value;
}

// Red, green and blue at a place of a colour picture in PNM form.
std::vector<int> pixel(const std::string& ppm, std::size_t width, std::size_t x, std::size_t y) {
    const std::size_t head = ppm.find("\n255\n") + 5;
    std::vector<int> colour;
    for (std::size_t i = 0; i < 3; ++i) {
        colour.push_back(static_cast<unsigned char>(ppm[head + (y * width + x) * 3 + i]));
    }
    return colour;
}

double mean(const std::string& pgm) {
    double sum = 0.0;
    const std::size_t head = pgm.find("\n255\n") + 5;
    for (std::size_t i = head; i < pgm.size(); ++i) {
        sum += static_cast<unsigned char>(pgm[i]);
    }
    return sum / static_cast<double>(pgm.size() - head);
}

TEST(Camhost, ListShowsTheStandardRig) {
    const Outcome outcome = standard({"list"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out,
              "#  serial            name               max size  state\n"
              "0  1A2B              SIM Mono 23        1280x960  ready\n"
              "1  77C01             SIM Colour 5       640x480   ready\n"
              "2  2F00D             SIM Colour 1       640x480   ready\n"
              "3  FEDCBA9876543210  QRM 52             640x480   ready\n"
              "4  n/a               SIM Frame Grabber  768x576   ready\n");
}

TEST(Camhost, ListAsJsonIsOneObject) {
    const CJson data = json(standard({"--json", "list"}));
    EXPECT_EQ(textAt(data, {"schema"}), "camhost/1");
    EXPECT_EQ(textAt(data, {"command"}), "list");
    const std::vector<CJson> cameras = data.find("result").value_or(CJson()).elements();
    ASSERT_EQ(cameras.size(), 5U);
    EXPECT_EQ(textAt(cameras[3], {"serial"}), "FEDCBA9876543210");
}

TEST(Camhost, AnEmptyRigIsDone) {
    const Outcome outcome = runCamhost({"--rig", "empty", "list"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "no cameras\n");
}

TEST(Camhost, ACameraThatCanNotBeMadeShowsADialogThatIsClosed) {
    const Outcome outcome = runCamhost({"--rig", "throwing", "list"});
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_THAT(outcome.out, HasSubstr("0  1A2B    SIM Mono 23  640x480   ready\n"));
    EXPECT_THAT(outcome.err,
                StartsWith("dialog: \"Device Error\": Failed to initialize device SIM 1B \xC2\xB5\n"
                           "error: the adapter showed a message box\n"));
}

TEST(Camhost, WithoutTheCaptureLibraryTheReasonIsNamed) {
    const auto adapter = testFolder() / "velmora_adapter.dll";
    writeFile(adapter, readFile(programFolder() / "velmora_adapter.dll"));
    const Outcome outcome = runCamhost({"--adapter", utf8(adapter), "--json", "list"});
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_THAT(outcome.err,
                HasSubstr("dialog: \"Velmora Adapter\": Runtime Libraries not found!\n"));
    EXPECT_EQ(textAt(json(outcome), {"error", "code"}), "capture_library_missing");
}

TEST(Camhost, WhatIsNoAdapterIsNamed) {
    const Outcome none = runCamhost({"--adapter", "none.dll", "list"});
    EXPECT_EQ(none.exit, 3);
    EXPECT_THAT(none.err, HasSubstr("none.dll can not be loaded"));
    const Outcome other =
        runCamhost({"--adapter", utf8(programFolder() / "ORV_CAPLB11_x64.dll"), "--json", "list"});
    EXPECT_EQ(other.exit, 3);
    EXPECT_EQ(textAt(json(other), {"error", "code"}), "no_adapter");
}

TEST(Camhost, UsageErrorsTakeTwoLines) {
    const Outcome outcome = runCamhost({"props", "--no-such-thing"});
    EXPECT_EQ(outcome.exit, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
              "error: The following argument was not expected: --no-such-thing\n"
              "try:   camhost props --help\n");
    EXPECT_EQ(textAt(json(runCamhost({"--json", "bogus"})), {"error", "code"}), "usage");
}

TEST(Camhost, CamerasAreChosenBySerialNameOrIndex) {
    for (const char* wanted : {"77c01", "Colour 5", "#1"}) {
        EXPECT_EQ(textAt(json(onCamera(wanted, {"--json", "info"})), {"camera", "serial"}), "77C01")
            << wanted;
    }
    EXPECT_EQ(onCamera("colour", {"info"}).exit, 3);
    EXPECT_EQ(standard({"info"}).exit, 3);
    EXPECT_EQ(onCamera("#9", {"info"}).exit, 3);
}

TEST(Camhost, TwinsAreToldApartBySerial) {
    const std::string rig = rigFile(twinRig);
    EXPECT_EQ(runCamhost({"--rig", rig, "-c", "a2", "info"}).exit, 0);
    const Outcome outcome = runCamhost({"--rig", rig, "-c", "SIM Twin", "info"});
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_THAT(outcome.err, HasSubstr("#0 A1 \"SIM Twin\", #1 A2 \"SIM Twin\""));
}

TEST(Camhost, PropsShowRangesAutomaticsAndHiddenKeys) {
    const Outcome mono = onCamera("1A2B", {"props", "exposure"});
    EXPECT_EQ(mono.exit, 0);
    EXPECT_EQ(
        mono.out,
        "exposure auto switch  (bool)  : value=true\n"
        "exposure value abs    (float) : min=0.000100 max=1.000000 value=0.033300 flags=auto\n"
        "exposure value range  (int)   : min=1 max=10000 value=333 flags=auto\n");
    const Outcome colour = onCamera("77C01", {"props"});
    EXPECT_THAT(colour.out, HasSubstr("binning factor value strings     (choice)  : value=1x1\n"));
    EXPECT_THAT(colour.out,
                HasSubstr("tone_curve enable switch         (bool)    : value=false\n"));
    EXPECT_THAT(colour.out, HasSubstr("sch\xC3\xA4rfe value range              (int)     : "));
    EXPECT_THAT(colour.out, HasSubstr("white balance one push           (command) :\n"));
}

TEST(Camhost, GetShowsOneLinePerKey) {
    const Outcome outcome = onCamera("1A2B", {"get", "Gain Value Range", "gian value range"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.out, "gain value range  (int) : min=0 max=1023 value=100\n");
    EXPECT_EQ(outcome.err,
              "error: no setting \"gian value range\"; did you mean \"gain value range\"?\n");
}

TEST(Camhost, SetReadsBack) {
    const Outcome outcome = onCamera("1A2B", {"set", "framerate=15", "gain value range=7"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out, "framerate: 60.000000 -> 15.000000\ngain value range: 100 -> 7\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(Camhost, SetNamesTheAutomaticThatRefuses) {
    const Outcome refused = onCamera("1A2B", {"set", "exposure value abs=0.01"});
    EXPECT_EQ(refused.exit, 1);
    EXPECT_EQ(refused.out, "");
    EXPECT_THAT(refused.err, StartsWith("error: exposure value abs: refused, automatic is on\n"));
    EXPECT_THAT(refused.err, HasSubstr("hint:  camhost --rig standard -c 1A2B set --manual "
                                       "\"exposure value abs=0.01\"   (or, in the same run "));
    const Outcome manual = onCamera("1A2B", {"set", "--manual", "exposure value abs=0.01"});
    EXPECT_EQ(manual.exit, 0);
    EXPECT_EQ(manual.out,
              "exposure auto switch: true -> false\nexposure value abs: 0.033300 -> 0.010000\n");
}

TEST(Camhost, SetOutOfRangeGivesTheAdaptersLimits) {
    const CJson data = json(onCamera("1A2B", {"--json", "set", "gain value range=1024"}));
    EXPECT_EQ(textAt(data, {"error", "code"}), "refused");
    EXPECT_EQ(textAt(data, {"error", "message"}),
              "gain value range must be within 0 and 1023, not 1024");
    EXPECT_EQ(onCamera("1A2B", {"set", "gain value range=12abc"}).exit, 2);
}

TEST(Camhost, ANormWithoutFormatsFailsInsideTheLibrary) {
    const Outcome outcome = onCamera("grabber", {"--json", "set", "videonorm=SECAM_L"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(textAt(json(outcome), {"error", "code"}), "failed");
}

TEST(Camhost, ChoicesAreFoundByProbing) {
    const Outcome outcome =
        onCamera("77C01", {"choices", "--probe", "white balance mode strings", "framerate"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "white balance mode strings:\n    * Grey World\n      Daylight 5500 K\n"
              "      Gl\xC3\xBChlampe\nframerate: from 3.750000 to 59.990000, now 59.999000\n");
}

TEST(Camhost, ExecTellsWhatChanged) {
    EXPECT_EQ(onCamera("1A2B", {"commands"}).out,
              "gain one push\npropertydialog\ntrigger software trigger\n");
    const Outcome outcome = onCamera("1A2B", {"exec", "gain one push"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out, "gain one push: done\ngain value range: 100 -> 260\n");
    EXPECT_EQ(onCamera("1A2B", {"exec", "gain one posh"}).exit, 1);
}

TEST(Camhost, ParamsApplyOneBlock) {
    const Outcome outcome =
        onCamera("1A2B", {"params", "--strict", "exposure=0.01", "contrast=0.5", "brightness=0.1",
                          "trigger=on", "polarity=on", "roi=0,0,1280,960"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out,
              "exposure auto switch: true -> false\nexposure value abs: 0.033300 -> 0.010000\n"
              "contrast value range: 0 -> 10\nbrightness value range: 51 -> 25\n"
              "trigger enable switch: false -> true\ntrigger polarity switch: false -> true\n");
}

TEST(Camhost, SettingsAreSavedComparedAndLoaded) {
    const std::string file = utf8(testFolder() / "s\xC3\xA4ved.json");
    EXPECT_EQ(onCamera("1A2B", {"save", file}).exit, 0);
    EXPECT_EQ(onCamera("1A2B", {"diff", "--strict", file}).exit, 0);
    EXPECT_EQ(onCamera("1A2B", {"load", file}).err, "nothing to change\n");
    const Outcome other = onCamera("77C01", {"diff", "--strict", file});
    EXPECT_EQ(other.exit, 6);
    EXPECT_THAT(other.out, HasSubstr("videoformat: Y800 (1280x960) -> BY8 (640x480)\n"));
}

TEST(Camhost, LoadedSettingsArriveInTheCamera) {
    const auto file = testFolder() / "settings.json";
    writeFile(file, R"json({"schema":"camhost-settings/1","serial":"1A2B","settings":{
"exposure auto switch":"true","exposure value abs":"0.010000",
"framerate":"15.000000","videoformat":"Y800 (640x480)"}})json");
    const Outcome outcome = onCamera("1A2B", {"load", utf8(file)});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "videoformat: Y800 (1280x960) -> Y800 (640x480)\n"
              "framerate: 60.000000 -> 15.000000\nexposure auto switch: true -> false\n"
              "exposure value abs: 0.033300 -> 0.010000\nexposure auto switch: false -> true\n");
}

TEST(Camhost, TheAdapterPassesTheCheck) {
    const Outcome outcome = standard({"--clock", "fast", "check"});
    EXPECT_EQ(outcome.exit, 0) << outcome.out;
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("camera 1A2B \"SIM Mono 23\"\nRecord:\n"));
    EXPECT_THAT(outcome.out, HasSubstr("starts and stops leave no handles: OK\n"));
    EXPECT_THAT(outcome.out, HasSubstr(", Failed: 0\n"));
}

TEST(Camhost, GrabWritesPngFilesThatTellWhatTheyHold) {
    const Outcome outcome = grabFrom("1A2B", {"-n", "2", "-o", "shot_%02d.png"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, StartsWith("done: 2 frames in "));
    EXPECT_THAT(outcome.out, HasSubstr(" fps while live, timeouts 0, lost 0, Mono8\n"));
    const std::string png = readFile(testFolder() / "shot_02.png");
    ASSERT_GT(png.size(), 1000U);
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1A\n");
    EXPECT_EQ(bigEndian(png, 16), 1280U);
    EXPECT_EQ(bigEndian(png, 20), 960U);
    EXPECT_THAT(readPngTexts(bytes(png)),
                ElementsAre(Pair("Software", "camhost"), Pair("PixelType", "Mono8"),
                            Pair("RowOrder", "as delivered"), Pair("CameraSerial", "1A2B"),
                            Pair("FrameNumber", "2")));
}

TEST(Camhost, ColoursStandUprightWithARedCorner) {
    const Outcome outcome = grabFrom("77C01", {"--pixelformat", "rgb24", "-o", "rgb.ppm"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, HasSubstr(", RGB24\n"));
    const std::string picture = readFile(testFolder() / "rgb.ppm");
    EXPECT_THAT(picture, StartsWith("P6\n640 480\n255\n"));
    EXPECT_THAT(pixel(picture, 640, 20, 20), ElementsAre(255, 0, 0));
}

TEST(Camhost, RawFramesOfEveryKindHaveTheOrderThatIsSaid) {
    for (const char* serial : {"77C01", "2F00D", "FEDCBA9876543210"}) {
        const Outcome outcome =
            grabFrom(serial, {"--demosaic", "fast", "-o", std::string(serial) + ".pnm"});
        EXPECT_EQ(outcome.exit, 0);
        EXPECT_THAT(outcome.out, HasSubstr(", Raw8 GRBG as delivered\n"));
        const std::string picture = readFile(testFolder() / (std::string(serial) + ".pnm"));
        EXPECT_THAT(picture, StartsWith("P6\n640 480\n255\n"));
        EXPECT_THAT(pixel(picture, 640, 20, 20), ElementsAre(255, 0, 0)) << serial;
    }
}

TEST(Camhost, OddSizesComeOutStraight) {
    const Outcome outcome = runCamhost({"--rig", "odd", "--clock", "fast", "-c", "0DD2", "grab",
                                        "--force", "--demosaic", "fast", "-o", "odd.pnm"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, HasSubstr(", Raw8 BGGR as delivered\n"));
    const std::string picture = readFile(testFolder() / "odd.pnm");
    EXPECT_THAT(picture, StartsWith("P6\n641 479\n255\n"));
    EXPECT_THAT(pixel(picture, 641, 70, 70), ElementsAre(255, 0, 0));
    EXPECT_THAT(pixel(picture, 641, 20, 100), testing::Not(ElementsAre(255, 0, 0)));
    EXPECT_THAT(pixel(picture, 641, 5, 100), testing::Not(ElementsAre(255, 0, 0)));
    EXPECT_THAT(pixel(picture, 641, 20, 100), pixel(picture, 641, 5, 100));
}

TEST(Camhost, RawFilesHoldTheBytesAsDelivered) {
    EXPECT_EQ(grabFrom("77C01", {"-o", "frame.raw"}).exit, 0);
    EXPECT_EQ(readFile(testFolder() / "frame.raw").size(), 307200U);
}

TEST(Camhost, ASettingShowsInThePicture) {
    const auto meanAt = [](const char* exposure) {
        const Outcome outcome =
            grabFrom("1A2B", {"--manual", "--set", exposure, "-o", "exposed.pgm"});
        EXPECT_EQ(outcome.exit, 0) << outcome.err;
        return mean(readFile(testFolder() / "exposed.pgm"));
    };
    EXPECT_LT(meanAt("exposure value abs=0.005"), meanAt("exposure value abs=0.05") - 20.0);
}

TEST(Camhost, NoFrameInTimeIsFour) {
    const Outcome outcome = runCamhost(
        {"--rig", rigFile(triggeredRig), "--json", "grab", "--timeout", "0.5", "--format", "none"});
    EXPECT_EQ(outcome.exit, 4);
    const CJson data = json(outcome);
    EXPECT_EQ(textAt(data, {"error", "code"}), "no_frame");
    EXPECT_EQ(textAt(data, {"error", "hint"}), "trigger enable is on: no trigger arrived?");
    EXPECT_THAT(outcome.out, HasSubstr("\"timeouts\":1,\"lost\":0,"));
}

TEST(Camhost, AnInterruptionStopsTheVideoAndPrintsTheTotals) {
    const Outcome outcome = interruptCamhost({"--rig", "standard", "--clock", "fast", "-c", "1A2B",
                                              "grab", "-n", "1000000000", "--format", "none"},
                                             "/1000000000");
    EXPECT_EQ(outcome.exit, 130);
    EXPECT_THAT(outcome.out, StartsWith("done: "));
    EXPECT_THAT(outcome.err, HasSubstr("error: interrupted after "));
}

TEST(Camhost, AWrongRigIsToldByItsNearNameAndOnce) {
    const Outcome outcome = runCamhost({"--rig", "standrad", "--json", "list"});
    EXPECT_EQ(outcome.exit, 2);
    EXPECT_EQ(outcome.err,
              "error: standrad: there is no such built-in rig, and no such file; did you mean "
              "\"standard\"? Built in are standard, empty, failing-open, throwing, odd, "
              "no-properties, bare\n");
    EXPECT_EQ(textAt(json(outcome), {"error", "code"}), "bad_rig");
    const Outcome file = runCamhost({"--rig", rigFile("[[camera]]\nnam = \"A\"\n"), "info"});
    EXPECT_EQ(file.exit, 2);
    EXPECT_THAT(file.err, HasSubstr("rig.toml:2:1: unknown key \"nam\" in camera; did you mean "
                                    "\"name\"?\n"));
}

TEST(Camhost, ACameraThatDidNotOpenIsNotCalledLost) {
    const Outcome outcome = runCamhost({"--rig", "failing-open", "-c", "#0", "grab"});
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_EQ(outcome.err, "error: #0 \"SIM Broken 1\" did not open; in use elsewhere?\n");
}

TEST(Camhost, ALeadingSlashBeginsAFile) {
    const Outcome outcome = onCamera("1A2B", {"diff", "/no/such/file.json"});
    EXPECT_EQ(outcome.exit, 2);
    EXPECT_EQ(outcome.err, "error: can not read \"/no/such/file.json\"\n");
    EXPECT_EQ(standard({"list", "/json"}).exit, 2);
}

TEST(Camhost, ADashIsTheOutputInBytes) {
    const Outcome outcome = grabFrom("77C01", {"--format", "png", "-o", "-"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out.substr(0, 8), "\x89PNG\r\n\x1A\n");
    EXPECT_EQ(outcome.out.substr(outcome.out.size() - 8, 4), "IEND");
    EXPECT_THAT(outcome.err, StartsWith("done: 1 frame in "));
}

TEST(Camhost, PicturesThatAreThereStay) {
    const auto file = testFolder() / "mine.png";
    writeFile(file, "mine");
    EXPECT_EQ(onCamera("77C01", {"grab", "-o", "mine.png"}).exit, 2);
    EXPECT_EQ(readFile(file), "mine");
}

TEST(Camhost, AFolderThatIsMissingIsNamedWithTheSystemsReason) {
    const Outcome outcome = grabFrom("77C01", {"--json", "-o", "missing/one.png"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(outcome.err, HasSubstr("one.png\": No such file or directory\n"));
    EXPECT_THAT(outcome.out, HasSubstr("\"files\":[]"));
}

TEST(Camhost, ArgumentsAreUtf8) {
    EXPECT_EQ(onCamera("77C01", {"set", "SCH\xC3\xA4RFE value range=3"}).out,
              "sch\xC3\xA4rfe value range: 7 -> 3\n");
    EXPECT_EQ(onCamera("77C01", {"set", "white balance mode strings=Gl\xC3\xBChlampe"}).out,
              "white balance mode strings: Grey World -> Gl\xC3\xBChlampe\n");
}

}  // namespace
}  // namespace camhost::test
