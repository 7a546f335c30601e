// SPDX-License-Identifier: MIT
#include "camhost/measure/rate_limit.h"

#include "camhost/base/number_texts.h"

namespace camhost {

namespace {

constexpr double tolerance = 0.03;  // of a rate

std::string rateText(double rate) {
    return fixedText(rate, 1) + " fps";
}

}  // namespace

RateLimit limitOf(const RateFacts& facts) {
    if (facts.measured > facts.reported * (1.0 + tolerance)) {
        return RateLimit::None;
    }
    if (facts.measured >= facts.reported * (1.0 - tolerance)) {
        return RateLimit::Rate;
    }
    if (facts.exposure && *facts.exposure * facts.reported > 1.0 + tolerance) {
        return RateLimit::Exposure;
    }
    // Whatever explains half of the frames that are missing.
    const double missing = (facts.reported - facts.measured) * facts.span;
    if (2.0 * facts.timedOut * facts.reported >= missing) {
        return RateLimit::Timeouts;
    }
    if (2.0 * facts.missedByHost >= missing) {
        return 2.0 * facts.missedByCopies >= facts.missedByHost ? RateLimit::Copy
                                                                : RateLimit::LateWaits;
    }
    return RateLimit::Camera;
}

const char* limitName(RateLimit limit) {
    switch (limit) {
        case RateLimit::None:
            return "none";
        case RateLimit::Rate:
            return "rate";
        case RateLimit::Exposure:
            return "exposure";
        case RateLimit::Timeouts:
            return "timeouts";
        case RateLimit::Copy:
            return "copy";
        case RateLimit::LateWaits:
            return "late_waits";
        case RateLimit::Camera:
            return "camera";
    }
    return "";
}

std::string limitText(RateLimit limit, const RateFacts& facts) {
    const std::string frame =
        " longer than a frame of " + rateText(facts.reported) + ", which is " +
        fixedText(facts.reported > 0.0 ? 1000.0 / facts.reported : 0.0, 1) + " ms";
    switch (limit) {
        case RateLimit::None:
            return "nothing: frames come faster than the camera's rate";
        case RateLimit::Rate:
            return "the camera's rate of " + rateText(facts.reported);
        case RateLimit::Exposure:
            return "the exposure: " + fixedText(facts.exposure.value_or(0.0) * 1000.0, 1) + " ms," +
                   frame;
        case RateLimit::Timeouts:
            return "time-outs: " + fixedText(facts.timedOut, 1) + " s in which no frame came";
        case RateLimit::Copy:
            return "copying: it takes" + frame;
        case RateLimit::LateWaits:
            return "late waits: what is done between two takes" + frame;
        case RateLimit::Camera:
            return "the camera: it delivers fewer frames than its rate of " +
                   rateText(facts.reported);
    }
    return "";
}

}  // namespace camhost
