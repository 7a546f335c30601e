// SPDX-License-Identifier: MIT
// For the files of commands alone: each ends with an instantiation of this. Portable.
#pragma once

#include "camhost/commands/command.h"

namespace camhost {

template <class Command>
std::unique_ptr<CCommand> makeCommand() {
    return std::make_unique<Command>();
}

}  // namespace camhost
