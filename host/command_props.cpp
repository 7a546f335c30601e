// SPDX-License-Identifier: MIT
// camhost props: the settings and actions of one camera, one line each.
#include "host/commands.h"
#include "host/settings.h"
#include "host/text_tools.h"

namespace camhost {

namespace {

std::vector<Setting> collect(CSettings& settings, const Options& options) {
    std::vector<std::string> keys = settings.keys();
    if (options.all) {
        const std::vector<std::string> entries = settings.listEntries();
        keys.insert(keys.end(), entries.begin(), entries.end());
    }
    std::vector<Setting> found;
    for (const std::string& key : keys) {
        if (matchesPattern(key, options.pattern) &&
            (options.all || isPlainSetting(keyShape(key)))) {
            found.push_back(settings.read(key, options.choices));
        }
    }
    for (const std::string& command : settings.commands()) {
        if (matchesPattern(command, options.pattern)) {
            found.push_back(CSettings::command(command));
        }
    }
    return found;
}

void print(const std::vector<Setting>& found, const Options& options, CReport& report) {
    const SettingColumns columns = columnsFor(found);
    for (const Setting& setting : found) {
        if (options.plain) {
            report.line(plainLine(setting));
            continue;
        }
        report.line(settingLine(setting, columns));
        if (options.choices) {
            for (const std::string& line : choiceLines(setting)) {
                report.line(line);
            }
        }
    }
}

}  // namespace

ExitCode runProps(CommandContext& context) {
    CSettings settings(*context.camera);
    const std::vector<Setting> found = collect(settings, context.options);
    print(found, context.options, context.report);
    CData result = CData::array();
    for (const Setting& setting : found) {
        result.add(settingData(setting));
    }
    context.report.setResult(std::move(result));
    if (found.empty()) {
        context.report.message(context.options.pattern.empty()
                                   ? "no settings"
                                   : "no settings like \"" + context.options.pattern + "\"");
    }
    return ExitCode::Done;
}

}  // namespace camhost
