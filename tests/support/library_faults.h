// SPDX-License-Identifier: MIT
// Faults of the capture library, injected where it is called: `operation` is a name as
// its call log shows it, `nth` counts from now, a `count` of 0 is every later call.
#pragma once

#include <cstdint>

#include "virtual_cameras/control.h"

inline constexpr std::int32_t accessDenied = -2147024891;  // 0x80070005

// Returns a result code; a failing one, if no other is given.
inline void failCall(const char* operation, std::uint32_t nth = 1, std::uint32_t count = 1) {
    virtualCamerasFailCall(operation, nth, count, VIRTUAL_CAMERAS_FAIL_CODE, accessDenied, "");
}
inline void failCallWith(std::int32_t code, const char* operation, std::uint32_t nth = 1) {
    virtualCamerasFailCall(operation, nth, 1, VIRTUAL_CAMERAS_FAIL_CODE, code, "");
}
// False, or no handle; `lastError` is what the library then tells of it.
inline void refuseCall(const char* operation, std::uint32_t nth = 1, std::uint32_t count = 1,
                       const char* lastError = "") {
    virtualCamerasFailCall(operation, nth, count, VIRTUAL_CAMERAS_FAIL_FALSE, 0, lastError);
}
// Success with an empty list, or with a null reference or text.
inline void emptyCall(const char* operation, std::uint32_t nth = 1, std::uint32_t count = 1) {
    virtualCamerasFailCall(operation, nth, count, VIRTUAL_CAMERAS_FAIL_EMPTY, 0, "");
}
// Throws a text, as the library does.
inline void throwFromCall(const char* operation, const char* text, std::uint32_t nth = 1,
                          std::uint32_t count = 1) {
    virtualCamerasFailCall(operation, nth, count, VIRTUAL_CAMERAS_FAIL_THROW, 0, text);
}
