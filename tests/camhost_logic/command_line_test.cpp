// SPDX-License-Identifier: MIT
#include "camhost/application/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "camhost/application/command_table.h"
#include "camhost/grab/grab_options.h"
#include "tests/camhost_logic/made_up_adapter.h"

namespace camhost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

CommandLine read(const std::vector<std::string>& arguments) {
    return readCommandLine(arguments, allCommands());
}

TEST(CommandLine, GlobalOptionsStandBeforeOrBehindTheCommand) {
    const CommandLine before = read({"-c", "1A2B", "--json", "list"});
    EXPECT_EQ(before.outcome, CommandLineOutcome::Run);
    EXPECT_EQ(before.command, "list");
    EXPECT_EQ(before.options.camera, "1A2B");
    EXPECT_TRUE(before.options.json);
    const CommandLine behind = read({"list", "--json", "-c", "#1", "-vv"});
    EXPECT_EQ(behind.options.camera, "#1");
    EXPECT_EQ(behind.options.verbose, 2);
}

TEST(CommandLine, AssignmentsKeepBlanksAndSigns) {
    test::CMadeUpSystem system;
    system.cameras.push_back(test::ordinaryCamera());
    test::MadeUpCamera& camera = system.cameras[0];
    camera.values["a"] = "";
    camera.values["gain value range min"] = "-10";
    test::run(system,
              {"set", "gain value range=-3", "a=b=c", "exposure value abs=0.5", "--manual"});
    EXPECT_THAT(camera.log,
                ElementsAre("gain value range=-3", "a=b=c", "exposure auto switch=false",
                            "exposure value abs=0.5", "close"));
}

TEST(CommandLine, KeysThatAreNamesOfCommandsAreKeys) {
    test::CMadeUpSystem system;
    system.cameras.push_back(test::ordinaryCamera());
    system.cameras[0].values["list"] = "1";
    system.cameras[0].values["grab"] = "2";
    EXPECT_EQ(test::run(system, {"get", "list", "grab"}).out,
              "list  (text) : value=1\ngrab  (text) : value=2\n");
}

// In the place of grab, with its options.
class CGrabLine : public CCommand {
public:
    explicit CGrabLine(GrabOptions& options) : m_options(options) {}
    CommandHelp help() const override { return {"grab", "", ""}; }
    void takeOptions(COptionList& list) override { takeGrabOptions(list, m_options); }
    ExitCode run(CommandContext&) override { return ExitCode::Done; }

private:
    GrabOptions& m_options;
};

TEST(CommandLine, GrabOptionsAreRead) {
    GrabOptions grab;
    Commands commands;
    commands.push_back(std::make_unique<CGrabLine>(grab));
    const CommandLine line =
        readCommandLine({"grab", "-n", "100", "-o", "shot_%04d.png", "--bayer", "bggr", "--skip",
                         "2", "--timeout", "1.5", "--on-loss", "wait", "--format", "none",
                         "--demosaic", "fast", "--pixelformat", "raw8"},
                        commands);
    EXPECT_EQ(line.outcome, CommandLineOutcome::Run);
    EXPECT_EQ(grab.frames, 100U);
    EXPECT_EQ(grab.output, "shot_%04d.png");
    EXPECT_EQ(grab.bayer, "bggr");
    EXPECT_EQ(grab.skip, 2U);
    EXPECT_EQ(grab.timeout, 1.5);
    EXPECT_EQ(grab.onLoss, "wait");
    EXPECT_EQ(grab.format, "none");
    EXPECT_EQ(grab.demosaic, "fast");
    EXPECT_EQ(grab.first.pixelFormat, "raw8");
}

TEST(CommandLine, CountsAreDecimalHoweverTheyBegin) {
    GrabOptions grab;
    Commands commands;
    commands.push_back(std::make_unique<CGrabLine>(grab));
    const CommandLine line =
        readCommandLine({"grab", "-n", "010", "--skip", "+08", "--timeout", "010"}, commands);
    EXPECT_EQ(line.outcome, CommandLineOutcome::Run) << line.text;
    EXPECT_EQ(grab.frames, 10U);
    EXPECT_EQ(grab.skip, 8U);
    EXPECT_EQ(grab.timeout, 10.0);
}

struct Wrong {
    std::vector<std::string> arguments;
    const char* text;
    const char* help;
};

