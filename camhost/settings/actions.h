// SPDX-License-Identifier: MIT
// What a camera's buttons do, and which settings changed by it. Portable.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "camhost/base/json.h"
#include "camhost/base/system.h"
#include "camhost/settings/settings.h"

namespace camhost {

// The property page is a dialog that was asked for.
inline constexpr const char* propertyPage = "propertydialog";

// Texts of all settings that an action may change.
using SettingTexts = std::vector<std::pair<std::string, std::string>>;
SettingTexts readTexts(CSettings& settings);

struct TextChange {
    std::string key;
    std::string before;
    std::string after;
};
std::vector<TextChange> changedTexts(const SettingTexts& before, const SettingTexts& after);
CJson textChangesJson(const std::vector<TextChange>& changes);

struct ActionOptions {
    std::string hintPrefix{};  // of pasted hints, such as "camhost -c 1A2B"
    bool manual = false;       // its automatic is switched off first
    bool dialogs = false;      // message boxes are left to the user
};
// Throws a Failure when it is refused.
void executeAction(CRecordChannel& camera, CSettings& settings, CSystem& system,
                   const std::string& command, const ActionOptions& options);

}  // namespace camhost
