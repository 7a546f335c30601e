// SPDX-License-Identifier: MIT
// The texts of camhost params, read into what a parameter block needs; and the
// fraction that keeps a whole-number range where it is. Portable.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace camhost {

struct AskedParameters {
    std::optional<double> exposure;
    std::optional<double> contrast;
    std::optional<double> brightness;
    std::optional<bool> trigger;
    std::optional<bool> polarity;
    std::optional<std::array<std::int32_t, 4>> region;  // left, top, width, height
};

// Throws a usage Failure that names the text that can't be read.
AskedParameters parseParameters(const std::vector<std::string>& texts);

// A fraction f for which minimum + truncate((maximum - minimum) * f) is the value.
double fractionFor(std::int32_t minimum, std::int32_t maximum, std::int32_t value);

}  // namespace camhost
