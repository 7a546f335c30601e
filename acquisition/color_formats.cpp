// SPDX-License-Identifier: MIT
#include "acquisition/color_formats.h"

#include <algorithm>
#include <array>

namespace {

struct Entry {
    ColorFormat format;
    GUID subtype;
};

// The subtypes of uncompressed RGB differ in the first field only.
constexpr GUID rgbSubtype(std::uint32_t first) noexcept {
    return {first, 0x524F, 0x11CE, {0x9F, 0x53, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
}

// A four-character code stands little-endian in the first field.
constexpr GUID fourCharacterSubtype(const char (&code)[5]) noexcept {
    std::uint32_t first = 0;
    for (int i = 3; i >= 0; --i) {
        first = (first << 8U) | static_cast<std::uint8_t>(code[i]);
    }
    return {first, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};
}

constexpr std::array<Entry, 12> entries = {{
    {ColorFormat::eRGB32, rgbSubtype(0xE436EB7E)},
    {ColorFormat::eRGB24, rgbSubtype(0xE436EB7D)},
    {ColorFormat::eRGB565, rgbSubtype(0xE436EB7B)},
    {ColorFormat::eRGB555, rgbSubtype(0xE436EB7C)},
    {ColorFormat::eRGB8, rgbSubtype(0xE436EB7A)},
    {ColorFormat::eUYVY, fourCharacterSubtype("UYVY")},
    {ColorFormat::eY800, fourCharacterSubtype("Y800")},
    {ColorFormat::eYGB1, fourCharacterSubtype("YGB1")},
    {ColorFormat::eYGB0, fourCharacterSubtype("YGB0")},
    {ColorFormat::eBY8, fourCharacterSubtype("BY8 ")},
    {ColorFormat::eY16, fourCharacterSubtype("Y16 ")},
    {ColorFormat::eRGB64, fourCharacterSubtype("RGB6")},
}};

}  // namespace

GUID ColorformatToSubtype(ColorFormat format) noexcept {
    const auto found = std::find_if(entries.begin(), entries.end(), [format](const Entry& entry) {
        return entry.format == format;
    });
    return found != entries.end() ? found->subtype : GUID{};
}

bool isY800Text(std::string_view formatText) noexcept {
    return formatText.substr(0, 4) == "Y800";
}
