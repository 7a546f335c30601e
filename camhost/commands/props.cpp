// SPDX-License-Identifier: MIT
// camhost props: the settings and actions of one camera, one line each.
#include "camhost/base/name_search.h"
#include "camhost/commands/define_command.h"
#include "camhost/settings/setting_json.h"
#include "camhost/settings/setting_lines.h"
#include "camhost/settings/settings.h"

namespace camhost {

class CPropsCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"props", "settings, one line each",
                "  camhost -c 1A2B props exposure\n"
                "  camhost -c 1A2B props -L --all"};
    }

    void takeOptions(COptionList& list) override {
        list.word("PATTERN", m_pattern, "part of a key, or a pattern with * and ?",
                  COptionList::Need::Optional);
        list.flag("-L,--choices", m_choices, "add what each setting can be");
        list.flag("--all", m_all, "also limits, formats by number and list entries");
        list.flag("--plain", m_plain, "fields separated by tabs");
    }

    ExitCode run(CommandContext& context) override {
        CSettings settings(*context.camera, context.hintPrefix);
        const std::vector<Setting> found = collect(settings);
        print(found, context.report);
        context.report.setResult(settingsJson(found));
        if (found.empty()) {
            context.report.message(m_pattern.empty() ? "no settings"
                                                     : "no settings like \"" + m_pattern + "\"");
        }
        return ExitCode::Done;
    }

private:
    std::vector<Setting> collect(CSettings& settings) const {
        std::vector<std::string> keys = settings.keysInOrder();
        if (m_all) {
            const std::vector<std::string> entries = settings.listEntries();
            keys.insert(keys.end(), entries.begin(), entries.end());
        }
        std::vector<Setting> found;
        for (const std::string& key : keys) {
            if (matchesPattern(key, m_pattern) && (m_all || isPlainSetting(keyKind(key)))) {
                found.push_back(settings.read(key, m_choices));
            }
        }
        for (const std::string& command : settings.commands()) {
            if (matchesPattern(command, m_pattern)) {
                found.push_back(CSettings::command(command));
            }
        }
        return found;
    }

    void print(const std::vector<Setting>& found, CReport& report) const {
        const SettingColumns columns = columnsFor(found);
        for (const Setting& setting : found) {
            if (m_plain) {
                report.line(plainLine(setting));
                continue;
            }
            report.line(settingLine(setting, columns));
            if (m_choices) {
                for (const std::string& line : choiceLines(setting)) {
                    report.line(line);
                }
            }
        }
    }

    std::string m_pattern;
    bool m_choices = false;
    bool m_all = false;
    bool m_plain = false;
};

template std::unique_ptr<CCommand> makeCommand<CPropsCommand>();

}  // namespace camhost
