// SPDX-License-Identifier: MIT
#include "camhost/settings/setting_lines.h"

#include <algorithm>

#include "camhost/base/number_texts.h"
#include "camhost/base/texts.h"

namespace camhost {

namespace {

// A rate may be listed with other decimals than it is told with.
bool isCurrent(const Setting& setting, const std::string& choice) {
    const auto number = wholeNumber(choice);
    return sameIgnoringCase(choice, setting.text) ||
           (setting.type == SettingType::Float && number && number == wholeNumber(setting.text));
}

}  // namespace

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
        lines.push_back((isCurrent(setting, choice) ? "    * " : "      ") + printable(choice));
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
