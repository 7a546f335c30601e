// SPDX-License-Identifier: MIT
// The listener alone: which frame it takes, and what it locks.
#include "acquisition/listener.h"

#include <condition_variable>
#include <mutex>
#include <thread>

#include "tests/support/channel_fixture.h"
#include "virtual_cameras/live/buffers.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A listener that this test calls in the place of the library, with the buffers
// of a real sink.
class Listener : public CWithGreyCamera<CChannelTest> {
protected:
    void SetUp() override {
        CWithGreyCamera::SetUp();
        startLibrary();
        m_grabber = std::make_unique<DShowLib::Grabber>();
        ASSERT_TRUE(m_grabber->openDev(device()));
        DShowLib::FrameHandlerSink::tCreateData data;
        data.bufferCount = 5;
        m_sink = DShowLib::FrameHandlerSink::create(data);
        m_sink->setSnapMode(false);
        ASSERT_TRUE(m_grabber->setSinkType(DShowLib::smart_ptr<DShowLib::GrabberSinkType>(m_sink)));
        ASSERT_TRUE(m_grabber->startLive(false));
        m_buffers = m_sink->getMemBufferCollection();
        m_event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        recordAll();
    }
    void TearDown() override {
        m_grabber->stopLive();
        m_buffers = {};
        m_sink = {};
        m_grabber.reset();
        CloseHandle(m_event);
        CWithGreyCamera::TearDown();
    }

    void deliver(CListener& listener, ULONG index) {
        listener.frameReady(*m_grabber, (*m_buffers)[index], index + 1);
    }
    static std::vector<std::string> locks() {
        return library_log::lines({"MemBuffer::lock", "MemBuffer::unlock"});
    }
    static std::int32_t lockCount(std::uint32_t buffer) {
        return virtualCamerasBufferLocks("1A2B", buffer);
    }
    bool isSignalled() const { return WaitForSingleObject(m_event, 0) == WAIT_OBJECT_0; }

    std::unique_ptr<DShowLib::Grabber> m_grabber;
    DShowLib::smart_ptr<DShowLib::FrameHandlerSink> m_sink;
    DShowLib::smart_ptr<DShowLib::MemBufferCollection> m_buffers;
    HANDLE m_event = nullptr;
};

TEST_F(Listener, StartsWithNoFrameAndNoWait) {
    CListener listener;
    EXPECT_EQ(listener.readyBuffer(), nullptr);
    EXPECT_FALSE(listener.isHandingOver());
    listener.unlockBuffer();
    EXPECT_THAT(locks(), IsEmpty());
}

TEST_F(Listener, DropsAFrameWhileNobodyWaits) {
    CListener listener;
    deliver(listener, 0);
    EXPECT_THAT(win32Calls({}), ElementsAre("OutputDebugStringW(FrameReady:\n)"));
    EXPECT_THAT(locks(), IsEmpty());
    EXPECT_EQ(listener.readyBuffer(), nullptr);
}

TEST_F(Listener, TakesLocksAndSignalsTheFirstFrameOfAWait) {
    CListener listener;
    listener.beginWait(m_event);
    deliver(listener, 2);
    EXPECT_THAT(win32Calls({}), ElementsAre("OutputDebugStringW(FrameReady:\n)",
                                            "OutputDebugStringW(FrameReady: ok\n)",
                                            ::testing::StartsWith("SetEvent(event ")));
    EXPECT_THAT(locks(), ElementsAre("MemBuffer::lock(2)"));
    EXPECT_EQ(lockCount(2), 1);
    EXPECT_TRUE(isSignalled());
    EXPECT_EQ(listener.readyBuffer(), (*m_buffers)[2].get());
    EXPECT_FALSE(listener.isHandingOver());
}

TEST_F(Listener, DropsEveryFurtherFrameOfAWait) {
    CListener listener;
    listener.beginWait(m_event);
    deliver(listener, 0);
    deliver(listener, 1);
    deliver(listener, 2);
    EXPECT_THAT(locks(), ElementsAre("MemBuffer::lock(0)"));
    EXPECT_EQ(win32::callsOf("SetEvent").size(), 1U);
    EXPECT_THAT(win32::debuggerTexts(),
                ElementsAre("FrameReady:\n", "FrameReady: ok\n", "FrameReady:\n", "FrameReady:\n"));
    EXPECT_EQ(listener.readyBuffer(), (*m_buffers)[0].get());
}

TEST_F(Listener, DropsAFrameAfterTheWaitHasEnded) {
    CListener listener;
    listener.beginWait(m_event);
    listener.endWait();
    deliver(listener, 0);
    EXPECT_THAT(locks(), IsEmpty());
    EXPECT_FALSE(isSignalled());
    EXPECT_EQ(listener.readyBuffer(), nullptr);
}

