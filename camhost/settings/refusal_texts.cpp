// SPDX-License-Identifier: MIT
#include "camhost/settings/refusal_texts.h"

#include "camhost/base/number_texts.h"

namespace camhost {

namespace {

std::string withoutEnd(std::string_view text) {
    const auto last = text.find_last_of("0123456789");
    return std::string(text.substr(0, last == text.npos ? 0 : last + 1));
}

}  // namespace

std::optional<ValidValues> parseValidValues(std::string_view message) {
    constexpr std::string_view start = "Valid values are:";
    if (!message.starts_with(start)) {
        return std::nullopt;
    }
    message.remove_prefix(start.size());
    ValidValues result;
    while (!message.empty()) {
        if (message.front() != '"') {
            result.complete = false;
            return result;
        }
        // A text may itself hold quotes; it ends where a quote meets a blank.
        const auto end = message.find("\" ", 1);
        if (end == message.npos) {
            result.complete = false;
            return result;
        }
        result.values.emplace_back(message.substr(1, end - 1));
        message.remove_prefix(end + 2);
    }
    return result;
}

std::optional<NumberLimits> parseLimits(std::string_view message) {
    for (const std::string_view lead : {" must be between ", " must be within "}) {
        const auto at = message.find(lead);
        if (at == message.npos) {
            continue;
        }
        const std::string_view rest = message.substr(at + lead.size());
        const auto middle = rest.find(" and ");
        if (middle == rest.npos) {
            continue;
        }
        NumberLimits limits{std::string(rest.substr(0, middle)),
                            withoutEnd(rest.substr(middle + 5))};
        if (wholeNumber(limits.low) && wholeNumber(limits.high)) {
            return limits;
        }
    }
    return std::nullopt;
}

}  // namespace camhost
