// SPDX-License-Identifier: MIT
// CListener: takes frames from the capture library for the host.
#pragma once

#include <atomic>
#include <cstdint>
#include <span>

#include "acquisition/hand_over.h"
#include "capture/capture_library.h"

// frameReady runs on the delivery thread; everything else on the host thread.
// No mutex is taken. While nobody waits, the delivery thread touches neither the
// held buffer nor the event.
//
// The handle of the last taken buffer is kept until the next one replaces it, or
// the listener goes; unlocking does not drop it. At most one buffer is locked.
class CListener final : public DShowLib::GrabberListener {
public:
    CListener() = default;
    CListener(const CListener&) = delete;
    CListener& operator=(const CListener&) = delete;
    ~CListener() override = default;

    // Takes the first frame of a wait: marks it ready, holds and locks its buffer,
    // and signals the event. Any other frame is dropped.
    void frameReady(DShowLib::Grabber& grabber, DShowLib::smart_ptr<DShowLib::MemBuffer> buffer,
                    ULONG frameNumber) override;

    // The event is the channel's; it is stored before the wait is announced.
    void beginWait(HANDLE event) noexcept;
    void endWait() noexcept { m_handOver.endWait(); }
    void clearReady() noexcept { m_handOver.clearReady(); }
    void clearFlags() noexcept { m_handOver.clearBoth(); }

    // Whether a hand-over whose wait has timed out is still in its last steps: the
    // held buffer and the ready flag are then not the host thread's.
    bool isHandingOver() const noexcept { return !m_handOver.hostOwnsBuffer(); }
    // The buffer to copy from: handed over and not copied yet. Null when there is
    // none. Not to be asked during a hand-over.
    const DShowLib::MemBuffer* readyBuffer() const noexcept {
        return m_handOver.isReady() ? m_buffer.get() : nullptr;
    }

    // Unlocks the held buffer, if there is one, whether it is locked or not. Leaves
    // it alone during a hand-over.
    void unlockBuffer();

    // Drops the handle, for the end of the channel. Leaves it alone during a
    // hand-over.
    void releaseBuffer() noexcept;

private:
    void holdBuffer(DShowLib::smart_ptr<DShowLib::MemBuffer>&& buffer);

    CHandOver m_handOver;
    // Owned by turns, as CHandOver says.
    DShowLib::smart_ptr<DShowLib::MemBuffer> m_buffer;
    bool m_bufferLocked = false;
    // Not owned.
    std::atomic<HANDLE> m_event{nullptr};
};
