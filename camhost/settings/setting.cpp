// SPDX-License-Identifier: MIT
#include "camhost/settings/setting.h"

namespace camhost {

std::vector<std::string> Setting::flags() const {
    std::vector<std::string> words;
    if (automatic) {
        words.emplace_back("auto");
    }
    if (readOnly) {
        words.emplace_back("read-only");
    }
    if (!problem.empty()) {
        words.emplace_back("unavailable");
    }
    return words;
}

}  // namespace camhost
