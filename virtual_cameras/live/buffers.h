// SPDX-License-Identifier: MIT
// Frame memory, and the ring that a sink fills in turn.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "capture/library/mem_buffer.h"

namespace DShowLib {

// Shared by the buffer's handle and the delivery thread that fills it.
struct MemBuffer::Implementation {
    Implementation(std::uint32_t ringIndex, std::uint32_t bytes);
    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;
    ~Implementation();

    const std::uint32_t index;
    const std::uint32_t size;
    const std::unique_ptr<std::uint8_t[]> memory;  // zeroed at first
    // What was read from the buffer before it was unlocked happens before it is
    // filled again.
    std::atomic<std::int32_t> locks{0};
};

// Never changes once made.
struct MemBufferCollection::Implementation {
    struct Entry {
        smart_ptr<MemBuffer> handle;
        MemBuffer::Implementation* buffer;  // owned by the handle
    };
    std::vector<Entry> buffers;
};

}  // namespace DShowLib

namespace virtual_cameras {

DShowLib::smart_ptr<DShowLib::MemBufferCollection> makeRing(std::uint32_t count,
                                                            std::uint32_t bytes);
// The inside of a ring that a caller handed back; null when it is none of ours.
DShowLib::MemBufferCollection::Implementation* insideOf(
    const DShowLib::MemBufferCollection& collection);

}  // namespace virtual_cameras
