// SPDX-License-Identifier: MIT
// camhost exec: does what a camera's button does, or shows its property page, and
// tells which settings changed by it.
#include "camhost/base/texts.h"
#include "camhost/commands/define_command.h"
#include "camhost/settings/actions.h"

namespace camhost {

class CExecCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"exec", "do what a camera's button does",
                "  camhost -c 1A2B exec \"exposure one push\"\n"
                "  camhost -c 1A2B exec propertydialog"};
    }

    void takeOptions(COptionList& list) override {
        list.words("COMMAND", m_commands, "as listed by commands");
        list.flag("--manual", m_manual, "switch the action's automatic off first");
    }

    // What was done is told, also when a later action is refused.
    ExitCode run(CommandContext& context) override {
        CSettings settings(*context.camera, context.hintPrefix);
        CJson result = CJson::array();
        try {
            for (const std::string& command : m_commands) {
                result.add(execute(context, settings, command));
            }
        } catch (const Failure&) {
            context.report.setResult(std::move(result));
            throw;
        }
        context.report.setResult(std::move(result));
        return ExitCode::Done;
    }

private:
    CJson execute(CommandContext& context, CSettings& settings, const std::string& command) const {
        const SettingTexts before = readTexts(settings);
        executeAction(*context.camera, settings, context.system, command,
                      {context.hintPrefix, m_manual, context.dialogs});
        const std::string name = normalisedKey(command);
        context.report.line(name + ": done");
        const std::vector<TextChange> changes = changedTexts(before, readTexts(settings));
        for (const TextChange& change : changes) {
            context.report.line(change.key + ": " + printable(change.before) + " -> " +
                                printable(change.after));
        }
        return CJson::object({{"command", name}, {"changes", textChangesJson(changes)}});
    }

    std::vector<std::string> m_commands;
    bool m_manual = false;
};

template std::unique_ptr<CCommand> makeCommand<CExecCommand>();

}  // namespace camhost
