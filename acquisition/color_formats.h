// SPDX-License-Identifier: MIT
// Pure: the capture library's colour formats, and which one serves a pixel type.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/windows.h"

// Colour formats of frame sinks. A numbering of its own: never converted to or
// from the host's pixel types.
enum class ColorFormat : std::uint32_t {
    eRGB32 = 1,
    eRGB24 = 2,
    eRGB565 = 3,
    eRGB555 = 4,
    eRGB8 = 5,
    eUYVY = 6,
    eY800 = 7,
    eYGB1 = 8,
    eYGB0 = 9,
    eBY8 = 10,
    eY16 = 11,
    eRGB64 = 12,
};

// The media subtype of a colour format; the null id for an unknown code.
GUID ColorformatToSubtype(ColorFormat format) noexcept;

// Whether a video format delivers 8-bit grey, judged by the first four
// characters of its text.
bool isY800Text(std::string_view formatText) noexcept;
