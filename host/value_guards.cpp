// SPDX-License-Identifier: MIT
#include "host/value_guards.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "host/text_tools.h"

namespace camhost {

namespace {

constexpr std::array<std::pair<std::string_view, bool>, 8> booleanWords{{
    {"on", true},
    {"1", true},
    {"yes", true},
    {"true", true},
    {"off", false},
    {"0", false},
    {"no", false},
    {"false", false},
}};

// from_chars takes no plus sign; people do.
std::string_view withoutPlus(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+') {
        text.remove_prefix(1);
    }
    return text;
}

std::string withoutEnd(std::string_view text) {
    const auto last = text.find_last_of("0123456789");
    return std::string(text.substr(0, last == text.npos ? 0 : last + 1));
}

}  // namespace

std::optional<std::int32_t> wholeInteger(std::string_view text) {
    text = withoutPlus(text);
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc{} || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

std::optional<double> wholeNumber(std::string_view text) {
    text = withoutPlus(text);
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc{} || end != text.data() + text.size() ||
        !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<bool> booleanText(std::string_view text) {
    for (const auto& [word, value] : booleanWords) {
        if (sameIgnoringCase(text, word)) {
            return value;
        }
    }
    return std::nullopt;
}

std::optional<std::string> guardedValue(SettingType type, std::string_view text,
                                        std::string& reason) {
    switch (type) {
        case SettingType::Integer:
            if (!wholeInteger(text)) {
                reason = "takes a whole number";
                return std::nullopt;
            }
            return std::string(withoutPlus(text));
        case SettingType::Float:
            if (!wholeNumber(text)) {
                reason = "takes a number";
                return std::nullopt;
            }
            return std::string(withoutPlus(text));
        case SettingType::Boolean: {
            const std::optional<bool> value = booleanText(text);
            if (!value) {
                reason = "takes true or false (also on/off, yes/no, 1/0)";
                return std::nullopt;
            }
            return std::string(*value ? "true" : "false");
        }
        case SettingType::Choice:
        case SettingType::Text:
        case SettingType::Command:
            break;
    }
    return std::string(text);
}

bool sameValue(SettingType type, std::string_view asked, std::string_view read) {
    if (type == SettingType::Integer || type == SettingType::Float) {
        const std::optional<double> a = wholeNumber(asked);
        const std::optional<double> b = wholeNumber(read);
        return a && b && std::fabs(*a - *b) <= std::max(6e-7, std::fabs(*a) * 1e-9);
    }
    if (type == SettingType::Boolean) {
        return sameIgnoringCase(asked, read);
    }
    return asked == read;
}

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
