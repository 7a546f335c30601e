// SPDX-License-Identifier: MIT
// camhost from its arguments to its exit code. Called by main with the real
// machine, and by tests with a made-up one. Portable.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "camhost/base/system.h"

namespace camhost {

// Arguments are UTF-8, without the program's name. Returns the exit code.
int runApplication(const std::vector<std::string>& arguments, CSystem& system,
                   std::ostream& results, std::ostream& messages);

}  // namespace camhost
