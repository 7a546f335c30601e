// SPDX-License-Identifier: MIT
// Completion scripts and the man page: those of a small program as approved, and those of
// camhost for what they have to name.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "camhost/application/program_outline.h"
#include "camhost/base/files.h"
#include "camhost/help/completion.h"
#include "camhost/help/manual_page.h"
#include "tests/camhost_logic/camhost_fixture.h"

namespace camhost::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// After a wanted change: the test leaves what it found in a file, and names it.
void expectApproved(const std::string& text, const std::string& name) {
    const std::string found = testing::TempDir() + name;
    writeTextFile(found, text);
    const std::string file = std::string(VELMORA_SOURCE_DIR) + "/tests/golden/camhost/" + name;
    EXPECT_EQ(text, isFile(file) ? readTextFile(file) : "") << file << " against " << found;
}

// One of each kind of word and option.
ProgramOutline smallProgram() {
    return {.name = "camhost",
            .version = "1.2.3",
            .what = "drives cameras",
            .examples = "  camhost list\n  camhost -c 1A2B get gain",
            .options = {{.names = {"-h", "--help"}, .what = "this"},
                        {.names = {"--adapter"}, .value = "DLL", .what = "it's the adapter"},
                        {.names = {"-c", "--camera"}, .value = "CAMERA", .what = "which"},
                        {.names = {"--clock"}, .value = "real|fast", .what = "how frames come"}},
            .commands =
                {{.name = "list", .what = "cameras", .examples = "  camhost list", .options = {}},
                 {.name = "get",
                  .what = "values",
                  .examples = "  camhost get gain\n  camhost get \"trigger mode strings\"",
                  .options = {{.value = "KEY", .what = "keys", .required = true, .repeated = true},
                              {.names = {"--plain"}, .what = "with tabs"}}},
                 {.name = "set",
                  .what = "change them",
                  .examples = "  camhost set 'gain=1'",
                  .options = {{.value = "KEY=VALUE",
                               .what = "assignments",
                               .required = true,
                               .repeated = true}}},
                 {.name = "exec",
                  .what = "do",
                  .examples = "  camhost exec push",
                  .options = {{.value = "COMMAND", .what = "what", .required = true}}},
                 {.name = "save",
                  .what = "to C:\\x",
                  .examples = "  camhost save C:\\x.json",
                  .options = {{.value = "FILE", .what = "to write", .required = true}}},
                 {.name = "shell",
                  .what = ".hidden",
                  .examples = "  camhost shell bash",
                  .options = {{.value = "bash|powershell", .what = "which", .required = true}}},
                 {.name = "grab",
                  .what = "frames",
                  .examples = "  camhost grab -n 2",
                  .options =
                      {{.names = {"-n", "--frames"}, .value = "N", .what = "how many"},
                       {.names = {"--on-loss"}, .value = "wait|fail|SECONDS", .what = "at a loss"},
                       {.value = "PATTERN", .what = "names", .required = false}}}},
            .exitCodes = {{0, "done"}, {130, "interrupted"}}};
}

TEST(Help, TheCompletionForBashIsTheApprovedOne) {
    expectApproved(bashCompletion(smallProgram()), "completion.bash");
}

TEST(Help, TheCompletionForPowerShellIsTheApprovedOne) {
    expectApproved(powershellCompletion(smallProgram()), "completion.ps1");
}

TEST(Help, TheManPageIsTheApprovedOne) {
    expectApproved(manualPage(smallProgram()), "camhost.1");
}

TEST(Help, WhatStandsForAValueTellsHowItIsCompleted) {
    EXPECT_EQ(completedBy("png|raw"), "png raw");
    EXPECT_EQ(completedBy("wait|fail|SECONDS"), "wait fail");
    EXPECT_EQ(completedBy("NAME|FILE"), "@file");
    EXPECT_EQ(completedBy("KEY"), "@setting");
    EXPECT_EQ(completedBy("KEY=VALUE"), "@assignment");
    EXPECT_EQ(completedBy("COMMAND"), "@action");
    EXPECT_EQ(completedBy("CAMERA"), "@camera");
    EXPECT_EQ(completedBy("N"), "@none");
}

