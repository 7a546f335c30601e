// SPDX-License-Identifier: MIT
#include "host/settings.h"

#include <algorithm>

#include "host/text_tools.h"
#include "host/value_guards.h"

namespace camhost {

namespace {

// Ends the walk of an adapter whose list never does.
constexpr int mostEntries = 100000;

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::string meantText(const std::vector<std::string>& near) {
    return near.empty() ? std::string() : "; did you mean " + quotedList(near) + "?";
}

// A number where the text is one, else the text.
CData valueData(SettingType type, const std::string& text) {
    switch (type) {
        case SettingType::Integer:
            if (const auto value = wholeInteger(text)) {
                return std::int64_t{*value};
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

}  // namespace

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

CSettings::CSettings(CChannel& channel)
    : m_channel(channel), m_keys(readList("feature_")), m_commands(readList("execute_")) {}

std::vector<std::string> CSettings::readList(const std::string& prefix) {
    std::vector<std::string> entries;
    for (int number = 1; number <= mostEntries; ++number) {
        std::string value;
        if (!m_channel.getValue(prefix + std::to_string(number), value).done() || value.empty()) {
            break;
        }
        entries.push_back(value);
    }
    return entries;
}

bool CSettings::hasKey(const std::string& key) const {
    return contains(m_keys, key);
}

bool CSettings::hasCommand(const std::string& command) const {
    return contains(m_commands, command);
}

std::vector<std::string> CSettings::listEntries() const {
    std::vector<std::string> entries;
    if (m_keys.empty()) {
        return entries;
    }
    for (std::size_t i = 1; i <= m_keys.size() + 1; ++i) {
        entries.push_back("feature_" + std::to_string(i));
    }
    for (std::size_t i = 1; i <= m_commands.size() + 1; ++i) {
        entries.push_back("execute_" + std::to_string(i));
    }
    return entries;
}

void CSettings::readLimits(Setting& setting) {
    std::string value;
    if (m_channel.getValue(setting.key + " min", value).done()) {
        setting.minimum = value;
    }
    if (m_channel.getValue(setting.key + " max", value).done()) {
        setting.maximum = value;
    }
}

Setting CSettings::read(const std::string& key, bool withChoices) {
    Setting setting;
    setting.key = normalisedKey(key);
    const KeyShape shape = keyShape(setting.key);
    setting.type = typeOfShape(shape);
    setting.level = keyLevel(setting.key);
    setting.readOnly = isReadOnly(shape);
    try {
        const Reply reply = m_channel.getValue(key, setting.text);
        if (!reply.done()) {
            setting.problem = reply.message.empty() ? "refused" : reply.message;
            return setting;
        }
        if (shape == KeyShape::Other &&
            m_channel.propertyType(setting.key) == HOST_PROPERTY_CHOICE) {
            setting.type = SettingType::Choice;
        }
        if (hasLimits(shape)) {
            readLimits(setting);
            setting.automatic = activeAutomatic(setting.key).has_value();
        }
        if (withChoices && setting.type == SettingType::Choice) {
            setting.choices = choices(setting.key);
        }
    } catch (const Failure& failure) {
        if (failure.code == "internal") {
            throw;
        }
        setting.problem = failure.message;
    }
    return setting;
}

Setting CSettings::readKnown(const std::string& key) {
    Setting setting = read(key);
    if (setting.problem.empty()) {
        return setting;
    }
    const bool listed = contains(listEntries(), setting.key);
    if (!hasKey(setting.key) && !listed) {
        throw unknownKey(key);
    }
    throw Failure{ExitCode::Refused, "refused", key + ": " + setting.problem, setting.problem, {}};
}

Setting CSettings::command(const std::string& name) {
    Setting setting;
    setting.key = name;
    setting.type = SettingType::Command;
    setting.level = KeyLevel::Expert;
    return setting;
}

std::optional<std::string> CSettings::activeAutomatic(const std::string& key) {
    std::optional<std::string> guard = autoSwitchFor(key, m_keys);
    std::string value;
    if (guard && m_channel.getValue(*guard, value).done() && value == "true") {
        return guard;
    }
    return std::nullopt;
}

std::vector<std::string> CSettings::choices(const std::string& key) {
    const auto listedIn = [this](const char* list) {
        std::string value;
        return m_channel.getValue(list, value).done() ? split(value, ',')
                                                      : std::vector<std::string>{};
    };
    switch (keyShape(key)) {
        case KeyShape::PixelFormat:
            return {"Mono8", "Raw8", "RGB24"};
        case KeyShape::VideoNorm:
            return listedIn("videonorms");
        case KeyShape::InputChannel:
            return listedIn("inputchannels");
        default:
            if (m_channel.propertyType(key) == HOST_PROPERTY_CHOICE) {
                return m_channel.choices(key);
            }
            return {};
    }
}

Failure CSettings::unknownKey(const std::string& key) const {
    const std::string normal = normalisedKey(key);
    if (hasCommand(normal)) {
        return {ExitCode::Refused,
                "unknown_key",
                "\"" + key + "\" is an action, not a setting",
                {},
                "camhost exec \"" + normal + "\""};
    }
    return {ExitCode::Refused,
            "unknown_key",
            "no setting \"" + key + "\"" + meantText(nearNames(key, m_keys)),
            {},
            {}};
}

Failure CSettings::unknownCommand(const std::string& command) const {
    const std::string normal = normalisedKey(command);
    if (hasKey(normal)) {
        return {ExitCode::Refused,
                "unknown_command",
                "\"" + command + "\" is a setting, not an action",
                {},
                "camhost get \"" + normal + "\""};
    }
    return {ExitCode::Refused,
            "unknown_command",
            "no action \"" + command + "\"" + meantText(nearNames(command, m_commands)),
            {},
            {}};
}

CData settingData(const Setting& setting) {
    CData data;
    data.set("key", setting.key);
    data.set("type", std::string(typeName(setting.type)));
    if (setting.problem.empty() && setting.type != SettingType::Command) {
        data.set("text", setting.text);
        data.set("value", valueData(setting.type, setting.text));
    }
    if (setting.minimum) {
        data.set("min", valueData(setting.type, *setting.minimum));
    }
    if (setting.maximum) {
        data.set("max", valueData(setting.type, *setting.maximum));
    }
    if (!setting.choices.empty()) {
        data.set("choices", CData::Array(setting.choices.begin(), setting.choices.end()));
    }
    const std::vector<std::string> flags = setting.flags();
    if (!flags.empty()) {
        data.set("flags", CData::Array(flags.begin(), flags.end()));
    }
    data.set("level", std::string(levelName(setting.level)));
    if (!setting.problem.empty()) {
        data.set("problem", setting.problem);
    }
    return data;
}

SettingColumns columnsFor(const std::vector<Setting>& settings) {
    SettingColumns columns;
    for (const Setting& setting : settings) {
        columns.key = std::max(columns.key, displayWidth(setting.key));
        columns.type = std::max(columns.type, typeName(setting.type).size() + 2);
    }
    return columns;
}

std::string settingLine(const Setting& setting, const SettingColumns& columns) {
    const std::string type = "(" + std::string(typeName(setting.type)) + ")";
    std::string line =
        padded(printable(setting.key), columns.key) + "  " + padded(type, columns.type) + " :";
    if (setting.minimum) {
        line += " min=" + *setting.minimum;
    }
    if (setting.maximum) {
        line += " max=" + *setting.maximum;
    }
    if (setting.problem.empty() && setting.type != SettingType::Command) {
        line += " value=" + printable(setting.text);
    }
    const std::vector<std::string> flags = setting.flags();
    if (!flags.empty()) {
        line += " flags=" + join(flags, ",");
    }
    if (!setting.problem.empty()) {
        line += "  (" + printable(setting.problem) + ")";
    }
    return line;
}

std::vector<std::string> choiceLines(const Setting& setting) {
    std::vector<std::string> lines;
    for (const std::string& choice : setting.choices) {
        const bool current = sameIgnoringCase(choice, setting.text);
        lines.push_back(std::string(current ? "    * " : "      ") + printable(choice));
    }
    return lines;
}

std::string plainLine(const Setting& setting) {
    return join(
        {printable(setting.key), std::string(typeName(setting.type)), printable(setting.text),
         setting.minimum.value_or(""), setting.maximum.value_or(""), join(setting.flags(), ",")},
        "\t");
}

}  // namespace camhost
