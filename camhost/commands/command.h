// SPDX-License-Identifier: MIT
// What a command of camhost is: its line of the help, its options and what it does.
// Each is one class in one file of this folder, and one row in
// application/command_table.cpp. Portable.
#pragma once

#include <memory>
#include <string>

#include "camhost/base/failure.h"
#include "camhost/base/option_list.h"
#include "camhost/base/report.h"
#include "camhost/base/system.h"
#include "camhost/camera/cameras.h"
#include "camhost/help/outline.h"

namespace camhost {

struct CommandContext {
    CSystem& system;
    CReport& report;
    CCameras& cameras;
    CRecordChannel* camera = nullptr;  // null for commands that need none
    // As named on the line, for commands that need none; empty for none.
    std::string wantedCamera{};
    // What a pasted command line for the same camera starts with.
    std::string hintPrefix{};
    bool dialogs = false;  // message boxes are left to the user
    // For commands that need no adapter; empty and null for others.
    std::string wantedAdapter{};
    const ProgramOutline* program = nullptr;
};

struct CommandHelp {
    const char* name;
    const char* what;
    const char* examples;  // two lines
};

class CCommand {
public:
    CCommand() = default;
    CCommand(const CCommand&) = delete;
    CCommand& operator=(const CCommand&) = delete;
    virtual ~CCommand() = default;

    virtual CommandHelp help() const = 0;
    // The variables named here hold what the line says once run() is called.
    virtual void takeOptions(COptionList&) {}
    virtual bool needsCamera() const { return true; }
    // Without it, nothing is loaded and there are no cameras.
    virtual bool needsAdapter() const { return true; }
    // Returns how it went; what ends it early is thrown as a Failure.
    virtual ExitCode run(CommandContext& context) = 0;
};

// Defined in define_command.h for the file that holds the class, so that the table
// of commands needs no declaration but the name in its row.
template <class Command>
std::unique_ptr<CCommand> makeCommand();

}  // namespace camhost
