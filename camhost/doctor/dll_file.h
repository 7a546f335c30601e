// SPDX-License-Identifier: MIT
// What the file of a Windows library tells: its machine, what it exports and what it wants
// of others. Any bytes will do: nothing is read beyond them. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace camhost {

struct DllImport {
    std::string library{};
    std::vector<std::string> functions{};  // those that have a name
};

struct DllFile {
    std::uint16_t machine = 0;
    bool isLibrary = false;  // and no program
    // Read of files for x64 only.
    std::vector<std::string> exports{};
    std::vector<DllImport> imports{};
    std::vector<DllImport> delayedImports{};
};

inline constexpr std::uint16_t machineX64 = 0x8664;
// "x64", "ARM64", "x86 (32 bits)", or its number.
std::string machineName(std::uint16_t machine);

// Nothing, and a reason, for bytes that are no such file, or one that is damaged.
std::optional<DllFile> readDllFile(std::span<const std::uint8_t> bytes, std::string& reason);

// The compilers' two ways to write C++ names.
enum class NameKind { Plain, Gnu, Microsoft };
NameKind kindOfNames(const std::vector<std::string>& names);

}  // namespace camhost
