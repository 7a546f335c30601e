// SPDX-License-Identifier: MIT
// What the other capture library's one camera is. For its own sources.
#pragma once

#include <cstdint>

namespace other_library {

inline constexpr const char* cameraName = "Other Maker Cam";
inline constexpr const wchar_t* modelName = L"OM 1";
inline constexpr std::int64_t serialNumber = 0xC0FFEE;
inline constexpr const char* formatName = "Y800 (64x48)";
inline constexpr const wchar_t* formatText = L"Y800 (64x48)";
inline constexpr std::int32_t width = 64;
inline constexpr std::int32_t height = 48;
inline constexpr std::uint32_t frameBytes = 64 * 48;

}  // namespace other_library