TEST(CommandLine, MistakesAreNamedWithTheHelpThatFits) {
    const Wrong wrongs[] = {
        {{}, "required", "camhost --help"},
        {{"gte"}, "there is no command \"gte\"; did you mean \"get\"", "camhost --help"},
        {{"--fast"}, "there is no option \"--fast\"", "camhost --help"},
        {{"set"}, "KEY=VALUE is required", "camhost set --help"},
        {{"list", "more"}, "more", "camhost list --help"},
        {{"grab", "-n", "0"}, "takes a number above 0, not 0", "camhost grab --help"},
        {{"grab", "--skip", "-1"}, "takes a whole number, not -1", "camhost grab --help"},
        {{"grab", "-n", "1.5"}, "takes a whole number, not 1.5", "camhost grab --help"},
        {{"grab", "-n", "99999999999999999999"}, "takes a whole number", "camhost grab --help"},
        {{"view", "--port", "0x50"}, "takes a whole number, not 0x50", "camhost view --help"},
        {{"grab", "--format", "jpeg"}, "jpeg", "camhost grab --help"},
        {{"--clock", "slow", "list"}, "slow", "camhost list --help"},
    };
    for (const Wrong& wrong : wrongs) {
        const CommandLine line = read(wrong.arguments);
        EXPECT_EQ(line.outcome, CommandLineOutcome::Error);
        EXPECT_THAT(line.text, HasSubstr(wrong.text));
        EXPECT_EQ(line.help, wrong.help);
    }
}

TEST(CommandLine, ChoicesAreTakenInLettersOfAnyCase) {
    GrabOptions grab;
    Commands commands;
    commands.push_back(std::make_unique<CGrabLine>(grab));
    const CommandLine line = readCommandLine(
        {"--clock", "FAST", "grab", "--bayer", "GRBG", "--format", "PNG", "--demosaic", "Fast"},
        commands);
    EXPECT_EQ(line.outcome, CommandLineOutcome::Run) << line.text;
    EXPECT_EQ(line.options.clock, "fast");
    EXPECT_EQ(grab.bayer, "grbg");
    EXPECT_EQ(grab.format, "png");
    EXPECT_EQ(grab.demosaic, "fast");
}

// On Windows these would else be options.
TEST(CommandLine, AWordThatBeginsWithASlashIsAFile) {
    const CommandLine line = read({"save", "/home/me/x.json"});
    EXPECT_EQ(line.outcome, CommandLineOutcome::Run) << line.text;
    EXPECT_EQ(read({"list", "/json"}).outcome, CommandLineOutcome::Error);
}

TEST(CommandLine, TheVersionCanBeAsked) {
    const CommandLine line = read({"--version"});
    EXPECT_EQ(line.outcome, CommandLineOutcome::Help);
    EXPECT_THAT(line.text, testing::StartsWith("camhost "));
    const std::string version = line.text.substr(std::string("camhost ").size());
    EXPECT_EQ(std::count(version.begin(), version.end(), '.'), 2);
    EXPECT_EQ(version.find_first_not_of("0123456789."), version.size() - 1);
    EXPECT_EQ(version.back(), '\n');
}

TEST(CommandLine, AskingForJsonCountsAlsoInAMistake) {
    EXPECT_TRUE(read({"gte", "--json"}).options.json);
}

TEST(CommandLine, EveryHelpEndsInTwoExamples) {
    const Commands commands = allCommands();
    for (const char* command : {"list", "info", "props", "get", "set", "choices", "commands",
                                "exec", "params", "save", "load", "diff", "grab", "view"}) {
        EXPECT_NE(findCommand(commands, command), nullptr) << command;
    }
    for (const auto& command : commands) {
        const CommandLine line = read({command->help().name, "--help"});
        EXPECT_EQ(line.outcome, CommandLineOutcome::Help);
        const auto examples = line.text.find("Examples:\n  camhost ");
        ASSERT_NE(examples, std::string::npos) << command->help().name;
        const std::string end = line.text.substr(examples);
        EXPECT_EQ(std::count(end.begin(), end.end(), '\n'), 3) << line.text;
    }
    EXPECT_EQ(findCommand(commands, "peek"), nullptr);
}

}  // namespace
}  // namespace camhost
