// SPDX-License-Identifier: MIT
#include "camhost/application/program_outline.h"

#include "camhost/application/command_line.h"
#include "camhost/base/texts.h"

namespace camhost {

namespace {

constexpr std::size_t lineWidth = 84;

// Every command's, which the library of the command line adds by itself.
void addHelp(std::vector<OptionOutline>& options) {
    options.push_back({.names = {"-h", "--help"}, .what = "help, for a command its own"});
}

}  // namespace

ProgramOutline programFacts() {
    return {.name = "camhost",
            .version = CAMHOST_VERSION,
            .what = "drives cameras through a camera adapter",
            .examples =
                "  camhost list\n"
                "  camhost -c 1A2B grab -n 10 -o shot_%02d.png",
            .options = {},
            .commands = {},
            .exitCodes = {{0, "done"},
                          {1, "refused"},
                          {2, "usage"},
                          {3, "adapter or camera not found"},
                          {4, "no frame in time"},
                          {5, "device lost"},
                          {6, "done in part"},
                          {130, "interrupted"}}};
}

ProgramOutline programOutline(const Commands& commands) {
    ProgramOutline program = programFacts();
    addHelp(program.options);
    program.options.push_back({.names = {"--version"}, .what = versionHelp});
    GlobalOptions unused;
    COutlineList list(program.options);
    takeGlobalOptions(list, unused);
    for (const auto& command : commands) {
        const CommandHelp help = command->help();
        program.commands.push_back(
            {.name = help.name, .what = help.what, .examples = help.examples, .options = {}});
        COutlineList own(program.commands.back().options);
        command->takeOptions(own);
    }
    return program;
}

std::string helpFooter(const ProgramOutline& program) {
    std::string text = "Exit codes:";
    std::size_t width = text.size();
    const auto add = [&](const std::string& word) {
        const bool fits = width + 1 + word.size() <= lineWidth;
        text += (fits ? " " : "\n") + word;
        width = fits ? width + 1 + word.size() : word.size();
    };
    for (const auto& [code, meaning] : program.exitCodes) {
        add(std::to_string(code));
        const bool isLast = code == program.exitCodes.back().first;
        for (const std::string& word : split(meaning + (isLast ? "." : ","), ' ')) {
            add(word);
        }
    }
    return text + "\nExamples:\n" + program.examples;
}

}  // namespace camhost
