// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/buffers.h"

#include <map>

#include "virtual_cameras/calls/library_call.h"
#include "virtual_cameras/calls/library_state.h"
#include "virtual_cameras/calls/monitor.h"

namespace virtual_cameras {

namespace {

// The declarations offer no way from a collection to its inside.
struct Collections {
    CMonitor monitor;
    std::map<const DShowLib::MemBufferCollection*, DShowLib::MemBufferCollection::Implementation*>
        insides GUARDED_BY(monitor);
};

Collections& collections() {
    static Collections& instance = *new Collections;
    return instance;
}

}  // namespace

DShowLib::smart_ptr<DShowLib::MemBufferCollection> makeRing(std::uint32_t count,
                                                            std::uint32_t bytes) {
    auto inside = std::make_unique<DShowLib::MemBufferCollection::Implementation>();
    for (std::uint32_t i = 0; i < count; ++i) {
        auto* buffer = new DShowLib::MemBuffer::Implementation(i, bytes);
        inside->buffers.push_back(
            {DShowLib::smart_ptr<DShowLib::MemBuffer>(new DShowLib::MemBuffer(buffer)), buffer});
    }
    auto* collection = new DShowLib::MemBufferCollection(inside.get());
    Collections& all = collections();
    const CMonitorGuard guard(all.monitor);
    all.insides.emplace(collection, inside.release());
    return DShowLib::smart_ptr<DShowLib::MemBufferCollection>(collection);
}

DShowLib::MemBufferCollection::Implementation* insideOf(
    const DShowLib::MemBufferCollection& collection) {
    Collections& all = collections();
    const CMonitorGuard guard(all.monitor);
    const auto found = all.insides.find(&collection);
    return found != all.insides.end() ? found->second : nullptr;
}

}  // namespace virtual_cameras

namespace DShowLib {

using virtual_cameras::alive;
using virtual_cameras::CLibraryCall;
using virtual_cameras::CMonitorGuard;
using virtual_cameras::NoCamera;

MemBuffer::Implementation::Implementation(std::uint32_t ringIndex, std::uint32_t bytes)
    : index(ringIndex), size(bytes), memory(std::make_unique<std::uint8_t[]>(bytes)) {
    alive().buffers.fetch_add(1, std::memory_order_relaxed);
}

MemBuffer::Implementation::~Implementation() {
    alive().buffers.fetch_sub(1, std::memory_order_relaxed);
}

MemBuffer::MemBuffer(Implementation* adopted) noexcept : m_implementation(adopted) {}

MemBuffer::~MemBuffer() {
    delete m_implementation;
}

void MemBuffer::lock() {
    CLibraryCall call("MemBuffer::lock", NoCamera(), m_implementation->index);
    if (!call.fails()) {
        m_implementation->locks.fetch_add(1, std::memory_order_acq_rel);
    }
    call.returns();
}

void MemBuffer::unlock() {
    CLibraryCall call("MemBuffer::unlock", NoCamera(), m_implementation->index);
    if (!call.fails()) {
        std::int32_t locks = m_implementation->locks.load(std::memory_order_relaxed);
        while (locks > 0 && !m_implementation->locks.compare_exchange_weak(
                                locks, locks - 1, std::memory_order_acq_rel)) {
        }
    }
    call.returns();
}

const std::uint8_t* MemBuffer::getData() const {
    CLibraryCall call("MemBuffer::getData", NoCamera(), m_implementation->index);
    const std::uint8_t* data = call.fails() ? nullptr : m_implementation->memory.get();
    return call.returnsAs(data != nullptr ? "data" : "null", data);
}

std::uint32_t MemBuffer::getSize() const {
    CLibraryCall call("MemBuffer::getSize", NoCamera(), m_implementation->index);
    return call.returns(call.fails() ? 0U : m_implementation->size);
}

MemBufferCollection::MemBufferCollection(Implementation* adopted) noexcept
    : m_implementation(adopted) {}

MemBufferCollection::~MemBufferCollection() {
    virtual_cameras::Collections& all = virtual_cameras::collections();
    {
        const CMonitorGuard guard(all.monitor);
        all.insides.erase(this);
    }
    delete m_implementation;
}

ULONG MemBufferCollection::getBufferCount() const {
    CLibraryCall call("MemBufferCollection::getBufferCount", NoCamera());
    const auto count = static_cast<std::uint32_t>(m_implementation->buffers.size());
    return call.returns(call.fails() ? 0U : count);
}

smart_ptr<MemBuffer> MemBufferCollection::operator[](ULONG index) const {
    const auto place = static_cast<std::uint32_t>(index);
    CLibraryCall call("MemBufferCollection::operator[]", NoCamera(), place);
    if (call.fails() || place >= m_implementation->buffers.size()) {
        return call.returnsAs("null", smart_ptr<MemBuffer>());
    }
    return call.returnsAs("buffer", m_implementation->buffers[place].handle);
}

}  // namespace DShowLib
