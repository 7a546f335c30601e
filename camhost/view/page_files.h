// SPDX-License-Identifier: MIT
// The files of view_page/, which the build puts into the program. Portable.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace camhost {

struct PageFile {
    std::string_view name;
    std::string_view type;
    std::span<const std::uint8_t> bytes;
};

// Defined in a source that cmake/EmbedPage.cmake makes.
std::span<const PageFile> pageFiles();

}  // namespace camhost
