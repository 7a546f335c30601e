// SPDX-License-Identifier: MIT
#include "acquisition/listener.h"

#include <utility>

#include "platform/windows.h"

namespace {

// Gives the buffer back to the host thread. A hand-over that the library cut short by
// throwing takes the ready flag along.
class CHandOverScope {
public:
    explicit CHandOverScope(CHandOver& handOver) noexcept : m_handOver(handOver) {}
    CHandOverScope(const CHandOverScope&) = delete;
    CHandOverScope& operator=(const CHandOverScope&) = delete;
    ~CHandOverScope() {
        if (m_complete) {
            m_handOver.endHandOver();
        } else {
            m_handOver.abandonHandOver();
        }
    }

    void complete() noexcept { m_complete = true; }

private:
    CHandOver& m_handOver;
    bool m_complete = false;
};

}  // namespace

void CListener::frameReady(DShowLib::Grabber& /*grabber*/,
                           DShowLib::smart_ptr<DShowLib::MemBuffer> buffer, ULONG /*frameNumber*/) {
    ::OutputDebugStringW(L"FrameReady:\n");
    if (!m_handOver.takeIfWaiting()) {
        return;
    }
    {
        CHandOverScope scope(m_handOver);
        ::OutputDebugStringW(L"FrameReady: ok\n");
        holdBuffer(std::move(buffer));
        scope.complete();
    }
    // The buffer is the host's again before it wakes up.
    ::SetEvent(m_event.load(std::memory_order_acquire));
}

void CListener::holdBuffer(DShowLib::smart_ptr<DShowLib::MemBuffer>&& buffer) {
    // A frame that the host waited for and never copied is superseded: left
    // locked, it would be lost to the ring until the next stop.
    if (m_bufferLocked && m_buffer) {
        m_buffer->unlock();
        m_bufferLocked = false;
    }
    m_buffer = std::move(buffer);
    if (m_buffer) {
        m_buffer->lock();
        m_bufferLocked = true;
    }
}

void CListener::beginWait(HANDLE event) noexcept {
    m_event.store(event, std::memory_order_release);
    m_handOver.beginWait();
}

void CListener::unlockBuffer() {
    if (m_handOver.hostOwnsBuffer() && m_buffer) {
        m_buffer->unlock();
        m_bufferLocked = false;
    }
}

void CListener::releaseBuffer() noexcept {
    if (m_handOver.hostOwnsBuffer()) {
        m_buffer = {};
    }
}
