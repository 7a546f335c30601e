// SPDX-License-Identifier: MIT
// What the program says of itself, in the help, the man page and completion scripts.
// Portable.
#pragma once

#include <string>

#include "camhost/application/command_table.h"
#include "camhost/help/outline.h"

namespace camhost {

// Without options and commands.
ProgramOutline programFacts();
// Has the commands name their options: none of them may have read any.
ProgramOutline programOutline(const Commands& commands);

// The end of the program's help.
std::string helpFooter(const ProgramOutline& program);

}  // namespace camhost
