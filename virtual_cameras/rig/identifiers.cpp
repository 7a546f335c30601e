// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/identifiers.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

namespace virtual_cameras {

namespace {

// Where the sixteen bytes stand in the text, in the text's order.
constexpr std::array<std::size_t, 16> byteOffsets = {1,  3,  5,  7,  10, 12, 15, 17,
                                                     20, 22, 25, 27, 29, 31, 33, 35};
constexpr std::string_view emptyForm = "{00000000-0000-0000-0000-000000000000}";

std::array<std::uint8_t, 16> bytesOf(const GUID& identifier) {
    std::array<std::uint8_t, 16> bytes{};
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[i] = static_cast<std::uint8_t>(identifier.Data1 >> (24 - 8 * i));
    }
    for (std::size_t i = 0; i < 2; ++i) {
        bytes[4 + i] = static_cast<std::uint8_t>(identifier.Data2 >> (8 - 8 * i));
        bytes[6 + i] = static_cast<std::uint8_t>(identifier.Data3 >> (8 - 8 * i));
    }
    for (std::size_t i = 0; i < 8; ++i) {
        bytes[8 + i] = identifier.Data4[i];
    }
    return bytes;
}

GUID identifierOf(const std::array<std::uint8_t, 16>& bytes) {
    GUID identifier = noIdentifier;
    for (std::size_t i = 0; i < 4; ++i) {
        identifier.Data1 = (identifier.Data1 << 8) | bytes[i];
    }
    identifier.Data2 = static_cast<std::uint16_t>(bytes[4] * 256 + bytes[5]);
    identifier.Data3 = static_cast<std::uint16_t>(bytes[6] * 256 + bytes[7]);
    for (std::size_t i = 0; i < 8; ++i) {
        identifier.Data4[i] = bytes[8 + i];
    }
    return identifier;
}

std::uint64_t hashOf(std::string_view text, std::uint64_t start) {
    std::uint64_t hash = start;
    for (const char character : text) {
        hash = (hash ^ static_cast<std::uint8_t>(character)) * 0x100000001B3U;
    }
    return hash;
}

}  // namespace

std::string identifierText(const GUID& identifier) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text(emptyForm);
    const auto bytes = bytesOf(identifier);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        text[byteOffsets[i]] = digits[bytes[i] >> 4];
        text[byteOffsets[i] + 1] = digits[bytes[i] & 15];
    }
    return text;
}

std::optional<GUID> parseIdentifier(std::string_view text) {
    if (text.size() != emptyForm.size()) {
        return std::nullopt;
    }
    std::string rest(text);
    std::array<std::uint8_t, 16> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char* start = text.data() + byteOffsets[i];
        const auto parsed = std::from_chars(start, start + 2, bytes[i], 16);
        if (parsed.ptr != start + 2) {
            return std::nullopt;
        }
        rest.replace(byteOffsets[i], 2, "00");
    }
    return rest == emptyForm ? std::optional(identifierOf(bytes)) : std::nullopt;
}

GUID madeUpIdentifier(std::string_view name) {
    const std::uint64_t halves[2] = {hashOf(name, 0xCBF29CE484222325U),
                                     hashOf(name, 0x9AE16A3B2F90404FU)};
    std::array<std::uint8_t, 16> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(halves[i / 8] >> (8 * (i % 8)));
    }
    return identifierOf(bytes);
}

}  // namespace virtual_cameras
