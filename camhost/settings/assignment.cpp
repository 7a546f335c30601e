// SPDX-License-Identifier: MIT
#include "camhost/settings/assignment.h"

#include "camhost/base/failure.h"

namespace camhost {

Assignment parseAssignment(const std::string& text) {
    const auto equals = text.find('=');
    if (equals == text.npos || equals == 0) {
        throw Failure{.exit = ExitCode::Usage,
                      .code = "usage",
                      .message = "\"" + text + "\" is not KEY=VALUE",
                      .hint = "quote keys that hold blanks: \"gain value range=12\""};
    }
    return {text.substr(0, equals), text.substr(equals + 1)};
}

std::vector<Assignment> parseAssignments(const std::vector<std::string>& texts) {
    std::vector<Assignment> assignments;
    assignments.reserve(texts.size());
    for (const std::string& text : texts) {
        assignments.push_back(parseAssignment(text));
    }
    return assignments;
}

}  // namespace camhost
