// SPDX-License-Identifier: MIT
// camhost save: everything that can be set, written to a file.
#include "host/commands.h"
#include "host/picture_file.h"
#include "host/settings.h"
#include "host/settings_file.h"
#include "host/text_tools.h"

namespace camhost {

ExitCode runSave(CommandContext& context) {
    CSettings settings(*context.camera);
    SettingsFile file{
        context.camera->serial(), context.camera->name(), context.system.utcDate(), {}};
    for (const std::string& key : settings.keys()) {
        if (!loadStage(key)) {
            continue;
        }
        const Setting setting = settings.read(key);
        if (setting.problem.empty()) {
            file.settings.emplace_back(key, setting.text);
        } else {
            context.report.warning(key + " left out: " + printable(setting.problem));
        }
    }
    const std::string text = settingsFileText(file);
    writeFile(context.options.file,
              {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    context.report.line("saved " + std::to_string(file.settings.size()) + " settings of " +
                        context.camera->selector() + " to " + context.options.file);
    CData result;
    result.set("file", context.options.file);
    result.set("settings", static_cast<std::int64_t>(file.settings.size()));
    context.report.setResult(std::move(result));
    return ExitCode::Done;
}

}  // namespace camhost
