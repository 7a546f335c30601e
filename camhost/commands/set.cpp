// SPDX-License-Identifier: MIT
// camhost set: changes settings, all or none, each with a read-back.
#include "camhost/commands/define_command.h"
#include "camhost/settings/setting_changes.h"

namespace camhost {

class CSetCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"set", "change settings, and read back what came of it",
                "  camhost -c 1A2B set framerate=30 \"gain value range=12\"\n"
                "  camhost -c 1A2B set --manual \"exposure value abs=0.01\""};
    }

    void takeOptions(COptionList& list) override {
        list.words("KEY=VALUE", m_assignments, "assignments");
        list.flag("--manual", m_options.manual, "switch a setting's automatic off first");
        list.flag("--strict", m_strict, "exit 6 when the read-back differs");
        list.flag("--raw", m_options.raw, "hand the text over unchecked");
        list.flag("--dry-run", m_options.dryRun, "check and show, change nothing");
    }

    ExitCode run(CommandContext& context) override {
        CSettings settings(*context.camera, context.hintPrefix);
        CSettingChanges changes(*context.camera, settings, context.report, context.hintPrefix);
        try {
            changes.applyAll(parseAssignments(m_assignments), m_options);
        } catch (const Failure&) {
            context.report.setResult(changes.json());
            throw;
        }
        context.report.setResult(changes.json());
        return m_strict && !changes.allMatch() ? ExitCode::Partial : ExitCode::Done;
    }

private:
    std::vector<std::string> m_assignments;
    ChangeOptions m_options;
    bool m_strict = false;
};

template std::unique_ptr<CCommand> makeCommand<CSetCommand>();

}  // namespace camhost
