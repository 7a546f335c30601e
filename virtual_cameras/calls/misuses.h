// SPDX-License-Identifier: MIT
// Calls that broke the library's rules. Any thread, with or without the world's lock.
#pragma once

#include <cstdint>
#include <string_view>

namespace virtual_cameras {

void countMisuse(std::string_view text);
// Their number since the last clearing, and the text of the last.
std::uint32_t misuses(char* last, std::uint32_t lastSize);
void clearMisuses();

}  // namespace virtual_cameras
