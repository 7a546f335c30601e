// SPDX-License-Identifier: MIT
// Numbers from any text, against the C library where its grammar agrees.
#include <cmath>
#include <limits>

#include "fuzz/input/fuzz_input.h"
#include "properties/value_text.h"

namespace {

// Behind white space and a sign, as the C library skips them.
std::string_view withoutSpaceAndSign(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    text.remove_prefix(std::min(start, text.size()));
    if (text.starts_with('-') || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    return text;
}

void checkInteger(const std::string& text) {
    constexpr long long lowest = std::numeric_limits<std::int32_t>::min();
    constexpr long long highest = std::numeric_limits<std::int32_t>::max();
    const long long expected = std::clamp(std::strtoll(text.c_str(), nullptr, 10), lowest, highest);
    require(parseInteger(text) == expected, "an integer is read as the C library reads it");
}

// What the C library reads; without a sign where it reads nothing.
double readByLibrary(const std::string& text) {
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    return end != text.c_str() ? number : 0.0;
}

double expectedFloat(const std::string& text) {
    const std::string_view number = withoutSpaceAndSign(text);
    const bool isHexadecimal = number.starts_with("0x") || number.starts_with("0X");
    const bool isNumber =
        !number.empty() && (number[0] == '.' || (number[0] >= '0' && number[0] <= '9'));
    if (!isNumber) {
        // "inf" and "nan" among them, which the C library would read.
        return 0.0;
    }
    // Of a hexadecimal number the zero alone is read.
    const std::size_t zero = text.size() - number.size();
    return readByLibrary(isHexadecimal ? text.substr(0, zero + 1) : text);
}

void checkFloat(const std::string& text) {
    const double number = parseFloat(text);
    const double expected = expectedFloat(text);
    require(number == expected, "a number is read as the C library reads it");
    require(std::signbit(number) == std::signbit(expected), "and has the same sign");
}

void checkConversions(double number) {
    const std::int32_t integer = truncateToInteger(number);
    const double whole = std::trunc(number);
    const bool fits = whole >= -2147483648.0 && whole <= 2147483647.0;
    require(integer == (fits ? whole : -2147483648.0), "a number is cut toward zero");
    require(cutToHundredths(number) == truncateToInteger(number * 100.0) / 100.0,
            "hundredths are cut of the product with a hundred");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CFuzzInput input(data, size);
    const auto left = input.take<std::int32_t>();
    const auto right = input.take<std::int32_t>();
    const auto number = input.take<double>();
    const std::int64_t sum = std::int64_t{left} + right;
    const std::int64_t difference = std::int64_t{left} - right;
    require((sum - wrappingSum(left, right)) % 4294967296 == 0, "sums wrap");
    require((difference - wrappingDifference(left, right)) % 4294967296 == 0, "differences wrap");
    checkConversions(number);
    while (!input.isEmpty()) {
        const std::string text = input.takeUntil(';');
        checkInteger(text);
        checkFloat(text);
        checkConversions(parseFloat(text));
        require(equalsIgnoringCase(text, text), "a text equals itself");
        require(!equalsIgnoringCase(text, text + " "), "and no longer one");
    }
    return 0;
}
