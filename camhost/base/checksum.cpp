// SPDX-License-Identifier: MIT
#include "camhost/base/checksum.h"

#include <array>

namespace camhost {

namespace {

constexpr std::array<std::uint32_t, 256> checksumTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value >> 1U) ^ ((value & 1U) != 0 ? 0xEDB88320U : 0U);
        }
        table[byte] = value;
    }
    return table;
}();

}  // namespace

std::uint32_t crc32(std::span<const std::uint8_t> bytes) {
    std::uint32_t value = 0xFFFFFFFFU;
    for (const std::uint8_t byte : bytes) {
        value = checksumTable[(value ^ byte) & 0xFFU] ^ (value >> 8U);
    }
    return ~value;
}

}  // namespace camhost
