// SPDX-License-Identifier: MIT
// A text buffer of exactly the agreed size for the adapter to write into, with
// guard bytes behind it. Portable.
#pragma once

#include <algorithm>
#include <array>
#include <string>

#include "velmora/host_blocks.h"

namespace camhost {

class CGuardedText {
public:
    CGuardedText() { clear(); }

    void clear() {
        m_bytes.fill(guardByte);
        m_bytes[0] = '\0';
    }
    char* data() { return m_bytes.data(); }

    // Terminated inside the buffer, and nothing written behind it.
    bool intact() const {
        return textEnd() != m_bytes.begin() + HOST_TEXT_BYTES &&
               std::all_of(m_bytes.begin() + HOST_TEXT_BYTES, m_bytes.end(),
                           [](char c) { return c == guardByte; });
    }
    std::string text() const { return std::string(m_bytes.begin(), textEnd()); }

private:
    static constexpr std::size_t guardBytes = 128;
    static constexpr char guardByte = '\x5A';
    using Bytes = std::array<char, HOST_TEXT_BYTES + guardBytes>;

    Bytes::const_iterator textEnd() const {
        return std::find(m_bytes.begin(), m_bytes.begin() + HOST_TEXT_BYTES, '\0');
    }

    Bytes m_bytes{};
};

}  // namespace camhost
