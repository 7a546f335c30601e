// SPDX-License-Identifier: MIT
// camhost commands: the actions that a camera offers, one line each.
#include "host/commands.h"
#include "host/settings.h"
#include "host/text_tools.h"

namespace camhost {

ExitCode runCommands(CommandContext& context) {
    CSettings settings(*context.camera);
    CData result = CData::array();
    for (const std::string& command : settings.commands()) {
        context.report.line(printable(command));
        result.add(command);
    }
    context.report.setResult(std::move(result));
    return ExitCode::Done;
}

}  // namespace camhost
