// SPDX-License-Identifier: MIT
#include "properties/value_text.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>
#include <system_error>

#include "properties/property_keys.h"

namespace {

bool isDigit(char character) noexcept {
    return character >= '0' && character <= '9';
}

std::string_view withoutLeadingSpace(std::string_view text) noexcept {
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

// Takes an optional sign off the front; true for a minus.
bool takeSign(std::string_view& text) noexcept {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    return negative;
}

std::size_t digitsAt(std::string_view text, std::size_t position) noexcept {
    std::size_t end = position;
    while (end < text.size() && isDigit(text[end])) {
        ++end;
    }
    return end - position;
}

// The length of "digits[.digits]" or ".digits"; 0 when there is no digit.
std::size_t mantissaLength(std::string_view text) noexcept {
    const std::size_t whole = digitsAt(text, 0);
    if (whole < text.size() && text[whole] == '.') {
        const std::size_t fraction = digitsAt(text, whole + 1);
        return whole + fraction > 0 ? whole + 1 + fraction : 0;
    }
    return whole;
}

// The length of "e[sign]digits" at `position`; 0 when it is not complete.
std::size_t exponentLength(std::string_view text, std::size_t position) noexcept {
    if (position >= text.size() || (text[position] != 'e' && text[position] != 'E')) {
        return 0;
    }
    std::size_t sign = 0;
    if (position + 1 < text.size() && (text[position + 1] == '+' || text[position + 1] == '-')) {
        sign = 1;
    }
    const std::size_t digits = digitsAt(text, position + 1 + sign);
    return digits > 0 ? 1 + sign + digits : 0;
}

// Whether a number outside the range of a double is too large rather than too
// small: where its first significant digit stands, moved by the exponent.
bool isOverflow(std::string_view mantissa, std::string_view exponent) noexcept {
    const std::size_t first = std::min(mantissa.find_first_of("123456789"), mantissa.size());
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const auto magnitude = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
    return magnitude + (exponent.empty() ? 0 : parseInteger(exponent.substr(1))) > 0;
}

}  // namespace

std::int32_t parseInteger(std::string_view text) noexcept {
    text = withoutLeadingSpace(text);
    const bool negative = takeSign(text);
    const std::int64_t limit =
        negative ? -static_cast<std::int64_t>(std::numeric_limits<std::int32_t>::min())
                 : std::numeric_limits<std::int32_t>::max();
    std::int64_t magnitude = 0;
    for (std::size_t i = 0; i < text.size() && isDigit(text[i]); ++i) {
        magnitude = std::min(magnitude * 10 + (text[i] - '0'), limit);
    }
    return static_cast<std::int32_t>(negative ? -magnitude : magnitude);
}

double parseFloat(std::string_view text) noexcept {
    text = withoutLeadingSpace(text);
    const bool negative = takeSign(text);
    const std::size_t mantissa = mantissaLength(text);
    if (mantissa == 0) {
        return 0.0;
    }
    const std::size_t exponent = exponentLength(text, mantissa);
    double number = 0.0;
    const char* end = text.data() + mantissa + exponent;
    if (std::from_chars(text.data(), end, number).ec == std::errc::result_out_of_range) {
        number = isOverflow(text.substr(0, mantissa), text.substr(mantissa, exponent))
                     ? std::numeric_limits<double>::infinity()
                     : 0.0;
    }
    return negative ? -number : number;
}

std::int32_t truncateToInteger(double number) noexcept {
    // Both limits are exact in a double; the comparison is false for not-a-number.
    const bool fits = number > -2147483649.0 && number < 2147483648.0;
    return fits ? static_cast<std::int32_t>(number) : std::numeric_limits<std::int32_t>::min();
}

std::int32_t wrappingSum(std::int32_t left, std::int32_t right) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(left) +
                                     static_cast<std::uint32_t>(right));
}

std::int32_t wrappingDifference(std::int32_t left, std::int32_t right) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(left) -
                                     static_cast<std::uint32_t>(right));
}

double cutToHundredths(double number) noexcept {
    return truncateToInteger(number * 100.0) / 100.0;
}

bool equalsIgnoringCase(std::string_view left, std::string_view right) noexcept {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return lowered(a) == lowered(b); });
}
