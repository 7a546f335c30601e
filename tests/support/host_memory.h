// SPDX-License-Identifier: MIT
// Memory as a host hands it to the adapter, guarded on both sides: a write
// outside fails the test when the memory goes.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

// Bytes between two guards. Untouched bytes hold `filler`.
class CHostMemory {
public:
    static constexpr std::uint8_t filler = 0xA5;

    explicit CHostMemory(std::size_t size) : m_size(size), m_memory(guard + size + guard, filler) {
        std::fill_n(m_memory.begin(), guard, before);
        std::fill_n(m_memory.end() - guard, guard, behind);
    }
    CHostMemory(const CHostMemory&) = delete;
    CHostMemory& operator=(const CHostMemory&) = delete;
    ~CHostMemory() { EXPECT_TRUE(isGuardIntact()) << "a write left the host's memory"; }

    std::uint8_t* data() noexcept { return m_memory.data() + guard; }
    const std::uint8_t* data() const noexcept { return m_memory.data() + guard; }
    std::size_t size() const noexcept { return m_size; }
    std::uint8_t operator[](std::size_t index) const { return m_memory.at(guard + index); }
    std::vector<std::uint8_t> bytes() const { return {data(), data() + m_size}; }
    std::vector<std::uint8_t> bytes(std::size_t first, std::size_t count) const {
        return {data() + first, data() + first + count};
    }

    bool isUntouched(std::size_t first, std::size_t count) const {
        return holdsOnly(data() + first, count, filler);
    }
    bool isUntouched() const { return isUntouched(0, m_size); }
    bool isGuardIntact() const {
        return holdsOnly(m_memory.data(), guard, before) &&
               holdsOnly(m_memory.data() + guard + m_size, guard, behind);
    }
    void refill() { std::fill_n(data(), m_size, filler); }

private:
    // Compared with themselves, one byte further on: tests ask this thousands of times.
    static bool holdsOnly(const std::uint8_t* bytes, std::size_t count, std::uint8_t value) {
        return count == 0 || (*bytes == value && std::memcmp(bytes, bytes + 1, count - 1) == 0);
    }

    static constexpr std::ptrdiff_t guard = 4096;
    static constexpr std::uint8_t before = 0xC3;
    static constexpr std::uint8_t behind = 0x3C;

    std::size_t m_size;
    std::vector<std::uint8_t> m_memory;
};

// What a buffer reads as long as nobody has written it.
inline constexpr const char* untouched = "(untouched)";

// A text buffer of exactly the 256 bytes that every host grants.
class CHostText {
public:
    // Converts where an entry point takes a text buffer.
    operator char*() noexcept { return reinterpret_cast<char*>(m_memory.data()); }

    // Up to the terminator. A text without one fails the test.
    std::string text() const {
        const auto* start = reinterpret_cast<const char*>(m_memory.data());
        const void* end = std::memchr(start, 0, m_memory.size());
        if (end == nullptr) {
            ADD_FAILURE() << "no terminator within the host's 256 bytes";
            return std::string(start, m_memory.size());
        }
        return start;
    }
    // As above, or that nobody has written it.
    std::string read() const { return isUntouched() ? untouched : text(); }
    bool isUntouched() const { return m_memory.isUntouched(); }
    void refill() { m_memory.refill(); }

private:
    CHostMemory m_memory{256};
};

// A status word, guarded alike, that tells whether it was written.
class CHostStatus {
public:
    static constexpr std::uint32_t unwritten = 0xA5A5A5A5;

    operator std::uint32_t*() noexcept {
        return static_cast<std::uint32_t*>(static_cast<void*>(m_memory.data()));
    }
    std::uint32_t value() const noexcept {
        std::uint32_t word = 0;
        std::memcpy(&word, m_memory.data(), sizeof(word));
        return word;
    }
    bool isUntouched() const { return m_memory.isUntouched(); }

private:
    CHostMemory m_memory{sizeof(std::uint32_t)};
};
