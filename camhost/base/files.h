// SPDX-License-Identifier: MIT
// Whole files. Their names are UTF-8. Portable.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace camhost {

// These throw a Failure that names the file, with the system's reason where it gives one.

// A file of that name keeps its content until the new one is whole: that is written
// beside it, under a name that is free (NAME.part), and then takes its place. Nothing is
// left behind by a failure.
void writeFile(const std::string& name, std::span<const std::uint8_t> bytes);
void writeTextFile(const std::string& name, std::string_view text);

// Refuses a file of more than `largest` bytes.
std::vector<std::uint8_t> readFile(const std::string& name, std::size_t largest);

// Up to the last separator, and with it; empty for a name alone.
std::string folderOf(const std::string& name);
// Behind the last separator.
std::string nameOf(const std::string& name);

// Whether there is an ordinary file of that name.
bool isFile(const std::string& name);

inline constexpr std::size_t longestTextFile = std::size_t{1} << 20U;
// Refuses a file of more than `longestTextFile` bytes.
std::string readTextFile(const std::string& name);

}  // namespace camhost
