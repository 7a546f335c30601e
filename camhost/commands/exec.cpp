// SPDX-License-Identifier: MIT
// camhost exec: does what a camera's button does, or shows its property page, and
// tells which settings changed by it.
#include <utility>
#include <vector>

#include "camhost/base/texts.h"
#include "camhost/commands/define_command.h"
#include "camhost/settings/settings.h"

namespace camhost {

namespace {

// The property page is a dialog that was asked for.
constexpr const char* propertyPage = "propertydialog";

using Texts = std::vector<std::pair<std::string, std::string>>;

// All that an action may change.
Texts readTexts(CSettings& settings) {
    Texts texts;
    for (const std::string& key : settings.keys()) {
        if (loadStage(key)) {
            texts.emplace_back(key, settings.read(key).text);
        }
    }
    return texts;
}

CJson reportChanges(const Texts& before, const Texts& after, CReport& report) {
    CJson changes = CJson::array();
    for (std::size_t i = 0; i < before.size(); ++i) {
        const auto& [key, was] = before[i];
        const std::string& is = after[i].second;
        if (was != is) {
            report.line(key + ": " + printable(was) + " -> " + printable(is));
            changes.add(CJson::object({{"key", key}, {"before", was}, {"after", is}}));
        }
    }
    return changes;
}

void execute(CommandContext& context, CSettings& settings, const std::string& command,
             bool manual) {
    const std::string name = normalisedKey(command);
    if (!settings.hasCommand(name)) {
        throw settings.unknownCommand(command);
    }
    const auto automatic = settings.activeAutomatic(name);
    if (manual && automatic) {
        context.camera->setValue(*automatic, "false");
    }
    context.system.guardDialogs(!context.dialogs && name != propertyPage);
    const Reply reply = context.camera->execute(command);
    context.system.guardDialogs(!context.dialogs);
    if (reply.done()) {
        return;
    }
    if (manual && automatic) {
        context.camera->setValue(*automatic, "true");
    } else if (automatic) {
        throw Failure{.code = "auto_on",
                      .message = name + ": refused, automatic is on",
                      .adapterMessage = reply.message,
                      .hint = context.hintPrefix + " exec --manual \"" + name + "\""};
    }
    throw Failure{
        .code = "refused", .message = name + ": " + reply.message, .adapterMessage = reply.message};
}

}  // namespace

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

    ExitCode run(CommandContext& context) override {
        CSettings settings(*context.camera, context.hintPrefix);
        CJson result = CJson::array();
        for (const std::string& command : m_commands) {
            const Texts before = readTexts(settings);
            execute(context, settings, command, m_manual);
            const std::string name = normalisedKey(command);
            context.report.line(name + ": done");
            const CJson changes = reportChanges(before, readTexts(settings), context.report);
            result.add(CJson::object({{"command", name}, {"changes", changes}}));
        }
        context.report.setResult(std::move(result));
        return ExitCode::Done;
    }

private:
    std::vector<std::string> m_commands;
    bool m_manual = false;
};

template std::unique_ptr<CCommand> makeCommand<CExecCommand>();

}  // namespace camhost
