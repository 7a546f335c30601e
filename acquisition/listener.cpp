// SPDX-License-Identifier: MIT
#include "acquisition/listener.h"

#include <utility>

#include "platform/windows.h"

namespace {

// Gives the buffer back to the host thread, also when the library throws.
class CHandOverScope {
public:
    explicit CHandOverScope(CHandOver& handOver) noexcept : m_handOver(handOver) {}
    CHandOverScope(const CHandOverScope&) = delete;
    CHandOverScope& operator=(const CHandOverScope&) = delete;
    ~CHandOverScope() { m_handOver.endHandOver(); }

private:
    CHandOver& m_handOver;
};

}  // namespace

void CListener::frameReady(DShowLib::Grabber& /*grabber*/,
                           DShowLib::smart_ptr<DShowLib::MemBuffer> buffer, ULONG /*frameNumber*/) {
    ::OutputDebugStringW(L"FrameReady:\n");
    if (!m_handOver.takeIfWaiting()) {
        return;
    }
    {
        const CHandOverScope scope(m_handOver);
        ::OutputDebugStringW(L"FrameReady: ok\n");
        holdBuffer(std::move(buffer));
    }
    // The buffer is the host's again before it wakes up.
    ::SetEvent(m_event.load(std::memory_order_acquire));
}

void CListener::holdBuffer(DShowLib::smart_ptr<DShowLib::MemBuffer>&& buffer) {
    // A frame that the host waited for and never copied is superseded: left
    // locked, it would be lost to the ring until the next stop.
    if (m_bufferLocked && m_buffer) {
        m_bufferLocked = false;
        m_buffer->unlock();
    }
    m_buffer = std::move(buffer);
    if (m_buffer) {
        m_bufferLocked = true;
        m_buffer->lock();
    }
}

void CListener::beginWait(HANDLE event) noexcept {
    m_event.store(event, std::memory_order_release);
    m_handOver.beginWait();
}

void CListener::unlockBuffer() {
    if (m_handOver.hostOwnsBuffer() && m_buffer) {
        m_bufferLocked = false;
        m_buffer->unlock();
    }
}

void CListener::releaseBuffer() noexcept {
    if (m_handOver.hostOwnsBuffer()) {
        m_buffer = {};
    }
}
