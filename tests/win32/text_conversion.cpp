// SPDX-License-Identifier: MIT
// UTF-8 to wide text and back, with the system's way of sizes and bad sequences.
#include <cstdio>
#include <cwchar>

#include "tests/win32/call_log.h"

namespace {

constexpr char32_t replacement = 0xFFFD;

struct Decoded {
    char32_t codePoint;
    std::size_t bytes;  // used up, at least 1
    bool valid;
};

bool isSurrogate(char32_t codePoint) {
    return codePoint >= 0xD800 && codePoint <= 0xDFFF;
}

// The lowest and highest second byte that a lead byte allows, and how many bytes
// follow it. Zero following bytes: not a lead byte.
struct Lead {
    std::size_t following;
    unsigned lowest;
    unsigned highest;
};

Lead leadOf(unsigned byte) {
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {1, 0x80, 0xBF};
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        return {2, byte == 0xE0 ? 0xA0u : 0x80u, byte == 0xED ? 0x9Fu : 0xBFu};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        return {3, byte == 0xF0 ? 0x90u : 0x80u, byte == 0xF4 ? 0x8Fu : 0xBFu};
    }
    return {0, 0, 0};
}

// One code point; of a broken sequence, the longest part that could have begun
// one is used up and read as one replacement character.
Decoded decode(std::string_view text) {
    const unsigned first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        return {first, 1, true};
    }
    Lead lead = leadOf(first);
    if (lead.following == 0) {
        return {replacement, 1, false};
    }
    char32_t codePoint = first & (0x3Fu >> lead.following);
    for (std::size_t i = 1; i <= lead.following; ++i) {
        const unsigned next = i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
        if (next < lead.lowest || next > lead.highest) {
            return {replacement, i, false};
        }
        codePoint = codePoint << 6 | (next & 0x3F);
        lead.lowest = 0x80;
        lead.highest = 0xBF;
    }
    return {codePoint, lead.following + 1, true};
}

std::size_t encode(char32_t codePoint, char (&bytes)[4]) {
    if (codePoint < 0x80) {
        bytes[0] = static_cast<char>(codePoint);
        return 1;
    }
    std::size_t following = codePoint < 0x800 ? 1 : codePoint < 0x10000 ? 2 : 3;
    const std::size_t count = following + 1;
    const unsigned marks[] = {0, 0xC0, 0xE0, 0xF0};
    bytes[0] = static_cast<char>(marks[following] | codePoint >> (6 * following));
    for (std::size_t i = 1; i < count; ++i) {
        --following;
        bytes[i] = static_cast<char>(0x80 | (codePoint >> (6 * following) & 0x3F));
    }
    return count;
}

// Collects output of one conversion, or only counts it where no room was given.
template <class Character>
class Output {
public:
    Output(Character* buffer, int size)
        : m_buffer(buffer), m_room(static_cast<std::size_t>(size)) {}

    void add(const Character* characters, std::size_t count) {
        m_fits = m_fits && (m_room == 0 || m_count + count <= m_room);
        for (std::size_t i = 0; m_fits && m_room != 0 && i < count; ++i) {
            m_buffer[m_count + i] = characters[i];
        }
        m_count += count;
    }

    // What the conversion function returns.
    int result() const {
        if (!m_fits) {
            SetLastError(ERROR_INSUFFICIENT_BUFFER);
            return 0;
        }
        return static_cast<int>(m_count);
    }

private:
    Character* m_buffer;
    std::size_t m_room;
    std::size_t m_count = 0;
    bool m_fits = true;
};

bool badArguments(UINT codePage, const void* source, int sourceSize, const void* target,
                  int targetSize) {
    return codePage != CP_UTF8 || source == nullptr || sourceSize == 0 || sourceSize < -1 ||
           targetSize < 0 || (targetSize > 0 && target == nullptr) || source == target;
}

int fail(DWORD error) {
    SetLastError(error);
    return 0;
}

}  // namespace

int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int size, LPWSTR wide,
                        int wideSize) {
    if (const auto result = win32::detail::injected("MultiByteToWideChar")) {
        return static_cast<int>(*result);
    }
    if (badArguments(codePage, text, size, wide, wideSize)) {
        return fail(ERROR_INVALID_PARAMETER);
    }
    // UTF-8 has no other flag.
    if ((flags & ~MB_ERR_INVALID_CHARS) != 0) {
        return fail(ERROR_INVALID_FLAGS);
    }
    std::string_view rest(
        text, size == -1 ? std::string_view(text).size() + 1 : static_cast<std::size_t>(size));
    Output<wchar_t> output(wide, wideSize);
    while (!rest.empty()) {
        const Decoded decoded = decode(rest);
        if (!decoded.valid && (flags & MB_ERR_INVALID_CHARS) != 0) {
            return fail(ERROR_NO_UNICODE_TRANSLATION);
        }
        const auto character = static_cast<wchar_t>(decoded.codePoint);
        output.add(&character, 1);
        rest.remove_prefix(decoded.bytes);
    }
    return output.result();
}

int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR wide, int wideSize, LPSTR text,
                        int size, LPCSTR defaultCharacter, LPBOOL usedDefault) {
    if (const auto result = win32::detail::injected("WideCharToMultiByte")) {
        return static_cast<int>(*result);
    }
    // With UTF-8 these two must be null.
    if (badArguments(codePage, wide, wideSize, text, size) || defaultCharacter != nullptr ||
        usedDefault != nullptr) {
        return fail(ERROR_INVALID_PARAMETER);
    }
    if ((flags & ~WC_ERR_INVALID_CHARS) != 0) {
        return fail(ERROR_INVALID_FLAGS);
    }
    const std::wstring_view source(
        wide, wideSize == -1 ? std::wcslen(wide) + 1 : static_cast<std::size_t>(wideSize));
    Output<char> output(text, size);
    for (const wchar_t character : source) {
        auto codePoint = static_cast<char32_t>(character);
        if (codePoint > 0x10FFFF || isSurrogate(codePoint)) {
            if ((flags & WC_ERR_INVALID_CHARS) != 0) {
                return fail(ERROR_NO_UNICODE_TRANSLATION);
            }
            codePoint = replacement;
        }
        char bytes[4];
        output.add(bytes, encode(codePoint, bytes));
    }
    return output.result();
}

namespace win32::detail {

std::size_t utf8(const wchar_t* text, std::span<char> buffer) {
    std::size_t count = 0;
    for (; *text != L'\0'; ++text) {
        char bytes[4];
        const std::size_t added = encode(static_cast<char32_t>(*text), bytes);
        for (std::size_t i = 0; i < added && count + i < buffer.size(); ++i) {
            buffer[count + i] = bytes[i];
        }
        count += added;
    }
    return count;
}

std::string utf8(const wchar_t* text) {
    if (text == nullptr) {
        return "null";
    }
    std::string result(utf8(text, {}), '\0');
    utf8(text, result);
    return result;
}

std::string pointerText(const void* pointer) {
    if (pointer == nullptr) {
        return "null";
    }
    char text[32];
    const int size = std::snprintf(text, sizeof(text), "%p", pointer);
    return {text, static_cast<std::size_t>(size)};
}

}  // namespace win32::detail
