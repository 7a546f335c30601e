// SPDX-License-Identifier: MIT
// Pure: numbers out of the host's texts, and the arithmetic done on them, without
// locale and without undefined behaviour.
#pragma once

#include <cstdint>
#include <string_view>

// Leading-number parses: optional white space, optional sign, digits; what
// follows is ignored, and a text that does not begin with a number gives 0.
// Integers saturate at the 32-bit limits.
std::int32_t parseInteger(std::string_view text) noexcept;
// The same with an optional point, digits and exponent. No hexadecimal, "inf" or
// "nan". Too large a number becomes infinite, too small a one zero.
double parseFloat(std::string_view text) noexcept;

// Toward zero. What does not fit, or is not a number, becomes -2147483648, as
// the processor's own conversion has it.
std::int32_t truncateToInteger(double number) noexcept;

// 32-bit arithmetic that wraps in two's complement.
std::int32_t wrappingSum(std::int32_t left, std::int32_t right) noexcept;
std::int32_t wrappingDifference(std::int32_t left, std::int32_t right) noexcept;

// The limit as offered to the host: cut to two decimals toward zero.
double cutToHundredths(double number) noexcept;

// ASCII case folding over the whole text.
bool equalsIgnoringCase(std::string_view left, std::string_view right) noexcept;
