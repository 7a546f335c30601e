// SPDX-License-Identifier: MIT
// camhost check: an adapter that keeps the contract passes, and one that is wrong in one
// thing fails in the one line that is about it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string_view>

#include "camhost/check/check_forms.h"
#include "tests/camhost_logic/camhost_fixture.h"
#include "tests/camhost_logic/checked_adapter.h"

namespace camhost::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

Outcome check(CCheckedSystem& system, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), "check");
    return run(system, arguments);
}

// "GROUP: TEST" of each line that says so.
std::vector<std::string> failedLines(const std::string& report) {
    std::vector<std::string> failed;
    std::string group;
    std::istringstream lines(report);
    for (std::string line; std::getline(lines, line);) {
        constexpr std::string_view test = "\ttest ";
        constexpr std::string_view end = ": FAIL";
        if (line.starts_with(test) && line.ends_with(end)) {
            failed.push_back(group +
                             line.substr(test.size(), line.size() - test.size() - end.size()));
        } else if (!line.starts_with('\t')) {
            group = line + " ";
        }
    }
    return failed;
}

struct Row {
    Wrong wrong;
    const char* line;
};

const Row wrongThings[] = {
    {Wrong::RecordSize, "Record: the size is 632"},
    {Wrong::GapWritten, "Record: the two gaps stay unwritten"},
    {Wrong::WrittenBehindTheRecord, "Record: nothing is written before or behind it"},
    {Wrong::MissingEntry, "Record: every entry point is there"},
    {Wrong::LongName, "Record: the name has at most 253 bytes"},
    {Wrong::SmallSerial, "Record: the serial text is upper-case hexadecimal or n/a"},
    {Wrong::FractionAboveOne, "Record: the first readings are in their ranges, or -1"},
    {Wrong::OtherContextWhenAskedAgain, "Record: asked again, the context is the same"},
    {Wrong::RecordWrittenBehindTheLast, "Record: behind the last camera the record is left alone"},
    {Wrong::NegativeWidth, "Image description: the size is not empty"},
    {Wrong::LineWidthInBytes, "Image description: the line width is the width in pixels"},
    {Wrong::HostsOwnWritten, "Image description: the host's own field stays unwritten"},
    {Wrong::StopBeforeTheStartRefused, "Before the start: StopAcquisition"},
    {Wrong::WaitBeforeTheStartIsLoss, "Before the start: WaitFrame finds no frame"},
    {Wrong::WaitReturnsAtOnce, "Before the start: WaitFrame lasts a second"},
    {Wrong::SecondStartSaysWhy, "Live: StartAcquisition again is refused without a text"},
    {Wrong::PixelFormatTakenWhileLive, "Live: SetPropertyValue refuses pixelformat"},
    {Wrong::NullContextWritten, "Null context: GetPropertyAttribute"},
    {Wrong::NoBufferIsAFailure,
     "Without a buffer for messages: GetPropertyChoice of what has none"},
    {Wrong::NamesWithoutEnd, "Settings: the list of names ends"},
    {Wrong::NamesOutOfOrder, "Settings: names are in the order of the alphabet"},
    {Wrong::HiddenNameListed, "Settings: hidden names are not listed"},
    {Wrong::FeaturesWithoutEnd, "Settings: feature_1, ... end with an empty text"},
    {Wrong::UnknownKeyRead, "Settings: reading an unknown setting is refused"},
    {Wrong::UnknownKeySet, "Settings: setting an unknown setting is refused"},
    {Wrong::LettersCount, "Settings: the case of letters does not count"},
    {Wrong::BlanksCount, "Settings: blanks at the end do not count"},
    {Wrong::TypeOfThree, "Types, choices and attributes: types are 1, 2 or 4"},
    {Wrong::ChoicesWithoutEnd, "Types, choices and attributes: lists of choices end"},
    {Wrong::OtherAttributeWritten, "Types, choices and attributes: other attributes write nothing"},
    {Wrong::ThrowsOnAttribute,
     "Types, choices and attributes: attributes 1 to 3 are the same for every key"},
    {Wrong::MinimumRefused, "Limits: whole numbers: the minimum is taken and read back"},
    {Wrong::MaximumReadsLess, "Limits: decimals: the maximum is taken and read back"},
    {Wrong::BelowTaken, "Limits: whole numbers: less is refused with a text"},
    {Wrong::AboveTaken, "Limits: whole numbers: more is refused with a text"},
    {Wrong::RefusalSets, "Limits: decimals: a refusal changes nothing"},
    {Wrong::AutomaticIgnored, "Limits: an automatic that is on refuses values"},
    {Wrong::AnyTextIsOn, "Switches, texts and formats: every other text is false for a switch"},
    {Wrong::ListCanBeSet, "Switches, texts and formats: lists are read-only"},
    {Wrong::FrameNotUsedUp, "Frames: a copied frame is used up"},
    {Wrong::FrameTooLong, "Pixel types: rgb24 writes nothing outside of it"},
    {Wrong::FrameTooShort, "Pixel types: rgb24 fills the picture"},
    {Wrong::PixelCode, "Pixel types: raw8 has the code 4"},
    {Wrong::HandleLeft, "Starts and stops: starts and stops leave no handles"},
    {Wrong::ThreadLeft, "Starts and stops: starts and stops leave no threads"},
    {Wrong::StopStopsAll, "Two cameras: stopping one leaves the other live"},
    {Wrong::SettingsShared, "Two cameras: a setting of one is not the other's"},
    {Wrong::SameSerial, "Two cameras: the serial texts differ"},
    {Wrong::IndicesStay, "Closing: later cameras move one down"},
    {Wrong::ClosedContextAnswers, "Closed context: GetPropertyType"},
    {Wrong::CloseTwiceRefused, "Closed context: CloseChannel answers 0"},
    {Wrong::CamerasComeBack, "End: there are none after the last"},
    {Wrong::LongValue, "All calls: values keep to 256 bytes"},
    {Wrong::MessageWithoutEnd, "All calls: messages keep to 256 bytes"},
    {Wrong::BytesThatAreNoText, "All calls: texts are UTF-8"},
    {Wrong::StrangeResult, "All calls: every result is 0 or 1"},
    {Wrong::NeedlessMessage, "All calls: a value comes without a message"},
};

