// SPDX-License-Identifier: MIT
// camhost commands: the actions that a camera offers, one line each.
#include "camhost/base/texts.h"
#include "camhost/commands/define_command.h"
#include "camhost/settings/settings.h"

namespace camhost {

class CCommandsCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"commands", "actions that the camera offers",
                "  camhost -c 1A2B commands\n"
                "  camhost -c 1A2B commands --json"};
    }

    ExitCode run(CommandContext& context) override {
        const CSettings settings(*context.camera, context.hintPrefix);
        for (const std::string& command : settings.commands()) {
            context.report.line(printable(command));
        }
        context.report.setResult(settings.commands());
        return ExitCode::Done;
    }
};

template std::unique_ptr<CCommand> makeCommand<CCommandsCommand>();

}  // namespace camhost
