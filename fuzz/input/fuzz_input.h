// SPDX-License-Identifier: MIT
// What all fuzzers share: values out of the input's bytes, memory with guards, and
// the end of the program where a claim does not hold.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

inline void require(bool holds, const char* claim) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", claim);
        std::abort();
    }
}

// The input from its start; when it is used up, numbers are zero and texts empty.
class CFuzzInput {
public:
    CFuzzInput(const std::uint8_t* data, std::size_t size)
        : m_rest(reinterpret_cast<const char*>(data), size) {}

    bool isEmpty() const { return m_rest.empty(); }
    // The bytes of the value as they stand.
    template <class Value>
    Value take() {
        static_assert(std::is_trivially_copyable_v<Value>);
        std::array<char, sizeof(Value)> bytes{};
        const std::size_t available = std::min(bytes.size(), m_rest.size());
        std::copy_n(m_rest.begin(), available, bytes.begin());
        m_rest.remove_prefix(available);
        Value value;
        std::memcpy(&value, bytes.data(), bytes.size());
        return value;
    }
    // Up to the end of the line or of the input.
    std::string takeLine() { return takeUntil('\n'); }
    std::string takeUntil(char end) {
        const std::size_t found = m_rest.find(end);
        std::string text(m_rest.substr(0, found));
        m_rest.remove_prefix(found == std::string_view::npos ? m_rest.size() : found + 1);
        return text;
    }
    std::string takeRest() {
        std::string text(m_rest);
        m_rest = {};
        return text;
    }

private:
    std::string_view m_rest;
};

// A text buffer of a host, of exactly 256 bytes, in memory of its own.
class CFuzzBuffer {
public:
    CFuzzBuffer() { std::fill_n(m_bytes.get(), size, untouched); }

    char* data() { return m_bytes.get(); }
    bool isUntouched() const {
        return std::all_of(m_bytes.get(), m_bytes.get() + size,
                           [](char character) { return character == untouched; });
    }
    // Untouched, or a text with its terminator inside the buffer.
    bool isWhole() const { return isUntouched() || std::memchr(m_bytes.get(), 0, size) != nullptr; }
    std::string_view text() const {
        require(isWhole() && !isUntouched(), "a text was written, with its terminator");
        return m_bytes.get();
    }

    static constexpr std::size_t size = 256;
    static constexpr char untouched = '\x5A';

private:
    std::unique_ptr<char[]> m_bytes = std::make_unique<char[]>(size);
};
