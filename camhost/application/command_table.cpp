// SPDX-License-Identifier: MIT
#include "camhost/application/command_table.h"

#include <algorithm>

namespace camhost {

// One row per command: it brings the command's line of the help, its options and what
// it does. "class" declares the name, which the command's own file defines; so it must
// be a name of this namespace.
constexpr std::unique_ptr<CCommand> (*rows[])() = {
    makeCommand<class CListCommand>,      //
    makeCommand<class CInfoCommand>,      //
    makeCommand<class CPropsCommand>,     //
    makeCommand<class CGetCommand>,       //
    makeCommand<class CChoicesCommand>,   //
    makeCommand<class CCommandsCommand>,  //
    makeCommand<class CDiffCommand>,      //
    makeCommand<class CSetCommand>,       //
    makeCommand<class CExecCommand>,      //
    makeCommand<class CParamsCommand>,    //
    makeCommand<class CSaveCommand>,      //
    makeCommand<class CLoadCommand>,      //
    makeCommand<class CGrabCommand>,      //
    makeCommand<class CBenchCommand>,     //
    makeCommand<class CWatchCommand>,     //
    makeCommand<class CCheckCommand>,     //
    makeCommand<class CViewCommand>,      //
    makeCommand<class CDoctorCommand>,    //
    makeCommand<class CCompleteCommand>,  //
    makeCommand<class CManualCommand>,    //
};

Commands allCommands() {
    Commands commands;
    for (const auto& row : rows) {
        commands.push_back(row());
    }
    return commands;
}

CCommand* findCommand(const Commands& commands, std::string_view name) {
    const auto found = std::find_if(commands.begin(), commands.end(), [&](const auto& command) {
        return command->help().name == name;
    });
    return found == commands.end() ? nullptr : found->get();
}

}  // namespace camhost
