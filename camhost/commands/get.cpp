// SPDX-License-Identifier: MIT
// camhost get: value and range of the settings that are named.
#include "camhost/commands/define_command.h"
#include "camhost/settings/setting_json.h"
#include "camhost/settings/setting_lines.h"
#include "camhost/settings/settings.h"

namespace camhost {

class CGetCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"get", "value and range of settings",
                "  camhost -c 1A2B get framerate videoformat\n"
                "  camhost -c 1A2B get \"exposure value abs\" --plain"};
    }

    void takeOptions(COptionList& list) override {
        list.words("KEY", m_keys, "keys of settings");
        list.flag("--plain", m_plain, "fields separated by tabs");
    }

    // What can be read is shown, also when another key is wrong.
    ExitCode run(CommandContext& context) override {
        CSettings settings(*context.camera, context.hintPrefix);
        std::vector<Setting> found;
        std::vector<Failure> failures;
        for (const std::string& key : m_keys) {
            try {
                found.push_back(settings.readKnown(key));
            } catch (const Failure& failure) {
                failures.push_back(failure);
            }
        }
        const SettingColumns columns = columnsFor(found);
        for (const Setting& setting : found) {
            context.report.line(m_plain ? plainLine(setting) : settingLine(setting, columns));
        }
        context.report.setResult(settingsJson(found));
        for (const Failure& failure : failures) {
            context.report.failure(failure);
        }
        return failures.empty() ? ExitCode::Done : failures.front().exit;
    }

private:
    std::vector<std::string> m_keys;
    bool m_plain = false;
};

template std::unique_ptr<CCommand> makeCommand<CGetCommand>();

}  // namespace camhost