class AdapterWrongInOneThing : public testing::TestWithParam<Row> {};

TEST_P(AdapterWrongInOneThing, FailsInTheOneLineThatIsAboutIt) {
    CCheckedSystem system(GetParam().wrong);
    const Outcome outcome = check(system);
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(failedLines(outcome.out), ElementsAre(GetParam().line)) << outcome.out;
}

INSTANTIATE_TEST_SUITE_P(Check, AdapterWrongInOneThing, testing::ValuesIn(wrongThings));

TEST(Check, AnAdapterThatKeepsTheContractPasses) {
    CCheckedSystem system;
    const Outcome outcome = check(system);
    EXPECT_EQ(outcome.exit, 0) << outcome.out;
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, Not(HasSubstr("FAIL")));
    EXPECT_THAT(outcome.out, HasSubstr("\nTotal: "));
    EXPECT_THAT(outcome.out, EndsWith(", Not Supported: 0, Failed: 0\n"));
}

TEST(Check, PutsTheSettingsBack) {
    CCheckedSystem system;
    const auto before = system.settings();
    check(system);
    EXPECT_EQ(system.settings(), before);
}

TEST(Check, WithOneCameraWhatNeedsTwoIsNotSupported) {
    CCheckedSystem system(Wrong::Nothing, 1);
    const Outcome outcome = check(system, {"--only", "Two cameras"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "camhost check of made_up.dll, camera 1A2B \"SIM Checked 1\"\n"
              "Two cameras:\n"
              "\ttest the contexts differ: OK (Not Supported)\n"
              "\ttest the serial texts differ: OK (Not Supported)\n"
              "\ttest both are live at once: OK (Not Supported)\n"
              "\ttest stopping one leaves the other live: OK (Not Supported)\n"
              "\ttest a setting of one is not the other's: OK (Not Supported)\n"
              "Total: 5, Succeeded: 0, Not Supported: 5, Failed: 0\n");
}

TEST(Check, AFailureSaysWhyAboveItsLine) {
    CCheckedSystem system(Wrong::LineWidthInBytes);
    const Outcome outcome = check(system, {"--only", "line width"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.out,
              "camhost check of made_up.dll, camera 1A2B \"SIM Checked 1\"\n"
              "Image description:\n"
              "\t\tfail: 12 at a width of 4\n"
              "\ttest the line width is the width in pixels: FAIL\n"
              "Total: 1, Succeeded: 0, Not Supported: 0, Failed: 1\n");
    EXPECT_EQ(outcome.err, "error: 1 of 1 tests failed\n");
}

TEST(Check, AsJsonEveryTestHasAnOutcome) {
    CCheckedSystem system(Wrong::LineWidthInBytes);
    const Outcome outcome = check(system, {"--json", "--only", "Image description: * pixel*"});
    EXPECT_EQ(outcome.out,
              R"({"schema":"camhost/1","command":"check","camera":{"index":0,"serial":"1A2B",)"
              R"("name":"SIM Checked 1"},"result":{"tests":[{"group":"Image description",)"
              R"("name":"the line width is the width in pixels","outcome":"fail",)"
              R"("reasons":["12 at a width of 4"]},{"group":"Image description",)"
              R"("name":"the pixel type is 0, 4 or 7","outcome":"ok"}],"total":2,"succeeded":1,)"
              R"("not_supported":0,"failed":1},"error":{"code":"check",)"
              R"("message":"1 of 2 tests failed"},"exit":1})"
              "\n");
}

TEST(Check, AsJunitFailuresAndWhatWasNotTriedAreTold) {
    const CTestFolder folder;
    CCheckedSystem system(Wrong::LineWidthInBytes, 1);
    const Outcome outcome =
        check(system, {"--junit", folder.file("check.xml"), "--only", "line width"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(folder.content("check.xml"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<testsuites name=\"made_up.dll\" tests=\"1\" failures=\"1\" skipped=\"0\">\n"
              "  <testsuite name=\"Image description\" tests=\"1\" failures=\"1\" skipped=\"0\">\n"
              "    <testcase classname=\"Image description\" name=\"the line width is the width "
              "in pixels\" time=\"0.000\">\n"
              "      <failure message=\"12 at a width of 4\"/>\n"
              "    </testcase>\n"
              "  </testsuite>\n"
              "</testsuites>\n");
    CCheckedSystem again(Wrong::Nothing, 1);
    check(again, {"--junit", folder.file("check.xml"), "--only", "contexts"});
    EXPECT_THAT(folder.content("check.xml"),
                HasSubstr("      <skipped message=\"there is one camera only\"/>\n"));
}

// U+FFFE and U+FFFF, which no XML holds.
TEST(Check, ForeignTextsLeaveAJunitFileReadable) {
    const std::vector<Finding> findings{{.group = "G",
                                         .name = "n",
                                         .outcome = camhost::Outcome::Fails,
                                         .reasons = {"\"a\xEF\xBF\xBE"
                                                     "b\xEF\xBF\xBF"
                                                     "c\xFF\x1B<"}}};
    EXPECT_THAT(junitText("a.dll", findings),
                HasSubstr("<failure message=\"&quot;a b c\xEF\xBF\xBD &lt;\"/>"));
}

TEST(Check, ACameraIsChosenAsEverywhere) {
    CCheckedSystem system;
    EXPECT_THAT(check(system, {"-c", "77C01", "--only", "Record"}).out,
                HasSubstr("camera 77C01 \"SIM Checked 2\"\n"));
    CCheckedSystem other;
    EXPECT_EQ(check(other, {"-c", "none"}).exit, 3);
}

TEST(Check, APatternThatFitsNothingIsAMistake) {
    CCheckedSystem system;
    const Outcome outcome = check(system, {"--only", "limts"});
    EXPECT_EQ(outcome.exit, 2);
    EXPECT_EQ(outcome.err, "error: no test matches \"limts\"\n");
}

TEST(Check, AnInterruptedCheckStopsVideoAndSaysSo) {
    CCheckedSystem system;
    system.interruptAfter = 101.5;
    const Outcome outcome = check(system);
    EXPECT_EQ(outcome.exit, 130);
    EXPECT_THAT(outcome.err, HasSubstr("error: interrupted after "));
}

}  // namespace
}  // namespace camhost::test
