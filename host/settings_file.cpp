// SPDX-License-Identifier: MIT
#include "host/settings_file.h"

#include <algorithm>

#include "host/failure.h"
#include "host/json_text.h"
#include "host/key_shapes.h"

namespace camhost {

namespace {

constexpr const char* schema = "camhost-settings/1";

Failure badFile(const std::string& fileName, const std::string& reason) {
    return {
        ExitCode::Usage, "bad_file", "\"" + fileName + "\" is no settings file: " + reason, {}, {}};
}

std::string textOf(const CData& data, std::string_view key) {
    const CData* member = data.find(key);
    return member != nullptr ? member->text().value_or("") : std::string();
}

}  // namespace

std::string settingsFileText(const SettingsFile& file) {
    CData data;
    data.set("schema", schema);
    data.set("serial", file.serial);
    data.set("name", file.name);
    data.set("date", file.date);
    CData settings = CData::object();
    for (const auto& [key, text] : file.settings) {
        settings.set(key, text);
    }
    data.set("settings", std::move(settings));
    return toJsonText(data, 2) + "\n";
}

SettingsFile parseSettingsFile(const std::string& text, const std::string& fileName) {
    std::string reason;
    const std::optional<CData> data = parseJsonText(text, reason);
    if (!data) {
        throw badFile(fileName, reason);
    }
    if (textOf(*data, "schema") != schema) {
        throw badFile(fileName, std::string("its schema is not \"") + schema + "\"");
    }
    SettingsFile file{textOf(*data, "serial"), textOf(*data, "name"), textOf(*data, "date"), {}};
    const CData* settings = data->find("settings");
    if (settings == nullptr || !std::holds_alternative<CData::Object>(settings->variant())) {
        throw badFile(fileName, "it holds no settings");
    }
    for (const auto& [key, value] : std::get<CData::Object>(settings->variant())) {
        if (!value.text()) {
            throw badFile(fileName, "\"" + key + "\" is not a text");
        }
        file.settings.emplace_back(key, *value.text());
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
