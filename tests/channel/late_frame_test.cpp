// SPDX-License-Identifier: MIT
// A frame whose hand-over has begun when the host's wait times out: it belongs to
// the next wait, and until then the host cannot touch its buffer.
#include <condition_variable>
#include <mutex>
#include <optional>

#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LateFrame : public CChannelTest {
protected:
    void SetUp() override {
        CChannelTest::SetUp();
        loadRig(rigs::grey());
    }
    void TearDown() override {
        open();
        m_delivery.reset();
        CChannelTest::TearDown();
    }

    // Times a wait out with the delivery thread held in the middle of the hand-over.
    WaitOutcome timeOutDuringHandOver(CVideoChannel& channel) {
        win32::runInside("OutputDebugStringW", [this] {
            if (win32::debuggerTexts().back() == "FrameReady: ok\n") {
                hold();
            }
        });
        win32::runInside("WaitForSingleObject", [this] {
            m_delivery.emplace([] { EXPECT_EQ(virtualCamerasDeliverFrame("1A2B"), 1); });
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return m_held; });
        });
        win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
        const WaitOutcome outcome = waitFrame(channel);
        win32::runInside("WaitForSingleObject", {});
        return outcome;
    }
    void open() {
        const std::lock_guard guard(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }
    void finishHandOver() {
        open();
        m_delivery.reset();
    }

private:
    void hold() {
        std::unique_lock lock(m_mutex);
        m_held = true;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_open; });
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_held = false;
    bool m_open = false;
    std::optional<CHostThread> m_delivery;
};

TEST_F(LateFrame, CanNotBeCopiedBeforeTheNextWait) {
    CVideoChannel& channel = makeChannel();
    start(channel);
    EXPECT_EQ(timeOutDuringHandOver(channel).status, 4096U);
    recordAll();
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 4096U);
    EXPECT_TRUE(frame.isUntouched());
    EXPECT_THAT(library_log::lines(), IsEmpty());
}

TEST_F(LateFrame, LeavesAnEarlierBufferToTheDeliveryThread) {
    CVideoChannel& channel = makeChannel();
    start(channel);
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    EXPECT_EQ(timeOutDuringHandOver(channel).status, 4096U);
    library_log::record();
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 4096U);
    EXPECT_EQ(channel.StartAcquisition(nullptr), 1);
    EXPECT_THAT(library_log::operations({"MemBuffer::"}), IsEmpty());
    finishHandOver();
    EXPECT_THAT(library_log::lines({"MemBuffer::"}),
                ElementsAre("MemBuffer::unlock(0)", "MemBuffer::lock(1)"));
    stop(channel);
}

TEST_F(LateFrame, EndsTheNextWaitAtOnce) {
    CVideoChannel& channel = makeChannel();
    start(channel);
    EXPECT_EQ(timeOutDuringHandOver(channel).status, 4096U);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 4096U);
    finishHandOver();
    EXPECT_EQ(waitFrame(channel).status, 0U);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_EQ(frame[4], 0xC1);
    EXPECT_EQ(virtualCamerasBufferLocks("1A2B", 0), 0);
}

TEST_F(LateFrame, EndsANextWaitThatHasBegunAlready) {
    CVideoChannel& channel = makeChannel();
    start(channel);
    EXPECT_EQ(timeOutDuringHandOver(channel).status, 4096U);
    const WaitOutcome outcome = waitWhile(channel, [this] { finishHandOver(); });
    EXPECT_EQ(outcome.status, 0U);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_EQ(frame[4], 0xC1);
}

TEST_F(LateFrame, IsForgottenByAStop) {
    CVideoChannel& channel = makeChannel();
    start(channel);
    EXPECT_EQ(timeOutDuringHandOver(channel).status, 4096U);
    finishHandOver();
    stop(channel);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 4096U);
    start(channel);
    EXPECT_EQ(waitInVain(channel).status, 4096U);
    EXPECT_EQ(virtualCamerasBufferLocks("1A2B", 0), 0);
}

}  // namespace
