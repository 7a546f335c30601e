// SPDX-License-Identifier: MIT
#include "camhost/settings/setting_json.h"

#include "camhost/base/number_texts.h"

namespace camhost {

CJson valueJson(SettingType type, const std::string& text) {
    switch (type) {
        case SettingType::Integer:
            if (const auto value = wholeInteger(text)) {
                return *value;
            }
            break;
        case SettingType::Float:
            if (const auto value = wholeNumber(text)) {
                return *value;
            }
            break;
        case SettingType::Boolean:
            if (text == "true" || text == "false") {
                return text == "true";
            }
            break;
        case SettingType::Choice:
        case SettingType::Text:
        case SettingType::Command:
            break;
    }
    return text;
}

CJson settingJson(const Setting& setting) {
    CJson json = CJson::object({{"key", setting.key}, {"type", typeName(setting.type)}});
    if (setting.problem.empty() && setting.type != SettingType::Command) {
        json.set("text", setting.text);
        json.set("value", valueJson(setting.type, setting.text));
    }
    if (setting.minimum) {
        json.set("min", valueJson(setting.type, *setting.minimum));
    }
    if (setting.maximum) {
        json.set("max", valueJson(setting.type, *setting.maximum));
    }
    if (!setting.choices.empty()) {
        json.set("choices", setting.choices);
    }
    if (const std::vector<std::string> flags = setting.flags(); !flags.empty()) {
        json.set("flags", flags);
    }
    json.set("level", levelName(setting.level));
    if (!setting.problem.empty()) {
        json.set("problem", setting.problem);
    }
    return json;
}

CJson settingsJson(const std::vector<Setting>& settings) {
    CJson list = CJson::array();
    for (const Setting& setting : settings) {
        list.add(settingJson(setting));
    }
    return list;
}

}  // namespace camhost
