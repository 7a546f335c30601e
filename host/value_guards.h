// SPDX-License-Identifier: MIT
// Checks of typed-in values before the adapter sees them, since it reads any
// text as some number or as "off"; and readers of its refusal texts. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/key_shapes.h"

namespace camhost {

// The whole text must be the number: no blanks, no letters, no rest.
std::optional<std::int32_t> wholeInteger(std::string_view text);
std::optional<double> wholeNumber(std::string_view text);
// on/off, 1/0, yes/no, true/false in any case.
std::optional<bool> booleanText(std::string_view text);

// The text to hand to the adapter, or nothing and the reason.
std::optional<std::string> guardedValue(SettingType type, std::string_view text,
                                        std::string& reason);

// Whether a value that was read back is the one that was asked for, as far as
// the six decimals of the adapter's number texts can tell.
bool sameValue(SettingType type, std::string_view asked, std::string_view read);

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
