// SPDX-License-Identifier: MIT
// What is known about one setting or action of a camera. Portable.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "camhost/settings/key_kinds.h"

namespace camhost {

struct Setting {
    std::string key;
    SettingType type = SettingType::Text;
    KeyLevel level = KeyLevel::Basic;
    std::string text;
    std::optional<std::string> minimum;
    std::optional<std::string> maximum;
    std::vector<std::string> choices;
    bool automatic = false;  // guarded by an automatic that is on
    bool readOnly = false;
    std::string problem;  // why it can't be read

    std::vector<std::string> flags() const;
    bool operator==(const Setting&) const = default;
};

}  // namespace camhost
