// SPDX-License-Identifier: MIT
// camhost exec: does what a camera's button does, or shows its property page.
#include "host/commands.h"
#include "host/settings.h"
#include "host/text_tools.h"

namespace camhost {

namespace {

// The property page is a dialog that was asked for.
constexpr const char* propertyPage = "propertydialog";

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
        execute(context, settings, command);
        context.report.line(normalisedKey(command) + ": done");
        result.add(normalisedKey(command));
    }
    context.report.setResult(std::move(result));
    return ExitCode::Done;
}

}  // namespace camhost
