// SPDX-License-Identifier: MIT
// Memory of a host with guards on both sides: whoever writes outside fails the test.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

// Every byte starts as `untouched`; the guards must still hold it at the end.
class CGuardedBytes {
public:
    static constexpr std::uint8_t untouched = 0xA5;

    explicit CGuardedBytes(std::size_t size) : m_size(size), m_bytes(size + 2 * guard, untouched) {}
    CGuardedBytes(const CGuardedBytes&) = delete;
    CGuardedBytes& operator=(const CGuardedBytes&) = delete;
    ~CGuardedBytes() {
        const auto isUntouched = [](std::uint8_t value) { return value == untouched; };
        EXPECT_TRUE(std::all_of(m_bytes.begin(), m_bytes.begin() + guard, isUntouched))
            << "written before a host buffer";
        EXPECT_TRUE(std::all_of(m_bytes.end() - guard, m_bytes.end(), isUntouched))
            << "written past the end of a host buffer";
    }

    std::uint8_t* data() noexcept { return m_bytes.data() + guard; }
    const std::uint8_t* data() const noexcept { return m_bytes.data() + guard; }
    std::size_t size() const noexcept { return m_size; }
    std::uint8_t operator[](std::size_t index) const { return data()[index]; }
    bool isUntouched() const {
        return std::all_of(data(), data() + m_size,
                           [](std::uint8_t value) { return value == untouched; });
    }
    void clear() { std::fill(m_bytes.begin(), m_bytes.end(), untouched); }

private:
    static constexpr std::ptrdiff_t guard = 64;

    std::size_t m_size;
    std::vector<std::uint8_t> m_bytes;
};

// A text that the adapter has not written.
inline const std::string untouchedText = "<untouched>";

// 256 bytes for a text.
class CHostText {
public:
    char* get() noexcept { return reinterpret_cast<char*>(m_bytes.data()); }
    // The text up to its terminator, or untouchedText.
    std::string text() const {
        if (m_bytes.isUntouched()) {
            return untouchedText;
        }
        const auto* start = reinterpret_cast<const char*>(m_bytes.data());
        const auto* end = static_cast<const char*>(std::memchr(start, '\0', m_bytes.size()));
        return end != nullptr ? std::string(start, end) : "<not terminated>";
    }

private:
    CGuardedBytes m_bytes{256};
};
