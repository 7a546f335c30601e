// SPDX-License-Identifier: MIT
// Scripts by which a shell completes the command line. Portable.
#pragma once

#include <string>

#include "camhost/help/outline.h"

namespace camhost {

std::string bashCompletion(const ProgramOutline& program);
std::string powershellCompletion(const ProgramOutline& program);

}  // namespace camhost
