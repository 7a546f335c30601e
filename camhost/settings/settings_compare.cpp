// SPDX-License-Identifier: MIT
#include "camhost/settings/settings_compare.h"

#include <algorithm>

#include "camhost/base/texts.h"
#include "camhost/settings/value_guards.h"

namespace camhost {

namespace {

bool readsOtherwise(const Setting& now, const std::string& text) {
    return !now.problem.empty() || !sameValue(now.type, text, now.text);
}

}  // namespace

SettingsFile readSettingsFile(const CRecordChannel& camera, CSettings& settings,
                              const std::string& date, CReport& report) {
    SettingsFile file{camera.serial(), camera.name(), date, {}};
    for (const std::string& key : settings.keys()) {
        if (!loadStage(key)) {
            continue;
        }
        const Setting setting = settings.read(key);
        if (setting.problem.empty()) {
            file.settings.emplace_back(key, setting.text);
        } else {
            report.warning(key + " left out: " + printable(setting.problem));
        }
    }
    return file;
}

std::vector<SettingDifference> differencesFrom(const SettingsFile& file, CSettings& settings) {
    std::vector<SettingDifference> found;
    for (const auto& [key, saved] : file.settings) {
        if (!settings.hasKey(key)) {
            found.push_back({key, saved, std::nullopt});
            continue;
        }
        const Setting now = settings.read(key);
        if (readsOtherwise(now, saved)) {
            found.push_back({key, saved, now.text});
        }
    }
    for (const std::string& key : settings.keys()) {
        const bool saved = std::any_of(file.settings.begin(), file.settings.end(),
                                       [&](const auto& setting) { return setting.first == key; });
        if (!saved && loadStage(key)) {
            found.push_back({key, std::nullopt, settings.read(key).text});
        }
    }
    return found;
}

CJson differenceJson(const SettingDifference& difference) {
    CJson json = CJson::object({{"key", difference.key}});
    if (difference.saved) {
        json.set("saved", *difference.saved);
    }
    if (difference.now) {
        json.set("now", *difference.now);
    }
    return json;
}

}  // namespace camhost
