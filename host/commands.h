// SPDX-License-Identifier: MIT
// The commands of camhost: one function and one file each, in one table that
// application.cpp walks. Portable.
#pragma once

#include <string>
#include <string_view>

#include "host/cameras.h"
#include "host/options.h"
#include "host/report.h"
#include "host/system.h"

namespace camhost {

struct CommandContext {
    const Options& options;
    CSystem& system;
    CReport& report;
    CCameras& cameras;
    CChannel* camera;  // null for commands that need none

    // What a pasted command line for the same camera starts with.
    std::string hintPrefix() const;
};

// They return how it went; what ends them early is thrown as a Failure.
using CommandFunction = ExitCode (*)(CommandContext& context);

ExitCode runList(CommandContext& context);
ExitCode runInfo(CommandContext& context);
ExitCode runProps(CommandContext& context);
ExitCode runGet(CommandContext& context);
ExitCode runSet(CommandContext& context);
ExitCode runChoices(CommandContext& context);
ExitCode runCommands(CommandContext& context);
ExitCode runExec(CommandContext& context);
ExitCode runParams(CommandContext& context);
ExitCode runSave(CommandContext& context);
ExitCode runLoad(CommandContext& context);
ExitCode runDiff(CommandContext& context);
ExitCode runGrab(CommandContext& context);

struct Command {
    std::string_view name;
    CommandFunction run;
    bool needsCamera;
};

// Null for a name that is no command.
const Command* findCommand(std::string_view name);

}  // namespace camhost
