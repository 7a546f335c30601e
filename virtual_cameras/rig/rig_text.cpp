// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/rig_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "virtual_cameras/rig/strict_table.h"

namespace virtual_cameras {

namespace {

// toml++ bounds how deep values lie inside each other, but not the parts of a key, and it
// takes tables apart recursively. "camera.event" has two.
constexpr std::size_t mostParts = 8;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isBeyondAscii(char character) {
    return static_cast<unsigned char>(character) >= 0x80U;
}

// The length of a text, which begins with its quotes, or of a comment. Ends before a letter beyond
// ASCII that follows a backslash, or the blanks behind it: toml++ does what is undefined then.
std::size_t skipped(std::string_view from) {
    if (from.front() == '#') {
        return std::min(from.find('\n'), from.size());
    }
    const char quote = from.front();
    const std::string_view three = from.substr(0, 3);
    const bool spansLines = three == std::string(3, quote);
    const std::string_view end = spansLines ? three : from.substr(0, 1);
    std::size_t at = end.size();
    while (at < from.size() && !from.substr(at).starts_with(end)) {
        if (from[at] == '\n' && !spansLines) {
            return at;
        }
        if (from[at] == '\\' && quote == '"') {
            const std::size_t next =
                spansLines ? from.find_first_not_of(" \t\r\n", at + 1) : at + 1;
            if (next < from.size() && isBeyondAscii(from[next])) {
                return next;
            }
            at = next == at + 1 ? at + 2 : std::min(next, from.size());
        } else {
            ++at;
        }
    }
    at = std::min(at + end.size(), from.size());
    // Up to two of such a text's own quotes may stand before those that end it.
    for (int i = 0; spansLines && i < 2 && at < from.size() && from[at] == quote; ++i) {
        ++at;
    }
    return at;
}

class CRigText {
public:
    explicit CRigText(std::string_view toml) : m_text(toml) {}

    void check() {
        if (m_text.starts_with(byteOrderMark)) {
            m_at = m_lineStart = byteOrderMark.size();
        }
        while (m_at < m_text.size()) {
            const char character = m_text[m_at];
            if (character == '#' || (m_mayBegin && (character == '"' || character == '\''))) {
                skip(skipped(m_text.substr(m_at)));
                m_mayBegin = false;
            } else {
                checkOne(character);
                skip(1);
            }
        }
    }

private:
    void checkOne(char character) {
        if (isBeyondAscii(character)) {
            fail("letters beyond ASCII stand in quotes, and not behind a backslash");
        }
        if (character == '.' && m_isKey && ++m_parts > mostParts) {
            fail("a key has more than " + std::to_string(mostParts) + " parts");
        }
        constexpr std::string_view goesOn = " \t\r[{";
        const bool begins = character == '\n' || character == ',' ||
                            (m_isKey && (character == '=' || character == '.'));
        follow(character);
        m_mayBegin = begins || (m_mayBegin && goesOn.find(character) != goesOn.npos);
    }

    // Into and out of keys, arrays and tables in a line.
    void follow(char character) {
        constexpr std::string_view aroundKeys = "\n,=[]{}";
        if (aroundKeys.find(character) == aroundKeys.npos) {
            return;
        }
        m_parts = 1;
        if (character == '=') {
            m_isKey = false;
        } else if (character == '[' || character == '{') {
            if (!m_isKey && m_mayBegin) {
                m_open += character;
                m_isKey = character == '{';
            }
        } else if (character == ']' || character == '}') {
            if (!m_open.empty()) {
                m_open.pop_back();
            }
        } else if (character == ',' || m_open.empty()) {
            m_isKey = m_open.empty() || m_open.back() == '{';
        }
    }

    void skip(std::size_t count) {
        const std::size_t end = m_at + count;
        for (; m_at < end; ++m_at) {
            if (m_text[m_at] == '\n') {
                ++m_line;
                m_lineStart = m_at + 1;
            }
        }
    }

    [[noreturn]] void fail(std::string message) const {
        throw RigFailure{
            {m_line, static_cast<std::uint32_t>(m_at - m_lineStart + 1), std::move(message)}};
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_lineStart = 0;
    std::uint32_t m_line = 1;
    std::size_t m_parts = 1;
    bool m_isKey = true;
    std::string m_open;  // the brackets of arrays, and of tables in a line, around this place
    // Whether a text or a bracket's content begins here: within a value of another kind toml++
    // reads on as far as that goes, and letters beyond ASCII are then undefined behaviour.
    bool m_mayBegin = true;
};

}  // namespace

void requireReadable(std::string_view toml) {
    CRigText(toml).check();
}

}  // namespace virtual_cameras
