// SPDX-License-Identifier: MIT
// Frame buffers and their ring. Always reached through smart_ptr.
//
// An implementer supplies the struct `Implementation` of each class, the
// constructor that adopts one, the destructor, and the operations below.
#pragma once

#include <cstdint>

#include "capture/library/export.h"
#include "capture/library/handles.h"

namespace DShowLib {

// One frame in memory.
class CAPTURE_LIBRARY_API MemBuffer {
public:
    struct Implementation;
    explicit MemBuffer(Implementation* adopted) noexcept;
    MemBuffer(const MemBuffer&) = delete;
    MemBuffer& operator=(const MemBuffer&) = delete;
    ~MemBuffer();

    // While locked, the library does not refill the buffer. Unlocking a buffer
    // that is not locked does nothing. Any thread.
    void lock();
    void unlock();

    // The pixels, and how many bytes of them there are. RGB rows are stored
    // bottom row first, Y800 rows top row first; rows are not padded.
    const std::uint8_t* getData() const;
    std::uint32_t getSize() const;

private:
    Implementation* m_implementation;
};

// The buffers of one sink.
class CAPTURE_LIBRARY_API MemBufferCollection {
public:
    struct Implementation;
    explicit MemBufferCollection(Implementation* adopted) noexcept;
    MemBufferCollection(const MemBufferCollection&) = delete;
    MemBufferCollection& operator=(const MemBufferCollection&) = delete;
    ~MemBufferCollection();

    ULONG getBufferCount() const;
    // An index past the end gives an empty handle.
    smart_ptr<MemBuffer> operator[](ULONG index) const;

private:
    Implementation* m_implementation;
};

}  // namespace DShowLib
