// SPDX-License-Identifier: MIT
// Virtual cameras made in this process. Apart from adapter_host.h, since a program that
// calls this has the capture library from its start.
#pragma once

#include <string>

namespace bench {

// Throws std::runtime_error with the place of the mistake.
void loadRig(const std::string& text);

}  // namespace bench