class HelpCommands : public CCamhostTest {
protected:
    // What stands in single quotes there, between blanks.
    static std::string quotedAfter(const std::string& text, const std::string& place) {
        const std::size_t begin = text.find(place + "'") + place.size() + 1;
        std::string quoted = " " + text.substr(begin, text.find('\'', begin) - begin) + " ";
        std::replace(quoted.begin(), quoted.end(), '\n', ' ');
        return quoted;
    }
};

TEST_F(HelpCommands, EveryCommandAndOptionIsInAllThree) {
    const std::string bash = camhost({"completion", "bash"}).out;
    const std::string powershell = camhost({"completion", "powershell"}).out;
    const std::string manual = camhost({"manual"}).out;
    const std::string words = quotedAfter(bash, "_camhost_commands=");
    for (const CommandOutline& command : programOutline(allCommands()).commands) {
        EXPECT_THAT(words, HasSubstr(" " + command.name + " "));
        EXPECT_THAT(powershell, HasSubstr("        '" + command.name + "' = '"));
        EXPECT_THAT(manual, HasSubstr("\n.SS " + command.name + "\n"));
        for (const OptionOutline& option : command.options) {
            for (const std::string& name : option.names) {
                EXPECT_THAT(bash, HasSubstr(name)) << command.name;
                EXPECT_THAT(powershell, HasSubstr("'" + name + "'")) << command.name;
            }
        }
    }
    for (const char* option : {"--help", "--version", "--adapter", "--json", "--verbose"}) {
        EXPECT_THAT(bash, HasSubstr(option));
        EXPECT_THAT(powershell, HasSubstr(std::string("'") + option + "'"));
    }
    EXPECT_THAT(manual, HasSubstr("\\fB\\-c\\fR, \\fB\\-\\-camera\\fR \\fICAMERA\\fR\n"));
    EXPECT_THAT(bash, HasSubstr("    'grab --format') echo 'png raw pnm none' ;;\n"));
    EXPECT_THAT(bash, HasSubstr("    'get ') echo '@setting' ;;\n"));
}

// A change of any line, option, value or example of the help shows there.
TEST_F(HelpCommands, TheManPageOfAllCommandsIsTheApprovedOne) {
    const std::string page = camhost({"manual"}).out;
    const std::size_t begin = page.find("\n.SH NAME\n");  // behind the version
    ASSERT_NE(begin, page.npos);
    expectApproved(page.substr(begin + 1), "all_commands.1");
}

// They are for a shell's start, where there may be no adapter.
TEST_F(HelpCommands, NeedNoAdapter) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"completion", "bash"},
          {"completion", "powershell"},
          {"manual"}}) {
        const Outcome outcome = camhost(arguments);
        EXPECT_EQ(outcome.exit, 0);
        EXPECT_EQ(outcome.err, "");
    }
    EXPECT_TRUE(camera().log.empty());
}

TEST_F(HelpCommands, GiveTheirTextsAsJson) {
    EXPECT_THAT(camhost({"--json", "completion", "bash"}).out,
                StartsWith("{\"schema\":\"camhost/1\",\"command\":\"completion\",\"result\":{"
                           "\"shell\":\"bash\",\"script\":\"# Completion of camhost's"));
    EXPECT_THAT(camhost({"--json", "manual"}).out,
                StartsWith("{\"schema\":\"camhost/1\",\"command\":\"manual\",\"result\":{"
                           "\"page\":\".\\\\\\\" SPDX"));
}

TEST_F(HelpCommands, ACompletionIsForAShellThatIsKnown) {
    EXPECT_EQ(camhost({"completion", "fish"}).exit, 2);
    EXPECT_EQ(camhost({"completion"}).exit, 2);
    EXPECT_EQ(camhost({"completion", "BASH"}).out, camhost({"completion", "bash"}).out);
}

TEST_F(HelpCommands, TheHelpEndsInExitCodesAndExamples) {
    EXPECT_THAT(
        camhost({"--help"}).out,
        HasSubstr("Exit codes: 0 done, 1 refused, 2 usage, 3 adapter or camera not found, 4 "
                  "no frame in\ntime, 5 device lost, 6 done in part, 130 interrupted.\n"
                  "Examples:\n  camhost list\n"));
    EXPECT_THAT(camhost({"--help"}).out, StartsWith("Drives cameras through a camera adapter.\n"));
}

}  // namespace
}  // namespace camhost::test