TEST_F(Listener, KeepsAFrameOverTheEndOfItsWait) {
    CListener listener;
    listener.beginWait(m_event);
    deliver(listener, 0);
    listener.endWait();
    EXPECT_EQ(listener.readyBuffer(), (*m_buffers)[0].get());
}

TEST_F(Listener, KeepsTheHandleOfAFrameThatIsNotReadyAnyMore) {
    CListener listener;
    listener.beginWait(m_event);
    deliver(listener, 0);
    listener.clearReady();
    EXPECT_EQ(listener.readyBuffer(), nullptr);
    listener.unlockBuffer();
    listener.unlockBuffer();
    EXPECT_THAT(locks(),
                ElementsAre("MemBuffer::lock(0)", "MemBuffer::unlock(0)", "MemBuffer::unlock(0)"));
    EXPECT_EQ(lockCount(0), 0);
}

TEST_F(Listener, ClearsBothFlagsAtOnce) {
    CListener listener;
    listener.beginWait(m_event);
    deliver(listener, 0);
    listener.beginWait(m_event);
    listener.clearFlags();
    EXPECT_EQ(listener.readyBuffer(), nullptr);
    deliver(listener, 1);
    EXPECT_EQ(listener.readyBuffer(), nullptr);
}

TEST_F(Listener, UnlocksAFrameThatWasNeverCopiedBeforeItTakesTheNext) {
    CListener listener;
    for (const ULONG index : {0U, 1U, 2U}) {
        listener.beginWait(m_event);
        deliver(listener, index);
    }
    EXPECT_THAT(locks(),
                ElementsAre("MemBuffer::lock(0)", "MemBuffer::unlock(0)", "MemBuffer::lock(1)",
                            "MemBuffer::unlock(1)", "MemBuffer::lock(2)"));
    EXPECT_EQ(lockCount(0), 0);
    EXPECT_EQ(lockCount(1), 0);
    EXPECT_EQ(lockCount(2), 1);
}

TEST_F(Listener, DoesNotUnlockACopiedFrameAgain) {
    CListener listener;
    listener.beginWait(m_event);
    deliver(listener, 0);
    listener.unlockBuffer();
    listener.beginWait(m_event);
    deliver(listener, 1);
    EXPECT_THAT(locks(),
                ElementsAre("MemBuffer::lock(0)", "MemBuffer::unlock(0)", "MemBuffer::lock(1)"));
}

TEST_F(Listener, SignalsTheEventOfTheLatestWait) {
    CListener listener;
    const HANDLE other = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    listener.beginWait(other);
    listener.beginWait(m_event);
    deliver(listener, 0);
    EXPECT_TRUE(isSignalled());
    EXPECT_EQ(WaitForSingleObject(other, 0), WAIT_TIMEOUT);
    CloseHandle(other);
}

TEST_F(Listener, TakesAFrameWithoutABuffer) {
    CListener listener;
    listener.beginWait(m_event);
    listener.frameReady(*m_grabber, {}, 1);
    EXPECT_TRUE(isSignalled());
    EXPECT_EQ(listener.readyBuffer(), nullptr);
    listener.unlockBuffer();
    EXPECT_THAT(locks(), IsEmpty());
}

TEST_F(Listener, GivesTheBufferBackWhenTheLockThrows) {
    CListener listener;
    throwFromCall("MemBuffer::lock", "no");
    listener.beginWait(m_event);
    EXPECT_ANY_THROW(deliver(listener, 0));
    EXPECT_FALSE(listener.isHandingOver());
}

TEST_F(Listener, HasNoLockToGiveBackWhereTheNextBufferCanNotBeLocked) {
    CListener listener;
    listener.beginWait(m_event);
    deliver(listener, 0);
    throwFromCall("MemBuffer::lock", "no");
    recordAll();
    listener.beginWait(m_event);
    EXPECT_ANY_THROW(deliver(listener, 1));
    listener.beginWait(m_event);
    deliver(listener, 2);
    EXPECT_THAT(library_log::invocations({"MemBuffer::unlock"}),
                ElementsAre("MemBuffer::unlock(0)"));
}

TEST_F(Listener, HasNoLockToGiveBackOfABufferThatItLetGo) {
    CListener listener;
    listener.beginWait(m_event);
    deliver(listener, 0);
    listener.releaseBuffer();
    recordAll();
    listener.beginWait(m_event);
    deliver(listener, 1);
    EXPECT_THAT(locks(), ElementsAre("MemBuffer::lock(1)"));
}

