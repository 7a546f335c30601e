// SPDX-License-Identifier: MIT
// Whole files. Their names are UTF-8. Portable.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace camhost {

// These throw a Failure that names the file.
void writeFile(const std::string& name, std::span<const std::uint8_t> bytes);
void writeTextFile(const std::string& name, std::string_view text);
std::string readTextFile(const std::string& name);

}  // namespace camhost
