// SPDX-License-Identifier: MIT
// The forms in which a host takes its frames.
#pragma once

#include <cstdint>

// The host's own codes. A switch over them names every one and has no default, so
// that a new one does not compile where it was forgotten; a code of none of these
// names is served as mono8.
enum class PixelType : std::uint32_t {
    mono8 = 0,
    raw8 = 4,  // the sensor's colour mosaic
    rgb24 = 7,
};
