// SPDX-License-Identifier: MIT
// camhost grab: saves frames to files, and says how it went.
#include <algorithm>
#include <optional>

#include "camhost/base/number_texts.h"
#include "camhost/commands/define_command.h"
#include "camhost/grab/grab_run.h"
#include "camhost/pictures/bayer.h"
#include "camhost/pictures/frame_layout.h"
#include "camhost/settings/setting_changes.h"
#include "velmora/host_blocks.h"

namespace camhost {

namespace {

CJson resultJson(const CGrabRun& run) {
    const GrabCounts& counts = run.counts();
    const FrameLayout& layout = run.layout();
    CJson result = CJson::object({{"frames", counts.frames},
                                  {"asked", counts.asked},
                                  {"skipped", counts.skipped},
                                  {"seconds", counts.seconds}});
    if (const auto rate = counts.framesPerSecond()) {
        result.set("fps", *rate);
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
    result.set("files", run.files());
    return result;
}

// Why there may be no frames: a trigger that is waited for, or an exposure that
// is longer than one wait of the adapter.
std::string timeoutHint(CSettings& settings) {
    constexpr const char* trigger = "trigger enable switch";
    if (settings.hasKey(trigger) && settings.read(trigger).text == "true") {
        return "trigger enable is on: no trigger arrived?";
    }
    const std::string exposure = settings.read("exposure value abs").text;
    if (wholeNumber(exposure).value_or(0.0) >= 1.0) {
        return "the exposure is " + exposure + " s, and one wait lasts 1 s";
    }
    return {};
}

// The time-out is looked at between two waits of the adapter.
std::string waitedText(double seconds, double timeout) {
    constexpr double noticeable = 0.1;
    std::string text = fixedText(seconds, 1) + " s";
    if (seconds > timeout + noticeable) {
        text += " (asked for " + fixedText(timeout, 1) + " s; one wait lasts up to 1 s)";
    }
    return text;
}

Failure timedOut(const CGrabRun& run, const GrabPlan& plan, const std::string& only,
                 CSettings& settings) {
    const bool none = run.counts().frames == 0;
    return {.exit = none ? ExitCode::NoFrame : ExitCode::Partial,
            .code = none ? "no_frame" : "partial",
            .message =
                "no frame in " + waitedText(run.secondsWithoutFrame(), plan.timeout) + "; " + only,
            .hint = timeoutHint(settings)};
}

// Nothing when all frames came.
std::optional<Failure> failureOf(GrabEnd end, const CGrabRun& run, const GrabPlan& plan,
                                 CSettings& settings) {
    const GrabCounts& counts = run.counts();
    const std::string only =
        std::to_string(counts.frames) + " of " + std::to_string(counts.asked) + " frames";
    switch (end) {
        case GrabEnd::Complete:
            break;
        case GrabEnd::Interrupted:
            return Failure{.exit = ExitCode::Interrupted,
                           .code = "interrupted",
                           .message = "interrupted after " + only};
        case GrabEnd::Lost:
            return Failure{.exit = ExitCode::DeviceLost,
                           .code = "device_lost",
                           .message = "the camera is lost; " + only};
        case GrabEnd::TimedOut:
            return timedOut(run, plan, only, settings);
    }
    return std::nullopt;
}

VideoFormats formatsOf(CSettings& settings) {
    constexpr const char* key = "videoformat";
    VideoFormats formats{settings.read(key).text};
    if (settings.hasKey(key)) {
        const std::vector<std::string> choices = settings.choices(key);
        formats.areAllGrey = !isMadeFromColours(formats.current) &&
                             std::none_of(choices.begin(), choices.end(), isMadeFromColours);
    }
    return formats;
}

// Which files there are now, by the first and the last.
std::string savedLine(const std::vector<std::string>& files) {
    return files.size() == 1 ? "saved " + files.front()
                             : "saved " + std::to_string(files.size()) + " files, " +
                                   files.front() + " to " + files.back();
}

void tellTotals(const CGrabRun& run, CReport& report) {
    report.setResult(resultJson(run));
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
        applySettings(context, settings);
        CGrabRun run(*context.camera, plan, context.system, context.report);
        const auto failure = failureOf(grab(run, settings, context.report), run, plan, settings);
        if (failure) {
            context.report.failure(*failure);
        }
        return failure ? failure->exit : ExitCode::Done;
    }

private:
    // Totals are told however it ends.
    GrabEnd grab(CGrabRun& run, CSettings& settings, CReport& report) const {
        try {
            const GrabEnd end = run.run(formatsOf(settings));
            tellTotals(run, report);
            warnOfMosaic(run, report);
            return end;
        } catch (const Failure&) {
            if (run.hasBegun()) {
                tellTotals(run, report);
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

    // Changes are told as messages: the result of a grab is its closing line.
    void applySettings(CommandContext& context, CSettings& settings) const {
        std::vector<Assignment> assignments;
        if (!m_grab.pixelFormat.empty()) {
            assignments.push_back({"pixelformat", m_grab.pixelFormat});
        }
        const auto more = parseAssignments(m_grab.assignments);
        assignments.insert(assignments.end(), more.begin(), more.end());
        CSettingChanges changes(*context.camera, settings, context.report, context.hintPrefix);
        changes.becomeAGrabs();
        changes.applyAll(assignments, {.manual = m_grab.manual});
    }

    GrabOptions m_grab;
};

template std::unique_ptr<CCommand> makeCommand<CGrabCommand>();

}  // namespace camhost
