// SPDX-License-Identifier: MIT
#include "camhost/base/number_texts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <system_error>
#include <utility>

#include "camhost/base/texts.h"

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

// Nothing for what is no number as a whole.
template <class Number>
std::optional<Number> whole(std::string_view text) {
    Number value{};
    const char* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value);
    if (text.empty() || error != std::errc{} || end != last) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

std::string_view withoutPlus(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+') {
        text.remove_prefix(1);
    }
    return text;
}

std::string fixedText(double value, int decimals) {
    char buffer[400];
    const int length = std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    std::string result(buffer, static_cast<std::size_t>(std::max(length, 0)));
    std::replace(result.begin(), result.end(), ',', '.');
    return result;
}

std::optional<std::int32_t> wholeInteger(std::string_view text) {
    return whole<std::int32_t>(withoutPlus(text));
}

std::optional<std::uint64_t> wholeCount(std::string_view text) {
    return whole<std::uint64_t>(text);
}

std::optional<double> wholeNumber(std::string_view text) {
    const auto value = whole<double>(withoutPlus(text));
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<bool> booleanText(std::string_view text) {
    for (const auto& [word, value] : booleanWords) {
        if (sameIgnoringCase(text, word)) {
            return value;
        }
    }
    return std::nullopt;
}

}  // namespace camhost
