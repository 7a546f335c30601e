// SPDX-License-Identifier: MIT
// Settings as lines of text. Portable.
#pragma once

#include <string>
#include <vector>

#include "camhost/settings/setting.h"

namespace camhost {

// "key (type) : min=0 max=255 value=128 flags=auto", aligned to the widths.
struct SettingColumns {
    std::size_t key = 0;
    std::size_t type = 0;
};
SettingColumns columnsFor(const std::vector<Setting>& settings);
std::string settingLine(const Setting& setting, const SettingColumns& columns);
// Indented below the line, the current one marked.
std::vector<std::string> choiceLines(const Setting& setting);
// Key, type, value, minimum, maximum, flags.
std::string plainLine(const Setting& setting);

}  // namespace camhost
