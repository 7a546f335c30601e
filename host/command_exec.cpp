// SPDX-License-Identifier: MIT
// camhost exec: does what a camera's button does, or shows its property page, and
// tells which settings changed by it.
#include <utility>
#include <vector>

#include "host/commands.h"
#include "host/settings.h"
#include "host/text_tools.h"

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

CData reportChanges(const Texts& before, const Texts& after, CReport& report) {
    CData changes = CData::array();
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (before[i].second == after[i].second) {
            continue;
        }
        report.line(before[i].first + ": " + printable(before[i].second) + " -> " +
                    printable(after[i].second));
        CData change;
        change.set("key", before[i].first);
        change.set("before", before[i].second);
        change.set("after", after[i].second);
        changes.add(std::move(change));
    }
    return changes;
}

void execute(CommandContext& context, CSettings& settings, const std::string& command) {
    const std::string name = normalisedKey(command);
    if (!settings.hasCommand(name)) {
        throw settings.unknownCommand(command);
    }
    const bool guard = !context.options.dialogs && name != propertyPage;
    context.system.guardDialogs(guard);
    const Reply reply = context.camera->execute(command);
    context.system.guardDialogs(!context.options.dialogs);
    if (reply.done()) {
        return;
    }
    if (const auto automatic = settings.activeAutomatic(name)) {
        throw Failure{ExitCode::Refused, "auto_on", name + ": refused, automatic is on",
                      reply.message, context.hintPrefix() + " set \"" + *automatic + "=false\""};
    }
    throw Failure{ExitCode::Refused, "refused", name + ": " + reply.message, reply.message, {}};
}

}  // namespace

ExitCode runExec(CommandContext& context) {
    CSettings settings(*context.camera);
    CData result = CData::array();
    for (const std::string& command : context.options.arguments) {
        const Texts before = readTexts(settings);
        execute(context, settings, command);
        context.report.line(normalisedKey(command) + ": done");
        CData done;
        done.set("command", normalisedKey(command));
        done.set("changes", reportChanges(before, readTexts(settings), context.report));
        result.add(std::move(done));
    }
    context.report.setResult(std::move(result));
    return ExitCode::Done;
}

}  // namespace camhost
