// SPDX-License-Identifier: MIT
#include "camhost/measure/run_failures.h"

#include "camhost/base/number_texts.h"

namespace camhost {

namespace {

// The time-out is looked at between two waits of the adapter.
std::string waitedText(double seconds, double timeout) {
    constexpr double noticeable = 0.1;
    std::string text = fixedText(seconds, 1) + " s";
    if (seconds > timeout + noticeable) {
        text += " (asked for " + fixedText(timeout, 1) + " s; one wait lasts up to 1 s)";
    }
    return text;
}

Failure timedOut(const RunEnd& end, bool none, const std::string& only, CSettings& settings) {
    return {.exit = none ? ExitCode::NoFrame : ExitCode::Partial,
            .code = none ? "no_frame" : "partial",
            .message = "no frame in " + waitedText(end.secondsWithoutFrame, end.timeout) + only,
            .hint = noFrameHint(settings)};
}

}  // namespace

// A trigger that is waited for, or an exposure that is longer than one wait of the adapter.
std::string noFrameHint(CSettings& settings) {
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

std::optional<Failure> failureOf(const RunEnd& end, const GrabCounts& counts, CSettings& settings) {
    const std::string frames = std::to_string(counts.frames);
    const std::string some = counts.asked > 0
                                 ? frames + " of " + std::to_string(counts.asked) + " frames"
                                 : frames + (counts.frames == 1 ? " frame" : " frames");
    switch (end.end) {
        case GrabEnd::Complete:
            break;
        case GrabEnd::Interrupted:
            return Failure{.exit = ExitCode::Interrupted,
                           .code = "interrupted",
                           .message = "interrupted after " + some};
        case GrabEnd::Lost:
            return Failure{.exit = ExitCode::DeviceLost,
                           .code = "device_lost",
                           .message = "the camera is lost; " + some};
        case GrabEnd::TimedOut:
            return timedOut(end, counts.frames == 0, "; " + some, settings);
    }
    return std::nullopt;
}

}  // namespace camhost
