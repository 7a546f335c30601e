// SPDX-License-Identifier: MIT
// The texts of camhost params, read into what a parameter block needs. Portable.
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

// Throws a usage Failure for a contrast or brightness that is no fraction of its range.
void checkFractions(const AskedParameters& asked);

}  // namespace camhost
