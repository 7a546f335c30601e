// SPDX-License-Identifier: MIT
// What the adapter's refusals tell besides the refusal: choices and limits. Portable.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace camhost {

// The texts of `Valid values are:"a" "b" `. `complete` is false when the end
// was cut off by the length of the message.
struct ValidValues {
    std::vector<std::string> values;
    bool complete = true;
};
std::optional<ValidValues> parseValidValues(std::string_view message);

struct NumberLimits {
    std::string low;
    std::string high;
};
// The two numbers of "... must be between 1.0 and 2.0." and "... within 1 and 2!".
std::optional<NumberLimits> parseLimits(std::string_view message);

}  // namespace camhost
