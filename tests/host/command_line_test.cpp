// SPDX-License-Identifier: MIT
#include "host/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/commands.h"

namespace camhost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(CommandLine, GlobalOptionsStandBeforeOrBehindTheCommand) {
    const CommandLine before = readCommandLine({"-c", "1A2B", "--json", "list"});
    EXPECT_EQ(before.outcome, CommandLineOutcome::Run);
    EXPECT_EQ(before.options.command, "list");
    EXPECT_EQ(before.options.camera, "1A2B");
    EXPECT_TRUE(before.options.json);
    const CommandLine behind = readCommandLine({"list", "--json", "-c", "#1", "-vv"});
    EXPECT_EQ(behind.options.camera, "#1");
    EXPECT_EQ(behind.options.verbose, 2);
}

TEST(CommandLine, AssignmentsKeepBlanksAndSigns) {
    const CommandLine line = readCommandLine({"set", "gain value range=-3", "a=b=c", "--manual"});
    EXPECT_THAT(line.options.arguments, ElementsAre("gain value range=-3", "a=b=c"));
    EXPECT_TRUE(line.options.manual);
}

TEST(CommandLine, KeysThatAreNamesOfCommandsAreKeys) {
    EXPECT_THAT(readCommandLine({"get", "list", "grab"}).options.arguments,
                ElementsAre("list", "grab"));
}

TEST(CommandLine, GrabOptionsAreRead) {
    const GrabOptions grab =
        readCommandLine({"grab", "-n", "100", "-o", "shot_%04d.png", "--bayer", "bggr", "--skip",
                         "2", "--timeout", "1.5", "--on-loss", "wait", "--format", "none",
                         "--demosaic", "fast", "--pixelformat", "raw8"})
            .options.grab;
    EXPECT_EQ(grab.frames, 100U);
    EXPECT_EQ(grab.output, "shot_%04d.png");
    EXPECT_EQ(grab.bayer, "bggr");
    EXPECT_EQ(grab.skip, 2U);
    EXPECT_EQ(grab.timeout, 1.5);
    EXPECT_EQ(grab.onLoss, "wait");
    EXPECT_EQ(grab.format, "none");
    EXPECT_EQ(grab.demosaic, "fast");
    EXPECT_EQ(grab.pixelFormat, "raw8");
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
        {{"grab", "--format", "jpeg"}, "jpeg", "camhost grab --help"},
        {{"--clock", "slow", "list"}, "slow", "camhost list --help"},
    };
    for (const Wrong& wrong : wrongs) {
        const CommandLine line = readCommandLine(wrong.arguments);
        EXPECT_EQ(line.outcome, CommandLineOutcome::Error);
        EXPECT_THAT(line.text, HasSubstr(wrong.text));
        EXPECT_EQ(line.help, wrong.help);
    }
}

TEST(CommandLine, AskingForJsonCountsAlsoInAMistake) {
    EXPECT_TRUE(readCommandLine({"gte", "--json"}).options.json);
}

TEST(CommandLine, EveryHelpEndsInTwoExamples) {
    for (const char* command : {"list", "info", "props", "get", "set", "choices", "commands",
                                "exec", "params", "save", "load", "diff", "grab"}) {
        ASSERT_NE(findCommand(command), nullptr) << command;
        const CommandLine line = readCommandLine({command, "--help"});
        EXPECT_EQ(line.outcome, CommandLineOutcome::Help);
        const auto examples = line.text.find("Examples:\n  camhost ");
        ASSERT_NE(examples, std::string::npos) << command;
        const std::string end = line.text.substr(examples);
        EXPECT_EQ(std::count(end.begin(), end.end(), '\n'), 3) << line.text;
    }
    EXPECT_EQ(findCommand("view"), nullptr);
}

}  // namespace
}  // namespace camhost
