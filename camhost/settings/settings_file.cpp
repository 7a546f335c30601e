// SPDX-License-Identifier: MIT
#include "camhost/settings/settings_file.h"

#include <algorithm>

#include "camhost/base/failure.h"
#include "camhost/base/json.h"
#include "camhost/settings/key_kinds.h"

namespace camhost {

namespace {

constexpr const char* schema = "camhost-settings/1";

Failure badFile(const std::string& fileName, const std::string& reason) {
    return {.exit = ExitCode::Usage,
            .code = "bad_file",
            .message = "\"" + fileName + "\" is no settings file: " + reason};
}

std::string textOf(const CJson& json, const char* key) {
    const std::optional<CJson> member = json.find(key);
    return member ? member->text().value_or("") : std::string();
}

}  // namespace

std::string settingsFileText(const SettingsFile& file) {
    CJson settings = CJson::object();
    for (const auto& [key, text] : file.settings) {
        settings.set(key, text);
    }
    return CJson::object({{"schema", schema},
                          {"serial", file.serial},
                          {"name", file.name},
                          {"date", file.date},
                          {"settings", settings}})
               .toText(2) +
           "\n";
}

SettingsFile parseSettingsFile(const std::string& text, const std::string& fileName) {
    std::string reason;
    const std::optional<CJson> json = CJson::parse(text, reason);
    if (!json) {
        throw badFile(fileName, reason);
    }
    if (textOf(*json, "schema") != schema) {
        throw badFile(fileName, std::string("its schema is not \"") + schema + "\"");
    }
    SettingsFile file{textOf(*json, "serial"), textOf(*json, "name"), textOf(*json, "date"), {}};
    const std::optional<CJson> settings = json->find("settings");
    if (!settings || !settings->isObject()) {
        throw badFile(fileName, "it holds no settings");
    }
    for (const auto& [key, value] : settings->members()) {
        const std::optional<std::string> saved = value.text();
        // A zero in it would be its end to the adapter.
        if (!saved || (key + *saved).find('\0') != key.npos) {
            throw badFile(fileName, "\"" + key + "\" is not a text");
        }
        file.settings.emplace_back(key, *saved);
    }
    return file;
}

std::vector<std::pair<std::string, std::string>> loadOrder(const SettingsFile& file) {
    std::vector<std::pair<std::string, std::string>> ordered;
    for (const auto& setting : file.settings) {
        if (loadStage(setting.first)) {
            ordered.push_back(setting);
        }
    }
    std::stable_sort(ordered.begin(), ordered.end(), [](const auto& a, const auto& b) {
        return loadStage(a.first) < loadStage(b.first);
    });
    return ordered;
}

}  // namespace camhost
