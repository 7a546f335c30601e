// SPDX-License-Identifier: MIT
// camhost grab: saves frames to files, and says how it went.
#include <optional>

#include "camhost/base/number_texts.h"
#include "camhost/commands/define_command.h"
#include "camhost/grab/grab_run.h"
#include "camhost/pictures/bayer.h"
#include "camhost/pictures/frame_layout.h"
#include "camhost/settings/setting_changes.h"

namespace camhost {

namespace {

CJson resultJson(const CGrabRun& run) {
    const GrabCounts& counts = run.counts();
    const FrameLayout& layout = run.layout();
    CJson result = CJson::object({{"frames", counts.frames},
                                  {"asked", counts.asked},
                                  {"skipped", counts.skipped},
                                  {"seconds", counts.seconds},
                                  {"fps", counts.framesPerSecond()},
                                  {"timeouts", counts.timeouts},
                                  {"lost", counts.losses},
                                  {"lost_seconds", counts.lostSeconds},
                                  {"width", layout.width},
                                  {"height", layout.height},
                                  {"row_bytes", rowBytes(layout)},
                                  {"pixel_type", pixelTypeName(layout.pixelType)}});
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

Failure timedOut(const GrabCounts& counts, const GrabPlan& plan, const std::string& only,
                 CSettings& settings) {
    const bool none = counts.frames == 0;
    return {.exit = none ? ExitCode::NoFrame : ExitCode::Partial,
            .code = none ? "no_frame" : "partial",
            .message = "no frame in " + fixedText(plan.timeout, 1) + " s; " + only,
            .hint = timeoutHint(settings)};
}

// Nothing when all frames came.
std::optional<Failure> failureOf(GrabEnd end, const GrabCounts& counts, const GrabPlan& plan,
                                 CSettings& settings) {
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
            return timedOut(counts, plan, only, settings);
    }
    return std::nullopt;
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
        CSettings settings(*context.camera);
        applySettings(context, settings);
        CGrabRun run(*context.camera, plan, context.system, context.report);
        const GrabEnd end = run.run(settings.read("videoformat").text);
        context.report.setResult(resultJson(run));
        context.report.line(closingLine(run.counts(), run.pixelText()));
        const auto failure = failureOf(end, run.counts(), plan, settings);
        if (failure) {
            context.report.failure(*failure);
        }
        return failure ? failure->exit : ExitCode::Done;
    }

private:
    // Changes are told as messages: the result of a grab is its closing line.
    void applySettings(CommandContext& context, CSettings& settings) const {
        std::vector<Assignment> assignments;
        if (!m_grab.pixelFormat.empty()) {
            assignments.push_back({"pixelformat", m_grab.pixelFormat});
        }
        for (const std::string& text : m_grab.assignments) {
            assignments.push_back(parseAssignment(text));
        }
        CSettingChanges changes(*context.camera, settings, context.report, context.hintPrefix);
        changes.showAsMessages();
        for (const Assignment& assignment : assignments) {
            changes.apply(assignment, {.manual = m_grab.manual});
        }
    }

    GrabOptions m_grab;
};

template std::unique_ptr<CCommand> makeCommand<CGrabCommand>();

}  // namespace camhost
