// SPDX-License-Identifier: MIT
// camhost watch: keeps live video running, and tells what happens to the camera.
#include "camhost/commands/define_command.h"
#include "camhost/measure/run_failures.h"
#include "camhost/measure/watch_run.h"

namespace camhost {

class CWatchCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"watch", "tell losses, time-outs and changed settings as they happen",
                "  camhost -c 1A2B watch\n"
                "  camhost -c 1A2B watch -t 3600 --json"};
    }

    void takeOptions(COptionList& list) override {
        list.secondsAboveZero("-t,--time", m_seconds, "S", "seconds (until Ctrl-C)");
    }

    ExitCode run(CommandContext& context) override {
        CSettings settings(*context.camera, context.hintPrefix);
        CWatchRun run(*context.camera, settings, context.system, context.report, m_seconds);
        try {
            const GrabEnd end = run.run(identityJson(*context.camera));
            tellTotals(run, context.report);
            return judged(end, run, settings, context.report);
        } catch (const Failure&) {
            if (run.hasBegun()) {
                tellTotals(run, context.report);
            }
            throw;
        }
    }

private:
    static void tellTotals(const CWatchRun& run, CReport& report) {
        report.line(watchedLine(run.counts(), run.changes()));
        report.setResult(watchedJson(run.counts(), run.changes(), run.date()));
    }

    // Ctrl-C is the common end of a watch, and no error.
    static ExitCode judged(GrabEnd end, const CWatchRun& run, CSettings& settings,
                           CReport& report) {
        if (end == GrabEnd::Interrupted) {
            return ExitCode::Interrupted;
        }
        const auto failure =
            failureOf({end, run.counts().seconds, run.counts().seconds}, run.counts(), settings);
        if (failure) {
            report.failure(*failure);
        }
        return failure ? failure->exit : ExitCode::Done;
    }

    double m_seconds = 0.0;
};

template std::unique_ptr<CCommand> makeCommand<CWatchCommand>();

}  // namespace camhost
