// SPDX-License-Identifier: MIT
// Memory for one frame, made before the first is copied, with guard bytes that
// show a copy that went too far. Portable.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "camhost/pictures/frame_layout.h"

namespace camhost {

class CFrameBuffer {
public:
    explicit CFrameBuffer(const FrameLayout& layout)
        : m_frame(frameBytes(layout)),
          m_copy(copyBytes(layout)),
          m_bytes(m_copy + guardBytes, guardByte) {
        std::fill_n(m_bytes.begin(), m_copy, std::uint8_t{0});
    }

    void* data() { return m_bytes.data(); }
    std::span<const std::uint8_t> frame() const { return std::span(m_bytes).first(m_frame); }
    bool empty() const { return m_frame == 0; }
    bool intact() const {
        return std::all_of(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_copy), m_bytes.end(),
                           [](std::uint8_t byte) { return byte == guardByte; });
    }

private:
    static constexpr std::size_t guardBytes = 4096;
    static constexpr std::uint8_t guardByte = 0xA5;

    std::size_t m_frame;
    std::size_t m_copy;
    std::vector<std::uint8_t> m_bytes;
};

}  // namespace camhost
