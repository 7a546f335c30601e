// SPDX-License-Identifier: MIT
// camhost grab: saves frames to files, and says how it went.
#include <algorithm>
#include <optional>

#include "camhost/commands/define_command.h"
#include "camhost/grab/grab_run.h"
#include "camhost/measure/first_settings.h"
#include "camhost/measure/run_failures.h"
#include "camhost/pictures/bayer.h"
#include "camhost/pictures/frame_layout.h"
#include "camhost/settings/reapplied_settings.h"
#include "velmora/host_blocks.h"

namespace camhost {

namespace {

CJson resultJson(const CGrabRun& run, const CReappliedSettings* reapplied) {
    const GrabCounts& counts = run.counts();
    const FrameLayout& layout = run.layout();
    CJson result = CJson::object({{"frames", counts.frames},
                                  {"asked", counts.asked},
                                  {"skipped", counts.skipped},
                                  {"seconds", counts.seconds}});
    if (const auto rate = counts.framesPerSecond()) {
        result.set("fps", *rate);
    }
    if (counts.dropped) {
        result.set("dropped", *counts.dropped);
    }
    result.set("timeouts", counts.timeouts);
    result.set("lost", counts.losses);
    result.set("lost_seconds", counts.lostSeconds);
    result.set("width", layout.width);
    result.set("height", layout.height);
    result.set("row_bytes", rowBytes(layout));
    result.set("pixel_type", pixelTypeName(layout.pixelType));
    if (const auto order = run.bayer()) {
        result.set("bayer", bayerName(*order));
    }
    if (reapplied != nullptr) {
        result.set("reapplied", reapplied->json());
    }
    result.set("files", run.files());
    return result;
}

VideoFormats formatsOf(CSettings& settings) {
    constexpr const char* key = "videoformat";
    return videoFormatsOf(settings.read(key).text, settings.hasKey(key)
                                                       ? std::optional(settings.choices(key))
                                                       : std::nullopt);
}

// Which files there are now, by the first and the last.
std::string savedLine(const std::vector<std::string>& files) {
    return files.size() == 1 ? "saved " + files.front()
                             : "saved " + std::to_string(files.size()) + " files, " +
                                   files.front() + " to " + files.back();
}

void tellTotals(const CGrabRun& run, const CReappliedSettings* reapplied, CReport& report) {
    report.setResult(resultJson(run, reapplied));
    report.line(closingLine(run.counts(), run.pixelText()));
    if (const auto files = run.files(); !files.empty()) {
        report.line(savedLine(files));
    }
}

}  // namespace

class CGrabCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"grab", "save frames to files",
                "  camhost -c 77C01 grab -n 100 -o shot_%04d.png --on-loss 10\n"
                "  camhost -c 77C01 grab --pixelformat rgb24 -o colours.png"};
    }

    void takeOptions(COptionList& list) override { takeGrabOptions(list, m_grab); }

    ExitCode run(CommandContext& context) override {
        const GrabPlan plan = planGrab(m_grab);
        if (plan.toOutput) {
            refuseJson(context.report);
            context.report.giveOutput();
        }
        refuseExisting(plan);
        CSettings settings(*context.camera, context.hintPrefix);
        const auto made = makeFirstSettings(m_grab.first, *context.camera, settings, context.report,
                                            {context.hintPrefix, "grab"});
        std::optional<CReappliedSettings> reapplied;
        if (m_grab.reapply) {
            reapplied.emplace(*context.camera, settings, context.system, context.report,
                              context.hintPrefix, made);
        }
        CGrabRun run(*context.camera, plan, context.system, context.report, hooksOf(reapplied));
        const GrabEnd end = grab(run, settings, reapplied ? &*reapplied : nullptr, context.report);
        const auto failure =
            failureOf({end, run.secondsWithoutFrame(), plan.timeout}, run.counts(), settings);
        if (failure) {
            context.report.failure(*failure);
        }
        return failure ? failure->exit : ExitCode::Done;
    }

private:
    static GrabHooks hooksOf(std::optional<CReappliedSettings>& reapplied) {
        if (!reapplied) {
            return {};
        }
        return {.betweenWaits = [&reapplied] { reapplied->keep(); },
                .onRestored = [&reapplied] { reapplied->writeAgain(); },
                .wasReset = [&reapplied] { return reapplied->wasReset(); }};
    }

    // Totals are told however it ends.
    GrabEnd grab(CGrabRun& run, CSettings& settings, const CReappliedSettings* reapplied,
                 CReport& report) const {
        try {
            const GrabEnd end = run.run(formatsOf(settings));
            tellTotals(run, reapplied, report);
            warnOfMosaic(run, report);
            return end;
        } catch (const Failure&) {
            if (run.hasBegun()) {
                tellTotals(run, reapplied, report);
            }
            throw;
        }
    }

    // Options that had nothing to work on.
    void warnOfMosaic(const CGrabRun& run, CReport& report) const {
        const bool demosaic = m_grab.demosaic != "none";
        if (run.bayer() || !(demosaic || m_grab.bayer != "auto")) {
            return;
        }
        const std::string option = demosaic ? "--demosaic" : "--bayer";
        const bool isRaw = run.layout().pixelType == HOST_PIXEL_RAW8;
        report.warning(isRaw ? option +
                                   ": all formats of this camera are grey, and so are its "
                                   "frames; --bayer names a mosaic all the same"
                             : option + " has no effect on " + run.pixelText() + " frames");
    }

    static void refuseJson(const CReport& report) {
        if (report.json()) {
            throw Failure{.exit = ExitCode::Usage,
                          .code = "usage",
                          .message = "the output can not take both pictures and --json"};
        }
    }

    GrabOptions m_grab;
};

template std::unique_ptr<CCommand> makeCommand<CGrabCommand>();

}  // namespace camhost
