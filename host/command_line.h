// SPDX-License-Identifier: MIT
// Reads the command line. The only file that knows the library for that is
// command_line.cpp. Portable.
#pragma once

#include <string>
#include <vector>

#include "host/options.h"

namespace camhost {

enum class CommandLineOutcome { Run, Help, Error };

struct CommandLine {
    CommandLineOutcome outcome = CommandLineOutcome::Run;
    Options options;
    std::string text;  // the help, or the reason
    std::string help;  // the command line that would help, after an error
};

// Arguments are UTF-8, without the program's name.
CommandLine readCommandLine(const std::vector<std::string>& arguments);

}  // namespace camhost
