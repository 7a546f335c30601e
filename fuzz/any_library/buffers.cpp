// SPDX-License-Identifier: MIT
// Buffers, their ring, and the sink.
#include <algorithm>

#include "fuzz/any_library/live.h"
#include "fuzz/input/fuzz_input.h"

namespace any_library {

std::size_t frameSize(SinkKind kind) {
    const auto product = static_cast<std::int32_t>(static_cast<std::uint32_t>(world().width) *
                                                   static_cast<std::uint32_t>(world().height));
    return static_cast<std::size_t>(std::max(product, 0)) * static_cast<std::size_t>(kind);
}

DShowLib::smart_ptr<DShowLib::MemBuffer> makeBuffer(SinkKind kind) {
    const std::size_t whole = std::min(frameSize(kind), mostBytes);
    auto inside = std::make_unique<DShowLib::MemBuffer::Implementation>();
    switch (world().frames % 8) {
        case 1:
            inside->size = static_cast<std::uint32_t>(whole - std::min<std::size_t>(whole, 1));
            break;
        case 2:
            inside->size = static_cast<std::uint32_t>(whole + 7);
            break;
        case 3:
            inside->size = 0;
            break;
        case 4:
            inside->size = static_cast<std::uint32_t>(mostBytes);
            break;
        case 5:
            inside->size = static_cast<std::uint32_t>(whole / 2);
            break;
        default:
            inside->size = static_cast<std::uint32_t>(whole);
            break;
    }
    if (world().frames % 8 != 6) {
        inside->data = std::make_unique<std::uint8_t[]>(inside->size);
    }
    return DShowLib::smart_ptr<DShowLib::MemBuffer>(new DShowLib::MemBuffer(inside.release()));
}

DShowLib::smart_ptr<DShowLib::MemBuffer> CRing::at(std::uint32_t index) {
    if (index >= size()) {
        return {};
    }
    if (!m_buffers[index]) {
        m_buffers[index] = makeBuffer(m_kind);
    }
    return m_buffers[index];
}

namespace {

SinkKind kindOf(const DShowLib::FrameHandlerSink::tCreateData& data) {
    constexpr std::uint32_t rgb32 = 0xE436EB7E;
    constexpr std::uint32_t rgb24 = 0xE436EB7D;
    const std::uint32_t first = data.frameTypes.empty() ? 0 : data.frameTypes[0].subtype.Data1;
    if (first == rgb32) {
        return SinkKind::raw;
    }
    return first == rgb24 ? SinkKind::color : SinkKind::grey;
}

bool isNothing(Manner manner) {
    return manner == Manner::refused || manner == Manner::null || manner == Manner::empty;
}

}  // namespace

}  // namespace any_library

namespace DShowLib {

using any_library::beginCall;
using any_library::Manner;
using any_library::world;

MemBuffer::MemBuffer(Implementation* adopted) noexcept : m_implementation(adopted) {
    ++world().alive.buffers;
}
MemBuffer::~MemBuffer() {
    world().alive.locked -= m_implementation->locked ? 1 : 0;
    --world().alive.buffers;
    delete m_implementation;
}
void MemBuffer::lock() {
    beginCall();
    if (!m_implementation->locked) {
        m_implementation->locked = true;
        ++world().alive.locked;
    }
    // One for each camera.
    const auto most = static_cast<std::int32_t>(world().grabbers.size());
    require(world().hasFailedUnlock || world().alive.locked <= most,
            "a camera has one buffer locked at most");
}
void MemBuffer::unlock() {
    try {
        beginCall();
    } catch (...) {
        world().hasFailedUnlock = true;
        throw;
    }
    if (m_implementation->locked) {
        m_implementation->locked = false;
        --world().alive.locked;
    }
}
const std::uint8_t* MemBuffer::getData() const {
    return any_library::isNothing(beginCall()) ? nullptr : m_implementation->data.get();
}
std::uint32_t MemBuffer::getSize() const {
    return any_library::isNothing(beginCall()) ? 0 : m_implementation->size;
}

MemBufferCollection::MemBufferCollection(Implementation* adopted) noexcept
    : m_implementation(adopted) {
    ++world().alive.collections;
}
MemBufferCollection::~MemBufferCollection() {
    --world().alive.collections;
    delete m_implementation;
}
ULONG MemBufferCollection::getBufferCount() const {
    switch (beginCall()) {
        case Manner::refused:
        case Manner::empty:
        case Manner::null:
            return 0;
        case Manner::longer:
            return 0xFFFFFFFF;
        case Manner::strange:
            return m_implementation->ring->size() + 3;
        default:
            return m_implementation->ring->size();
    }
}
smart_ptr<MemBuffer> MemBufferCollection::operator[](ULONG index) const {
    return any_library::isNothing(beginCall()) ? smart_ptr<MemBuffer>()
                                               : m_implementation->ring->at(index);
}

GrabberSinkType::GrabberSinkType(Implementation* adopted) noexcept : m_implementation(adopted) {
    ++world().alive.sinks;
}
GrabberSinkType::~GrabberSinkType() {
    --world().alive.sinks;
    delete m_implementation;
}

FrameHandlerSink::FrameHandlerSink(Implementation* adopted) noexcept : GrabberSinkType(adopted) {}
FrameHandlerSink::~FrameHandlerSink() = default;

smart_ptr<FrameHandlerSink> FrameHandlerSink::create(const tCreateData& data) {
    if (any_library::isNothing(beginCall())) {
        return {};
    }
    auto inside = std::make_unique<GrabberSinkType::Implementation>();
    inside->ring = std::make_shared<any_library::CRing>(any_library::kindOf(data),
                                                        std::max(data.bufferCount, 1U));
    return smart_ptr<FrameHandlerSink>(new FrameHandlerSink(inside.release()));
}
void FrameHandlerSink::setSnapMode(bool /*snap*/) {
    beginCall();
}
bool FrameHandlerSink::getOutputFrameType(FrameTypeInfo& frameType) const {
    const Manner manner = beginCall();
    if (manner == Manner::null) {
        // Writes, and fails all the same.
        frameType.bufferSize = 0xFFFFFFFF;
        return false;
    }
    if (any_library::isNothing(manner)) {
        return false;
    }
    frameType.bufferSize =
        world().tellsOtherSizes
            ? 0xFFFFFFFF
            : static_cast<std::uint32_t>(any_library::frameSize(implementation()->ring->kind()));
    return true;
}
smart_ptr<MemBufferCollection> FrameHandlerSink::getMemBufferCollection() const {
    if (any_library::isNothing(beginCall())) {
        return {};
    }
    auto inside = std::make_unique<MemBufferCollection::Implementation>();
    inside->ring = implementation()->ring;
    return smart_ptr<MemBufferCollection>(new MemBufferCollection(inside.release()));
}

}  // namespace DShowLib
