// SPDX-License-Identifier: MIT
// camhost save: everything that can be set, written to a file.
#include "camhost/base/files.h"
#include "camhost/commands/define_command.h"
#include "camhost/settings/settings_compare.h"

namespace camhost {

class CSaveCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"save", "write all settings to a file",
                "  camhost -c 1A2B save bench.json\n"
                "  camhost -c 1A2B save bench.json --json"};
    }

    void takeOptions(COptionList& list) override {
        list.word("FILE", m_file, "to write", COptionList::Need::Required);
    }

    ExitCode run(CommandContext& context) override {
        CSettings settings(*context.camera, context.hintPrefix);
        const SettingsFile file =
            readSettingsFile(*context.camera, settings, context.system.utcDate(), context.report);
        writeTextFile(m_file, settingsFileText(file));
        context.report.line("saved " + std::to_string(file.settings.size()) + " settings of " +
                            context.camera->selector() + " to " + m_file);
        context.report.setResult(
            CJson::object({{"file", m_file}, {"settings", file.settings.size()}}));
        return ExitCode::Done;
    }

private:
    std::string m_file;
};

template std::unique_ptr<CCommand> makeCommand<CSaveCommand>();

}  // namespace camhost
