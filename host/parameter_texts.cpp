// SPDX-License-Identifier: MIT
#include "host/parameter_texts.h"

#include <algorithm>

#include "host/failure.h"
#include "host/setting_changes.h"
#include "host/text_tools.h"
#include "host/value_guards.h"

namespace camhost {

namespace {

Failure badParameter(const Assignment& assignment, const char* what) {
    return {ExitCode::Usage,
            "bad_value",
            assignment.key + " takes " + what + ", not \"" + assignment.value + "\"",
            {},
            {}};
}

double number(const Assignment& assignment) {
    const auto value = wholeNumber(assignment.value);
    if (!value) {
        throw badParameter(assignment, "a number");
    }
    return *value;
}

bool boolean(const Assignment& assignment) {
    const auto value = booleanText(assignment.value);
    if (!value) {
        throw badParameter(assignment, "on or off");
    }
    return *value;
}

std::array<std::int32_t, 4> region(const Assignment& assignment) {
    const std::vector<std::string> parts = split(assignment.value, ',');
    std::array<std::int32_t, 4> values{};
    bool good = parts.size() == values.size();
    for (std::size_t i = 0; good && i < values.size(); ++i) {
        const auto value = wholeInteger(parts[i]);
        good = value.has_value();
        values[i] = value.value_or(0);
    }
    if (!good) {
        throw badParameter(assignment, "left,top,width,height");
    }
    return values;
}

}  // namespace

AskedParameters parseParameters(const std::vector<std::string>& texts) {
    AskedParameters asked;
    for (const std::string& text : texts) {
        const Assignment assignment = parseAssignment(text);
        const std::string name = lowered(assignment.key);
        if (name == "exposure") {
            asked.exposure = number(assignment);
        } else if (name == "contrast") {
            asked.contrast = number(assignment);
        } else if (name == "brightness") {
            asked.brightness = number(assignment);
        } else if (name == "trigger") {
            asked.trigger = boolean(assignment);
        } else if (name == "polarity") {
            asked.polarity = boolean(assignment);
        } else if (name == "roi") {
            asked.region = region(assignment);
        } else {
            throw Failure{ExitCode::Usage,
                          "usage",
                          "there is no parameter \"" + name + "\"",
                          {},
                          "exposure, contrast, brightness, trigger, polarity, roi"};
        }
    }
    return asked;
}

double fractionFor(std::int32_t minimum, std::int32_t maximum, std::int32_t value) {
    const double span = static_cast<double>(maximum) - minimum;
    const double offset = static_cast<double>(value) - minimum;
    if (span == 0.0 || offset == 0.0) {
        return 0.0;
    }
    // Half a step further, so that the truncation can't lose one.
    return (offset + (offset > 0.0 ? 0.5 : -0.5)) / span;
}

}  // namespace camhost
