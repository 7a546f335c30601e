// SPDX-License-Identifier: MIT
// What leaves an operation that throws, as a value to compare.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

// The result code that is thrown as an integer; 0 for none.
template <class Operation>
std::int32_t thrownCode(Operation&& operation) {
    try {
        operation();
    } catch (std::int32_t code) {
        return code;
    }
    return 0;
}

// The text that the library throws; "(nothing)" for none.
template <class Operation>
std::string thrownText(Operation&& operation) {
    try {
        operation();
    } catch (char* text) {
        return text;
    }
    return "(nothing)";
}

// The text of a std::out_of_range; empty for none.
template <class Operation>
std::string outOfRangeText(Operation&& operation) {
    try {
        operation();
    } catch (const std::out_of_range& failure) {
        return failure.what();
    }
    return {};
}
