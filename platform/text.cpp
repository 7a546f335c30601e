// SPDX-License-Identifier: MIT
#include "platform/text.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "platform/windows.h"

std::string toNarrow(std::wstring_view wide) {
    const int wideSize = static_cast<int>(wide.size());
    const int size =
        ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideSize, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(std::max(size, 0)), '\0');
    if (!narrow.empty()) {
        ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideSize, narrow.data(), size, nullptr,
                              nullptr);
    }
    return narrow;
}

std::wstring toWide(std::string_view narrow) {
    const int bytes = static_cast<int>(narrow.size());
    const int wideSize = ::MultiByteToWideChar(CP_UTF8, 0, narrow.data(), bytes, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(std::max(wideSize, 0)), L'\0');
    if (!wide.empty()) {
        ::MultiByteToWideChar(CP_UTF8, 0, narrow.data(), bytes, wide.data(), wideSize);
    }
    return wide;
}

std::string_view textOrEmpty(const char* text) noexcept {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

std::string hexadecimalText(std::int64_t number) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    auto rest = static_cast<std::uint64_t>(number);
    do {
        text.insert(text.begin(), digits[rest % 16]);
        rest /= 16;
    } while (rest != 0);
    return text;
}

CTextPiece::CTextPiece(std::int32_t number) noexcept {
    const char* end = std::to_chars(m_number, m_number + longestNumber, number).ptr;
    m_text = std::string_view(m_number, static_cast<std::size_t>(end - m_number));
}

CTextPiece::CTextPiece(double number) noexcept {
    const char* end =
        std::to_chars(m_number, m_number + longestNumber, number, std::chars_format::fixed, 6).ptr;
    m_text = std::string_view(m_number, static_cast<std::size_t>(end - m_number));
}

CBoundedText::CBoundedText(char* buffer, std::size_t bound) noexcept
    : m_buffer(buffer), m_capacity(std::min(bound, hostTextBytes - 1)) {
    if (m_buffer != nullptr) {
        m_buffer[0] = '\0';
    }
}

CBoundedText& CBoundedText::append(const CTextPiece& piece) noexcept {
    if (m_buffer != nullptr) {
        const std::size_t size = std::min(piece.text().size(), m_capacity - m_size);
        if (size != 0) {
            std::memcpy(m_buffer + m_size, piece.text().data(), size);
        }
        m_size += size;
        m_buffer[m_size] = '\0';
    }
    return *this;
}
