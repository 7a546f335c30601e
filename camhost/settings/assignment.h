// SPDX-License-Identifier: MIT
// KEY=VALUE, as set, params and grab take it. Portable.
#pragma once

#include <string>
#include <vector>

namespace camhost {

struct Assignment {
    std::string key;
    std::string value;
};

// Split at the first equals sign. Throws a usage Failure without one.
Assignment parseAssignment(const std::string& text);
std::vector<Assignment> parseAssignments(const std::vector<std::string>& texts);

}  // namespace camhost
