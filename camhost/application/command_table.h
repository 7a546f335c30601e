// SPDX-License-Identifier: MIT
// All commands of camhost: one row each. Portable.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "camhost/commands/command.h"

namespace camhost {

using Commands = std::vector<std::unique_ptr<CCommand>>;

// Made anew, with no options read yet; in the order of the help.
Commands allCommands();

// Null for a name that is no command.
CCommand* findCommand(const Commands& commands, std::string_view name);

}  // namespace camhost
