// SPDX-License-Identifier: MIT
// The insides of grabbers, sinks and buffers.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "fuzz/any_library/world.h"

namespace any_library {

// What the sink was made for; the value is the bytes of a pixel.
enum class SinkKind : std::uint8_t { grey = 1, color = 3, raw = 4 };

// Made one by one, when they are first asked for.
class CRing {
public:
    CRing(SinkKind kind, std::uint32_t size) : m_kind(kind), m_buffers(size) {}

    SinkKind kind() const noexcept { return m_kind; }
    std::uint32_t size() const noexcept { return static_cast<std::uint32_t>(m_buffers.size()); }
    // Empty past the end.
    DShowLib::smart_ptr<DShowLib::MemBuffer> at(std::uint32_t index);
    DShowLib::smart_ptr<DShowLib::MemBuffer> next() { return at(m_next++ % size()); }

private:
    SinkKind m_kind;
    std::uint32_t m_next = 0;
    std::vector<DShowLib::smart_ptr<DShowLib::MemBuffer>> m_buffers;
};

// Bytes of a frame of the world's size; a product that is not positive has none.
std::size_t frameSize(SinkKind kind);
DShowLib::smart_ptr<DShowLib::MemBuffer> makeBuffer(SinkKind kind);

// The most that any buffer holds.
inline constexpr std::size_t mostBytes = 4096;

// One frame, or no frame at all, to the grabber's listener.
void deliverTo(OpenGrabber open, std::uint8_t detail);

}  // namespace any_library

namespace DShowLib {

struct MemBuffer::Implementation {
    std::unique_ptr<std::uint8_t[]> data;  // may be null with a size
    std::uint32_t size = 0;
    bool locked = false;
};

struct MemBufferCollection::Implementation {
    std::shared_ptr<any_library::CRing> ring;
};

struct GrabberSinkType::Implementation {
    std::shared_ptr<any_library::CRing> ring;
};

struct Grabber::Implementation {
    GrabberListener* listener = nullptr;
    smart_ptr<GrabberSinkType> sink;
    std::uint8_t device = 0;  // texts
    std::uint8_t format = 0;
    std::uint8_t norm = 0;
    std::uint8_t channel = 0;
    bool isOpen = false;
    bool isLive = false;
    double rate = 30.0;
    ULONG frames = 0;
};

}  // namespace DShowLib
