// SPDX-License-Identifier: MIT
// Reads the command line. The only file that knows the library for that is
// command_line.cpp. Portable.
#pragma once

#include <string>
#include <vector>

#include "camhost/application/command_table.h"

namespace camhost {

// Those that all commands have.
struct GlobalOptions {
    std::string adapter;
    std::string camera;
    std::string rig;
    std::string clock;
    bool json = false;
    bool quiet = false;
    int verbose = 0;
    bool dialogs = false;
};

inline constexpr const char* versionHelp = "the version of camhost";
void takeGlobalOptions(COptionList& list, GlobalOptions& options);

enum class CommandLineOutcome { Run, Help, Error };

struct CommandLine {
    CommandLineOutcome outcome = CommandLineOutcome::Run;
    GlobalOptions options;
    std::string command;  // empty when the line names none
    std::string text;     // the help, or the reason
    std::string help;     // the command line that would help, after an error
};

// Arguments are UTF-8, without the program's name. A command's own options land in
// the command.
CommandLine readCommandLine(const std::vector<std::string>& arguments, const Commands& commands);

}  // namespace camhost
