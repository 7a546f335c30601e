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

}  // namespace camhost
