// SPDX-License-Identifier: MIT
#include "camhost/grab/grab_plan.h"

#include <utility>

#include "camhost/base/failure.h"
#include "camhost/base/number_texts.h"

namespace camhost {

namespace {

Failure usage(std::string message) {
    return {.exit = ExitCode::Usage, .code = "usage", .message = std::move(message)};
}

PictureFormat chooseFormat(const GrabOptions& options) {
    if (const auto named = parsePictureFormat(options.format)) {
        return *named;
    }
    return pictureFormatOfName(options.output).value_or(PictureFormat::Png);
}

std::string defaultName(PictureFormat format) {
    switch (format) {
        case PictureFormat::Raw:
            return "frame_%04d.raw";
        case PictureFormat::Pnm:
            return "frame_%04d.pnm";
        case PictureFormat::Png:
        case PictureFormat::None:
            break;
    }
    return "frame_%04d.png";
}

double patienceOf(const std::string& text) {
    if (text == "wait") {
        return std::numeric_limits<double>::infinity();
    }
    if (text == "fail") {
        return 0.0;
    }
    const auto seconds = wholeNumber(text);
    if (!seconds || *seconds < 0.0) {
        throw usage("--on-loss takes wait, fail or seconds, not \"" + text + "\"");
    }
    return *seconds;
}

CFilePattern namesOf(const GrabOptions& options, PictureFormat format) {
    std::string reason;
    const std::string text = options.output.empty() ? defaultName(format) : options.output;
    const auto names = CFilePattern::parse(text, reason);
    if (!names) {
        throw usage("the name \"" + text + "\" can not be used: " + reason);
    }
    if (options.frames > 1 && !names->isNumbered() && format != PictureFormat::None) {
        throw usage("several frames need a number in the name, such as shot_%04d.png");
    }
    return *names;
}

}  // namespace

GrabPlan planGrab(const GrabOptions& options) {
    GrabPlan plan;
    plan.frames = options.frames;
    plan.skip = options.skip;
    plan.format = chooseFormat(options);
    plan.names = namesOf(options, plan.format);
    plan.bayer = parseBayer(options.bayer);
    plan.demosaic = options.demosaic == "fast";
    plan.timeout = options.timeout;
    plan.patience = patienceOf(options.onLoss);
    return plan;
}

}  // namespace camhost
