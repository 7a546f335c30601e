// SPDX-License-Identifier: MIT
// Narrow text is UTF-8 everywhere; this turns it into wide text and back, and
// writes it into host buffers. Locale-free. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

// Every text buffer of a host holds this many bytes; no write ever passes it.
inline constexpr std::size_t hostTextBytes = 256;

// Invalid input becomes U+FFFD.
std::string toNarrow(std::wstring_view wide);
std::wstring toWide(std::string_view narrow);

// A null text of the host or of the capture library counts as empty.
std::string_view textOrEmpty(const char* text) noexcept;

// Upper-case hexadecimal digits without leading zeros, two's complement for a
// negative number: how serial numbers are written.
std::string hexadecimalText(std::int64_t number);

// One piece of a message: a text, an integer (as "%d" writes it) or a floating
// point number (as "%f" writes it, always with a decimal point).
class CTextPiece {
public:
    CTextPiece(std::string_view text) noexcept
        : m_text(text) {}                  // NOLINT(google-explicit-constructor)
    CTextPiece(const char* text) noexcept  // NOLINT(google-explicit-constructor)
        : m_text(textOrEmpty(text)) {}
    CTextPiece(const std::string& text) noexcept  // NOLINT(google-explicit-constructor)
        : m_text(text) {}
    CTextPiece(std::int32_t number) noexcept;  // NOLINT(google-explicit-constructor)
    CTextPiece(double number) noexcept;        // NOLINT(google-explicit-constructor)
    CTextPiece(const CTextPiece&) = delete;
    CTextPiece& operator=(const CTextPiece&) = delete;

    std::string_view text() const noexcept { return m_text; }

private:
    // The longest "%f": a sign, 309 digits, the point and six decimals.
    static constexpr std::size_t longestNumber = 320;

    std::string_view m_text;
    char m_number[longestNumber];
};

// Appends text to a buffer of at most `bound` characters and a terminator, never
// more than hostTextBytes bytes in all. What does not fit is cut, by byte. The
// buffer is terminated from the start; a null buffer takes nothing.
class CBoundedText {
public:
    CBoundedText(char* buffer, std::size_t bound) noexcept;

    CBoundedText& append(const CTextPiece& piece) noexcept;
    std::size_t size() const noexcept { return m_size; }

private:
    char* m_buffer;
    std::size_t m_capacity;
    std::size_t m_size = 0;
};

// Replaces the buffer's text by the pieces, one after the other. A piece may lie in the
// buffer itself: a host may pass one buffer as a text and as the place for a message.
template <class... Pieces>
void writeText(char* buffer, std::size_t bound, const Pieces&... pieces) noexcept {
    char composed[hostTextBytes];
    CBoundedText text(composed, bound);
    (text.append(CTextPiece(pieces)), ...);
    if (buffer != nullptr) {
        std::memcpy(buffer, composed, text.size() + 1);
    }
}
