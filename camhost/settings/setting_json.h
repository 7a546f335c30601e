// SPDX-License-Identifier: MIT
// Settings as JSON; what is not known about one is absent. Portable.
#pragma once

#include <vector>

#include "camhost/base/json.h"
#include "camhost/settings/setting.h"

namespace camhost {

// A number or a truth where the text is one, else the text.
CJson valueJson(SettingType type, const std::string& text);
CJson settingJson(const Setting& setting);
CJson settingsJson(const std::vector<Setting>& settings);

}  // namespace camhost
