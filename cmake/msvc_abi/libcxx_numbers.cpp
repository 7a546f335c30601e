// SPDX-License-Identifier: MIT
// Replaces floating point to text and back in libc++ 14: the first is compiled, the
// second is missing. Both go through the C library in its own "C" locale, whatever
// locale the host has set.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

#include <locale.h>

namespace {

_locale_t plainLocale() noexcept {
    static const _locale_t locale = ::_create_locale(LC_ALL, "C");
    return locale;
}

double parsed(const char* text) noexcept {
    return ::_strtod_l(text, nullptr, plainLocale());
}

// All texts here are shorter: a double has at most 309 digits before its point.
constexpr std::size_t longestText = 400;

// Return the length that the text has, whatever the room for it.
constexpr unsigned long long standardLength = 2;

struct NumberText {
    char characters[longestText];
    std::size_t size;
};

NumberText printed(const char* format, ...) noexcept {
    NumberText text;
    std::va_list arguments;
    va_start(arguments, format);
    text.size = static_cast<std::size_t>(::__stdio_common_vsprintf(
        standardLength, text.characters, longestText, format, plainLocale(), arguments));
    va_end(arguments);
    return text;
}

// The digits that tell the number from all others, as "d.ddde+dd".
NumberText shortestScientific(double value, int& precision) noexcept {
    for (precision = 0;; ++precision) {
        const NumberText text = printed("%.*e", precision, value);
        if (precision == std::numeric_limits<double>::max_digits10 - 1 ||
            parsed(text.characters) == value) {
            return text;
        }
    }
}

std::to_chars_result copied(const NumberText& text, char* first, char* last) noexcept {
    if (last - first < static_cast<std::ptrdiff_t>(text.size)) {
        return {last, std::errc::value_too_large};
    }
    std::memcpy(first, text.characters, text.size);
    return {first + text.size, std::errc()};
}

}  // namespace

namespace std {
inline namespace __1 {

to_chars_result to_chars(char* first, char* last, double value) {
    if (!std::isfinite(value)) {
        return copied(printed("%f", value), first, last);
    }
    int precision = 0;
    const NumberText scientific = shortestScientific(value, precision);
    const int exponent = std::atoi(std::strchr(scientific.characters, 'e') + 1);
    const NumberText fixed = printed("%.*f", std::max(precision - exponent, 0), value);
    return copied(fixed.size <= scientific.size ? fixed : scientific, first, last);
}

// Only chars_format::fixed is asked for.
to_chars_result to_chars(char* first, char* last, double value, chars_format /*format*/,
                         int precision) {
    return copied(printed("%.*f", precision, value), first, last);
}

}  // namespace __1

from_chars_result from_chars(const char* first, const char* last, double& value) noexcept {
    // What strtod takes besides, such as white space, a plus sign, hexadecimal digits
    // and words, is none of a number here.
    const std::string text(first, std::find_if_not(first, last, [](char character) {
                               return std::string_view("+-.0123456789eE").find(character) !=
                                      std::string_view::npos;
                           }));
    char* end = nullptr;
    const double number = ::_strtod_l(text.c_str(), &end, plainLocale());
    if (text.starts_with('+') || end == text.c_str()) {
        return {first, errc::invalid_argument};
    }
    const auto size = static_cast<std::size_t>(end - text.c_str());
    const std::string_view mantissa = std::string_view(text).substr(0, text.find_first_of("eE"));
    const bool isZero = mantissa.find_first_of("123456789") == std::string_view::npos;
    if (!std::isfinite(number) || (number == 0.0 && !isZero)) {
        return {first + size, errc::result_out_of_range};
    }
    value = number;
    return {first + size, errc()};
}

}  // namespace std
