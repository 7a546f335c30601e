// SPDX-License-Identifier: MIT
// A camera's settings to a settings file, and compared with one: what save and diff do.
// Portable.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "camhost/base/report.h"
#include "camhost/settings/settings.h"
#include "camhost/settings/settings_file.h"

namespace camhost {

// Everything that can be set. What can't be read is left out, with a warning.
SettingsFile readSettingsFile(const CRecordChannel& camera, CSettings& settings,
                              const std::string& date, CReport& report);

struct SettingDifference {
    std::string key;
    std::optional<std::string> saved;  // none: not in the file
    std::optional<std::string> now;    // none: not in the camera
};
std::vector<SettingDifference> differencesFrom(const SettingsFile& file, CSettings& settings);
CJson differenceJson(const SettingDifference& difference);

}  // namespace camhost
