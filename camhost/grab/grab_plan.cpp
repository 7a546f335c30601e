// SPDX-License-Identifier: MIT
#include "camhost/grab/grab_plan.h"

#include <algorithm>
#include <utility>

#include "camhost/base/failure.h"
#include "camhost/base/files.h"
#include "camhost/base/number_texts.h"

namespace camhost {

namespace {

Failure usage(std::string message, std::string hint = {}) {
    return {.exit = ExitCode::Usage,
            .code = "usage",
            .message = std::move(message),
            .hint = std::move(hint)};
}

// Of the last part of the name, with its dot; empty when there is none, or when it is
// where the number stands.
std::string endOf(const std::string& name) {
    const std::string last = nameOf(name);
    const auto dot = last.rfind('.');
    return dot == last.npos || last.find('%', dot) != last.npos ? "" : last.substr(dot);
}

PictureFormat chooseFormat(const GrabOptions& options) {
    constexpr const char* known = "names end in .png, .raw, .pnm, .pgm or .ppm";
    const auto asked = parsePictureFormat(options.format);
    const auto named = pictureFormatOfName(options.output);
    const std::string end = endOf(options.output);
    if (options.output.empty() || asked == PictureFormat::None) {
        return asked.value_or(PictureFormat::Png);
    }
    if (options.output == "-") {
        if (!asked) {
            throw usage("for the output the format must be named", "--format png, raw or pnm");
        }
        return *asked;
    }
    if (!end.empty() && !named) {
        throw usage("no format has the ending \"" + end + "\"", known);
    }
    if (!asked && !named) {
        throw usage("\"" + options.output + "\" does not tell the format",
                    std::string(known) + "; or say --format");
    }
    if (asked && named && asked != named) {
        throw usage("\"" + options.output + "\" is no name for --format " + options.format, known);
    }
    return asked ? *asked : *named;
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

CFilePattern namesOf(const GrabOptions& options, PictureFormat format) {
    std::string reason;
    const std::string text = options.output.empty() ? defaultName(format) : options.output;
    const auto names = CFilePattern::parse(text, reason);
    if (!names) {
        throw usage("the name \"" + text + "\" can not be used: " + reason);
    }
    const bool needsNumber = format != PictureFormat::None && options.output != "-";
    if (options.frames > 1 && !names->isNumbered() && needsNumber) {
        throw usage("several frames need a number in the name, such as shot_%04d.png");
    }
    return *names;
}

}  // namespace

double patienceOf(const std::string& onLoss) {
    if (onLoss == "wait") {
        return std::numeric_limits<double>::infinity();
    }
    if (onLoss == "fail") {
        return 0.0;
    }
    const auto seconds = wholeNumber(onLoss);
    if (!seconds || *seconds < 0.0) {
        throw usage("--on-loss takes wait, fail or seconds, not \"" + onLoss + "\"");
    }
    return *seconds;
}

GrabPlan planGrab(const GrabOptions& options) {
    GrabPlan plan;
    plan.frames = options.frames;
    plan.skip = options.skip;
    plan.format = chooseFormat(options);
    plan.names = namesOf(options, plan.format);
    plan.toOutput = options.output == "-" && plan.format != PictureFormat::None;
    plan.force = options.force;
    plan.bayer = parseBayer(options.bayer);
    plan.demosaic = options.demosaic == "fast";
    plan.fresh = options.fresh;
    plan.timeout = options.timeout;
    plan.patience = patienceOf(options.onLoss);
    return plan;
}

void refuseExisting(const GrabPlan& plan, std::uint64_t number) {
    const std::string name = plan.names.name(number);
    if (!plan.force && !plan.toOutput && plan.format != PictureFormat::None && isFile(name)) {
        throw Failure{.exit = ExitCode::Usage,
                      .code = "file_exists",
                      .message = "\"" + name + "\" is there already",
                      .hint = "choose another name with -o, or write over it with --force"};
    }
}

void refuseExisting(const GrabPlan& plan) {
    for (std::uint64_t number = 1; number <= std::min(plan.frames, mostNamesAtOnce); ++number) {
        refuseExisting(plan, number);
    }
}

}  // namespace camhost
