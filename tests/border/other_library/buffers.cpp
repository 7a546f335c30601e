// SPDX-License-Identifier: MIT
#include "tests/border/other_library/buffers.h"

#include <cstddef>

#include "tests/border/other_library/items.h"

namespace other_library {

Ring::Ring(std::uint32_t size) {
    for (std::uint32_t i = 0; i < size; ++i) {
        auto* inside = new DShowLib::MemBuffer::Implementation{};
        inside->pixels.resize(frameBytes);
        insides.push_back(inside);
        buffers.emplace_back(new DShowLib::MemBuffer(inside));
    }
}

// The frame number in the first pixel, row + 2 x column in every other.
DShowLib::smart_ptr<DShowLib::MemBuffer> Ring::fill(std::uint32_t frame) {
    for (std::size_t i = 0; i < buffers.size(); ++i) {
        const std::size_t next = (frame + i) % buffers.size();
        if (insides[next]->locked) {
            continue;
        }
        auto& pixels = insides[next]->pixels;
        for (std::uint32_t place = 0; place < frameBytes; ++place) {
            pixels[place] = static_cast<std::uint8_t>(place / 64 + 2 * (place % 64));
        }
        pixels[0] = static_cast<std::uint8_t>(frame);
        return buffers[next];
    }
    return {};
}

}  // namespace other_library

namespace DShowLib {

MemBuffer::MemBuffer(Implementation* adopted) noexcept : m_implementation(adopted) {}
MemBuffer::~MemBuffer() {
    delete m_implementation;
}
void MemBuffer::lock() {
    m_implementation->locked = true;
}
void MemBuffer::unlock() {
    m_implementation->locked = false;
}
const std::uint8_t* MemBuffer::getData() const {
    return m_implementation->pixels.data();
}
std::uint32_t MemBuffer::getSize() const {
    return other_library::frameBytes;
}

MemBufferCollection::MemBufferCollection(Implementation* adopted) noexcept
    : m_implementation(adopted) {}
MemBufferCollection::~MemBufferCollection() {
    delete m_implementation;
}
ULONG MemBufferCollection::getBufferCount() const {
    return static_cast<ULONG>(m_implementation->ring.buffers.size());
}
smart_ptr<MemBuffer> MemBufferCollection::operator[](ULONG index) const {
    const auto& buffers = m_implementation->ring.buffers;
    return index < buffers.size() ? buffers[index] : smart_ptr<MemBuffer>();
}

GrabberSinkType::GrabberSinkType(Implementation* adopted) noexcept : m_implementation(adopted) {}
GrabberSinkType::~GrabberSinkType() {
    delete m_implementation;
}

FrameHandlerSink::FrameHandlerSink(Implementation* adopted) noexcept : GrabberSinkType(adopted) {}
FrameHandlerSink::~FrameHandlerSink() {}

smart_ptr<FrameHandlerSink> FrameHandlerSink::create(const tCreateData& data) {
    auto* collection = new MemBufferCollection::Implementation(data.bufferCount);
    auto* sink = new GrabberSinkType::Implementation{
        smart_ptr<MemBufferCollection>(new MemBufferCollection(collection)), &collection->ring};
    return smart_ptr<FrameHandlerSink>(new FrameHandlerSink(sink));
}
void FrameHandlerSink::setSnapMode(bool /*snap*/) {}
bool FrameHandlerSink::getOutputFrameType(FrameTypeInfo& frameType) const {
    frameType.bufferSize = other_library::frameBytes;
    return true;
}
smart_ptr<MemBufferCollection> FrameHandlerSink::getMemBufferCollection() const {
    return implementation()->collection;
}

}  // namespace DShowLib
