// SPDX-License-Identifier: MIT
// camhost bench: how fast frames come, and what keeps them from coming faster. Saves
// nothing.
#include "camhost/base/number_texts.h"
#include "camhost/base/texts.h"
#include "camhost/commands/define_command.h"
#include "camhost/grab/grab_options.h"
#include "camhost/grab/grab_plan.h"
#include "camhost/measure/bench_run.h"
#include "camhost/measure/first_settings.h"
#include "camhost/measure/run_failures.h"
#include "camhost/pictures/bayer.h"
#include "camhost/settings/assignment.h"

namespace camhost {

namespace {

// The last one counts, as it does for the camera.
std::optional<double> askedRate(const FirstSettings& first) {
    std::optional<double> rate;
    for (const Assignment& assignment : parseAssignments(first.assignments)) {
        if (keyKind(normalisedKey(assignment.key)) == KeyKind::FrameRate) {
            rate = wholeNumber(assignment.value);
        }
    }
    return rate;
}

std::optional<double> readNumber(CSettings& settings, const char* key) {
    return wholeNumber(settings.read(key).text);
}

void tellTotals(const BenchFigures& figures, CReport& report) {
    for (const std::string& line : benchLines(figures)) {
        report.line(line);
    }
    report.setResult(benchJson(figures));
}

}  // namespace

class CBenchCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"bench", "measure rate, waits and copies, and name what limits them",
                "  camhost -c 1A2B bench -t 10\n"
                "  camhost -c 1A2B bench -n 500 --set framerate=60"};
    }

    void takeOptions(COptionList& list) override {
        list.secondsAboveZero("-t,--time", m_seconds, "S", "how long (5 seconds)");
        list.countAboveZero("-n,--frames", m_frames, "N", "how many, in place of -t");
        takeFirstSettings(list, m_first);
        list.secondsAboveZero("--timeout", m_timeout, "S",
                              "seconds without a frame that end -n (5)");
        takeOnLoss(list, m_onLoss);
    }

    ExitCode run(CommandContext& context) override {
        const BenchPlan plan = planned();
        BenchFigures figures;
        figures.askedRate = askedRate(m_first);
        CSettings settings(*context.camera, context.hintPrefix);
        makeFirstSettings(m_first, *context.camera, settings, context.report,
                          {context.hintPrefix, "bench"});
        figures.reportedRate = readNumber(settings, "framerate");
        CBenchRun run(*context.camera, plan, context.system, context.report, figures);
        const RunEnd end = measure(run, settings, context.report, figures);
        const auto failure = failureOf(end, figures.counts, settings);
        if (failure) {
            context.report.failure(*failure);
        }
        return failure ? failure->exit : ExitCode::Done;
    }

private:
    // Totals are told however it ends.
    RunEnd measure(CBenchRun& run, CSettings& settings, CReport& report,
                   BenchFigures& figures) const {
        try {
            const GrabEnd end = run.run(isMadeFromColours(settings.read("videoformat").text));
            figures.exposure = readNumber(settings, "exposure value abs");
            tellTotals(figures, report);
            if (end == GrabEnd::Complete && figures.counts.frames == 0) {
                return {GrabEnd::TimedOut, figures.counts.seconds, figures.counts.seconds};
            }
            return {end, run.secondsWithoutFrame(), m_timeout};
        } catch (const Failure&) {
            if (run.hasBegun()) {
                tellTotals(figures, report);
            }
            throw;
        }
    }

    BenchPlan planned() const {
        constexpr double usualSeconds = 5.0;
        if (m_seconds > 0.0 && m_frames > 0) {
            throw Failure{.exit = ExitCode::Usage,
                          .code = "usage",
                          .message = "a bench is -t seconds or -n frames long, not both"};
        }
        BenchPlan plan;
        plan.frames = m_frames;
        if (m_frames > 0) {
            plan.timeout = m_timeout;
        } else {
            plan.seconds = m_seconds > 0.0 ? m_seconds : usualSeconds;
        }
        plan.patience = patienceOf(m_onLoss);
        return plan;
    }

    double m_seconds = 0.0;
    std::uint64_t m_frames = 0;
    FirstSettings m_first;
    double m_timeout = 5.0;
    std::string m_onLoss = "10";
};

template std::unique_ptr<CCommand> makeCommand<CBenchCommand>();

}  // namespace camhost
