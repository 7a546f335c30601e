// SPDX-License-Identifier: MIT
// Numbers and switches from and into text, in every locale with a decimal point.
// Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace camhost {

std::string fixedText(double value, int decimals);

// "+7" as "7", which the standard's readers want; people write both.
std::string_view withoutPlus(std::string_view text);

// The whole text must be the number: no blanks, no letters, no rest.
std::optional<std::int32_t> wholeInteger(std::string_view text);
// In decimal digits alone.
std::optional<std::uint64_t> wholeCount(std::string_view text);
std::optional<double> wholeNumber(std::string_view text);
// on/off, 1/0, yes/no, true/false in any case.
std::optional<bool> booleanText(std::string_view text);

}  // namespace camhost
