// SPDX-License-Identifier: MIT
// camhost completion: the script by which a shell completes camhost's command line.
#include "camhost/help/completion.h"
#include "camhost/commands/define_command.h"

namespace camhost {

class CCompleteCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"completion", "a script by which a shell completes command lines",
                "  camhost completion bash > camhost.bash\n"
                "  camhost completion powershell | Out-String | Invoke-Expression"};
    }

    bool needsAdapter() const override { return false; }

    void takeOptions(COptionList& list) override {
        list.wordOf("SHELL", m_shell, {"bash", "powershell"}, "which shell it is for");
    }

    ExitCode run(CommandContext& context) override {
        const std::string script = m_shell == "bash" ? bashCompletion(*context.program)
                                                     : powershellCompletion(*context.program);
        context.report.line(std::string_view(script).substr(0, script.size() - 1));
        context.report.setResult(CJson::object({{"shell", m_shell}, {"script", script}}));
        return ExitCode::Done;
    }

private:
    std::string m_shell;
};

template std::unique_ptr<CCommand> makeCommand<CCompleteCommand>();

}  // namespace camhost
