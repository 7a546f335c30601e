// SPDX-License-Identifier: MIT
// The bytes of a Windows library, made of what it is to tell of itself.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "camhost/doctor/dll_file.h"

namespace camhost::test {

enum class DelayedBy { Directory, NoDirectory };  // as Microsoft's linkers do it, and as GNU's

std::vector<std::uint8_t> dllBytes(const DllFile& dll, DelayedBy delayedBy = DelayedBy::Directory);

// The same for a test that writes it into a file.
std::string dllText(const DllFile& dll, DelayedBy delayedBy = DelayedBy::Directory);

// Places in those bytes.
inline constexpr std::size_t machineAt = 0x84;
inline constexpr std::size_t directoriesAt = 0x80 + 24 + 112;
inline constexpr std::size_t contentAt = 0x400;  // the only section, loaded at 0x1000

void put32(std::vector<std::uint8_t>& bytes, std::size_t offset, std::uint64_t value);

}  // namespace camhost::test