TEST_F(Listener, HasNoFrameReadyAndNoLockToGiveBackWhenTheLockThrows) {
    CListener listener;
    throwFromCall("MemBuffer::lock", "no");
    listener.beginWait(m_event);
    EXPECT_ANY_THROW(deliver(listener, 0));
    EXPECT_EQ(listener.readyBuffer(), nullptr);
    EXPECT_FALSE(isSignalled());

    recordAll();
    listener.beginWait(m_event);
    deliver(listener, 1);
    EXPECT_THAT(locks(), ElementsAre("MemBuffer::lock(1)"));
    EXPECT_EQ(listener.readyBuffer(), (*m_buffers)[1].get());
}

TEST_F(Listener, HasNoFrameReadyAndTheOldLockToGiveBackWhenTheUnlockThrows) {
    CListener listener;
    listener.beginWait(m_event);
    deliver(listener, 0);
    ResetEvent(m_event);
    throwFromCall("MemBuffer::unlock", "no");
    listener.beginWait(m_event);
    EXPECT_ANY_THROW(deliver(listener, 1));
    EXPECT_FALSE(listener.isHandingOver());
    EXPECT_EQ(listener.readyBuffer(), nullptr);
    EXPECT_FALSE(isSignalled());
    EXPECT_EQ(lockCount(0), 1);
    EXPECT_EQ(lockCount(1), 0);

    recordAll();
    listener.beginWait(m_event);
    deliver(listener, 2);
    EXPECT_THAT(locks(), ElementsAre("MemBuffer::unlock(0)", "MemBuffer::lock(2)"));
}

TEST_F(Listener, ReleasesItsBufferAtItsEnd) {
    DShowLib::MemBuffer* held = nullptr;
    {
        CListener listener;
        listener.beginWait(m_event);
        deliver(listener, 0);
        held = (*m_buffers)[0].get();
        EXPECT_EQ(listener.readyBuffer(), held);
    }
    m_grabber->stopLive();
    m_buffers = {};
    m_sink = {};
    m_grabber = std::make_unique<DShowLib::Grabber>();
    EXPECT_EQ(alive().buffers, 0U);
}

TEST_F(Listener, LeavesTheOtherNotificationsAlone) {
    CListener listener;
    listener.beginWait(m_event);
    DShowLib::smart_ptr<DShowLib::MemBuffer> buffer = (*m_buffers)[0];
    recordAll();
    listener.overlayCallback(*m_grabber, buffer);
    listener.frameDropped(*m_grabber, buffer, 1);
    listener.deviceLost(*m_grabber);
    EXPECT_THAT(library_log::lines(), IsEmpty());
    EXPECT_THAT(win32Calls({}), IsEmpty());
    EXPECT_EQ(listener.readyBuffer(), nullptr);
}

// Lets whoever drops the last handle of a buffer wait until the test goes on.
class CGate {
public:
    void pass() {
        std::unique_lock lock(m_mutex);
        m_reached = true;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_open; });
    }
    void waitUntilReached() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_reached; });
    }
    void open() {
        const std::lock_guard guard(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_reached = false;
    bool m_open = false;
};

class CGatedBuffer : public DShowLib::MemBuffer {
public:
    explicit CGatedBuffer(CGate& gate) : MemBuffer(new Implementation(9, 32)), m_gate(gate) {}
    ~CGatedBuffer() { m_gate.pass(); }

private:
    CGate& m_gate;
};

TEST_F(Listener, KeepsTheHostFromABufferWhoseHandOverIsNotOver) {
    CGate gate;
    CListener listener;
    listener.beginWait(m_event);
    listener.frameReady(*m_grabber, DShowLib::smart_ptr<CGatedBuffer>(new CGatedBuffer(gate)), 1);
    listener.unlockBuffer();
    listener.clearReady();
    ResetEvent(m_event);
    recordAll();

    // The next frame's hand-over stops where it drops the old handle; the host's
    // wait times out meanwhile.
    listener.beginWait(m_event);
    std::thread delivery([&] { deliver(listener, 1); });
    gate.waitUntilReached();
    listener.endWait();
    EXPECT_TRUE(listener.isHandingOver());
    listener.unlockBuffer();
    listener.releaseBuffer();
    EXPECT_THAT(locks(), IsEmpty());
    EXPECT_FALSE(isSignalled());

    gate.open();
    delivery.join();
    EXPECT_FALSE(listener.isHandingOver());
    EXPECT_EQ(listener.readyBuffer(), (*m_buffers)[1].get());
    EXPECT_EQ(lockCount(1), 1);
    EXPECT_TRUE(isSignalled());
    listener.unlockBuffer();
}

}  // namespace
