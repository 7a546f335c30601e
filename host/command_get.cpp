// SPDX-License-Identifier: MIT
// camhost get: value and range of the settings that are named.
#include "host/commands.h"
#include "host/settings.h"

namespace camhost {

// What can be read is shown, also when another key is wrong.
ExitCode runGet(CommandContext& context) {
    CSettings settings(*context.camera);
    std::vector<Setting> found;
    std::vector<Failure> failures;
    for (const std::string& key : context.options.arguments) {
        try {
            found.push_back(settings.readKnown(key));
        } catch (const Failure& failure) {
            failures.push_back(failure);
        }
    }
    const SettingColumns columns = columnsFor(found);
    CData result = CData::array();
    for (const Setting& setting : found) {
        context.report.line(context.options.plain ? plainLine(setting)
                                                  : settingLine(setting, columns));
        result.add(settingData(setting));
    }
    context.report.setResult(std::move(result));
    for (const Failure& failure : failures) {
        context.report.failure(failure);
    }
    return failures.empty() ? ExitCode::Done : failures.front().exit;
}

}  // namespace camhost
