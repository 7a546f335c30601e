// SPDX-License-Identifier: MIT
// The man page of the program. Portable.
#pragma once

#include <string>

#include "camhost/help/outline.h"

namespace camhost {

// For the macros of man pages.
std::string manualPage(const ProgramOutline& program);

}  // namespace camhost
