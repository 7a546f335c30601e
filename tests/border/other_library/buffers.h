// SPDX-License-Identifier: MIT
// Frame buffers and their ring. For the other capture library's own sources.
#pragma once

#include <array>
#include <atomic>
#include <vector>

#include "capture/library/frame_sink.h"

namespace DShowLib {

struct MemBuffer::Implementation {
    std::vector<std::uint8_t> pixels;
    std::atomic<bool> locked{false};
};

}  // namespace DShowLib

namespace other_library {

struct Ring {
    explicit Ring(std::uint32_t size);

    // A buffer that nobody has locked, filled with the frame; null without one.
    DShowLib::smart_ptr<DShowLib::MemBuffer> fill(std::uint32_t frame);

    std::vector<DShowLib::smart_ptr<DShowLib::MemBuffer>> buffers;
    std::vector<DShowLib::MemBuffer::Implementation*> insides;
};

}  // namespace other_library

namespace DShowLib {

struct MemBufferCollection::Implementation {
    explicit Implementation(std::uint32_t size) : ring(size) {}
    other_library::Ring ring;
};

struct GrabberSinkType::Implementation {
    // The ring is owned by the collection.
    smart_ptr<MemBufferCollection> collection;
    other_library::Ring* ring;
};

}  // namespace DShowLib
