// SPDX-License-Identifier: MIT
// What a check found as lines, as JSON and as a JUnit file. Portable.
#pragma once

#include <string>
#include <vector>

#include "camhost/base/json.h"
#include "camhost/check/check_run.h"

namespace camhost {

// Reasons first, then "test NAME: OK".
std::vector<std::string> findingLines(const Finding& finding);
std::string totalLine(const Counts& counts);

CJson findingsJson(const std::vector<Finding>& findings);
// For the adapter's file as the name of the suites.
std::string junitText(const std::string& adapter, const std::vector<Finding>& findings);

}  // namespace camhost
