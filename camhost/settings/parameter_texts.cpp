// SPDX-License-Identifier: MIT
#include "camhost/settings/parameter_texts.h"

#include <utility>

#include "camhost/base/failure.h"
#include "camhost/base/number_texts.h"
#include "camhost/base/texts.h"
#include "camhost/settings/assignment.h"

namespace camhost {

namespace {

Failure badParameter(const Assignment& assignment, const char* what) {
    return {.exit = ExitCode::Usage,
            .code = "bad_value",
            .message = assignment.key + " takes " + what + ", not \"" + assignment.value + "\""};
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

void checkFractions(const AskedParameters& asked) {
    const std::pair<const char*, std::optional<double>> fractions[] = {
        {"contrast", asked.contrast}, {"brightness", asked.brightness}};
    for (const auto& [name, value] : fractions) {
        if (value && (*value < 0.0 || *value > 1.0)) {
            throw Failure{
                .exit = ExitCode::Usage,
                .code = "bad_value",
                .message = std::string(name) + " takes a fraction of its range, within 0 and 1"};
        }
    }
}

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
            throw Failure{.exit = ExitCode::Usage,
                          .code = "usage",
                          .message = "there is no parameter \"" + name + "\"",
                          .hint = "exposure, contrast, brightness, trigger, polarity, roi"};
        }
    }
    return asked;
}

}  // namespace camhost
