// SPDX-License-Identifier: MIT
// camhost load: sets what a file holds where it differs.
#include "camhost/base/files.h"
#include "camhost/commands/define_command.h"
#include "camhost/settings/setting_changes.h"
#include "camhost/settings/settings_file.h"
#include "camhost/settings/settings_load.h"

namespace camhost {

class CLoadCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"load", "set what a file holds, in a safe order",
                "  camhost -c 1A2B load bench.json\n"
                "  camhost -c 1A2B load bench.json --strict"};
    }

    void takeOptions(COptionList& list) override {
        list.word("FILE", m_file, "made by save", COptionList::Need::Required);
        list.flag("--strict", m_strict, "exit 6 when a read-back differs");
    }

    ExitCode run(CommandContext& context) override {
        const SettingsFile file = parseSettingsFile(readTextFile(m_file), m_file);
        if (file.serial != context.camera->serial()) {
            context.report.warning("the file is of camera " + file.serial + " (" + file.name + ")");
        }
        CSettings settings(*context.camera, context.hintPrefix);
        CSettingChanges changes(*context.camera, settings, context.report, context.hintPrefix);
        CSettingsLoad load(context.report, settings, changes);
        load.run(file);
        context.report.setResult(changes.json());
        if (!load.problems().empty()) {
            context.report.failure({.exit = ExitCode::Partial,
                                    .code = "partial",
                                    .message = std::to_string(load.problems().size()) + " of " +
                                               std::to_string(file.settings.size()) +
                                               " saved settings could not be set"});
            return ExitCode::Partial;
        }
        context.report.message(changes.changes().empty() ? "nothing to change" : "loaded");
        return m_strict && !changes.allMatch() ? ExitCode::Partial : ExitCode::Done;
    }

private:
    std::string m_file;
    bool m_strict = false;
};

template std::unique_ptr<CCommand> makeCommand<CLoadCommand>();

}  // namespace camhost
