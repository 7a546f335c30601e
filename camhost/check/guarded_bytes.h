// SPDX-License-Identifier: MIT
// Memory of an exact size for an adapter to write into, that tells which bytes were written,
// before and behind it too. Portable.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace camhost {

class CGuardedBytes {
public:
    static constexpr std::uint8_t usualFill = 0x5A;

    // The guard behind is as large as what may be written by mistake, with the whole of it
    // once more as a rule.
    explicit CGuardedBytes(std::size_t size, std::uint8_t fill = usualFill)
        : m_size(size), m_fill(fill), m_bytes(before + size + (size * 3) + leastBehind, fill) {}

    std::uint8_t* data() { return m_bytes.data() + before; }
    const std::uint8_t* data() const { return m_bytes.data() + before; }
    std::size_t size() const { return m_size; }

    bool isIntact() const {
        const auto* end = m_bytes.data() + m_bytes.size();
        return areFill(m_bytes.data(), data()) && areFill(data() + m_size, end);
    }
    bool isUntouched() const { return areFill(m_bytes.data(), m_bytes.data() + m_bytes.size()); }
    bool isWrittenAt(std::size_t offset) const { return data()[offset] != m_fill; }

private:
    static constexpr std::size_t before = 64;
    static constexpr std::size_t leastBehind = 4096;

    // Bytes that equal their neighbours: compared in one piece, as `check` looks at some
    // thousands of bytes around every text.
    bool areFill(const std::uint8_t* from, const std::uint8_t* to) const {
        return *from == m_fill && std::equal(from, to - 1, from + 1);
    }

    std::size_t m_size;
    std::uint8_t m_fill;
    std::vector<std::uint8_t> m_bytes;
};

}  // namespace camhost
