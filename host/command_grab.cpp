// SPDX-License-Identifier: MIT
// camhost grab: saves frames to files, and says how it went.
#include "host/commands.h"
#include "host/grab_run.h"
#include "host/setting_changes.h"
#include "host/text_tools.h"
#include "host/value_guards.h"

namespace camhost {

namespace {

CData resultData(const CGrabRun& run) {
    const GrabCounts& counts = run.counts();
    CData data;
    data.set("frames", static_cast<std::int64_t>(counts.frames));
    data.set("asked", static_cast<std::int64_t>(counts.asked));
    data.set("skipped", static_cast<std::int64_t>(counts.skipped));
    data.set("seconds", counts.seconds);
    data.set("fps", counts.framesPerSecond());
    data.set("timeouts", static_cast<std::int64_t>(counts.timeouts));
    data.set("lost", static_cast<std::int64_t>(counts.losses));
    data.set("lost_seconds", counts.lostSeconds);
    data.set("width", run.layout().width);
    data.set("height", run.layout().height);
    data.set("row_bytes", static_cast<std::int64_t>(rowBytes(run.layout())));
    data.set("pixel_type", std::string(pixelTypeName(run.layout().pixelType)));
    if (const auto order = run.bayer()) {
        data.set("bayer", std::string(bayerName(*order)));
    }
    data.set("files", CData::Array(run.files().begin(), run.files().end()));
    return data;
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

ExitCode judge(GrabEnd end, const CGrabRun& run, const GrabPlan& plan, CSettings& settings,
               CReport& report) {
    const GrabCounts& counts = run.counts();
    const std::string only =
        std::to_string(counts.frames) + " of " + std::to_string(counts.asked) + " frames";
    switch (end) {
        case GrabEnd::Complete:
            return ExitCode::Done;
        case GrabEnd::Interrupted:
            report.failure(
                {ExitCode::Interrupted, "interrupted", "interrupted after " + only, {}, {}});
            return ExitCode::Interrupted;
        case GrabEnd::Lost:
            report.failure(
                {ExitCode::DeviceLost, "device_lost", "the camera is lost; " + only, {}, {}});
            return ExitCode::DeviceLost;
        case GrabEnd::TimedOut:
            break;
    }
    const bool none = counts.frames == 0;
    const ExitCode exit = none ? ExitCode::NoFrame : ExitCode::Partial;
    report.failure({exit,
                    none ? "no_frame" : "partial",
                    "no frame in " + fixedText(plan.timeout, 1) + " s; " + only,
                    {},
                    timeoutHint(settings)});
    return exit;
}

// Changes are told as messages: the result of a grab is its closing line.
void applySettings(CommandContext& context, CSettings& settings) {
    const GrabOptions& grab = context.options.grab;
    std::vector<Assignment> assignments;
    if (!grab.pixelFormat.empty()) {
        assignments.push_back({"pixelformat", grab.pixelFormat});
    }
    for (const std::string& text : grab.assignments) {
        assignments.push_back(parseAssignment(text));
    }
    CSettingChanges changes(*context.camera, settings, context.report, context.hintPrefix());
    changes.showAsMessages();
    for (const Assignment& assignment : assignments) {
        changes.apply(assignment, {context.options.manual, false, false});
    }
}

}  // namespace

ExitCode runGrab(CommandContext& context) {
    const GrabPlan plan = planGrab(context.options.grab);
    CSettings settings(*context.camera);
    applySettings(context, settings);
    CGrabRun run(*context.camera, plan, context.system, context.report);
    const GrabEnd end = run.run(settings.read("videoformat").text);
    context.report.setResult(resultData(run));
    context.report.line(closingLine(run.counts(), run.pixelText()));
    return judge(end, run, plan, settings, context.report);
}

}  // namespace camhost
