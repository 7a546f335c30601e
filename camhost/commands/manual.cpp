// SPDX-License-Identifier: MIT
// camhost manual: the man page, as its source.
#include "camhost/commands/define_command.h"
#include "camhost/help/manual_page.h"

namespace camhost {

class CManualCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"manual", "the man page, for man and troff",
                "  camhost manual > camhost.1\n"
                "  camhost manual | man -l -"};
    }

    bool needsAdapter() const override { return false; }

    ExitCode run(CommandContext& context) override {
        const std::string page = manualPage(*context.program);
        context.report.line(std::string_view(page).substr(0, page.size() - 1));
        context.report.setResult(CJson::object({{"page", page}}));
        return ExitCode::Done;
    }
};

template std::unique_ptr<CCommand> makeCommand<CManualCommand>();

}  // namespace camhost
