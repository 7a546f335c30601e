// SPDX-License-Identifier: MIT
// A frame whose hand-over has begun when the host's wait times out: it belongs to
// the next wait, and until then the host cannot touch its buffer.
#include <condition_variable>
#include <mutex>
#include <optional>

#include "tests/support/one_channel.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LateFrame : public CGreyCamera {
protected:
    void TearDown() override {
        finishHandOver();
        CGreyCamera::TearDown();
    }

    // Times a wait out with the delivery thread held in the middle of the hand-over.
    Answer timeOutDuringHandOver() {
        win32::runInside("OutputDebugStringW", [this] {
            if (win32::debuggerTexts().back() == "FrameReady: ok\n") {
                hold();
            }
        });
        win32::runInside("WaitForSingleObject", [this] {
            m_delivery.emplace([this] { deliver(); });
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return m_held; });
        });
        const Answer answer = waitInVain();
        win32::runInside("WaitForSingleObject", {});
        return answer;
    }
    void finishHandOver() {
        {
            const std::lock_guard guard(m_mutex);
            m_open = true;
            m_changed.notify_all();
        }
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
    openLive();
    EXPECT_EQ(timeOutDuringHandOver(), noFrame());
    recordAll();
    expectNoFrame();
    EXPECT_THAT(library_log::lines(), IsEmpty());
}

TEST_F(LateFrame, LeavesAnEarlierBufferToTheDeliveryThread) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    EXPECT_EQ(timeOutDuringHandOver(), noFrame());
    library_log::record();
    expectNoFrame();
    EXPECT_EQ(channel().StartAcquisition(nullptr), 1);
    EXPECT_THAT(library_log::operations({"MemBuffer::"}), IsEmpty());
    finishHandOver();
    EXPECT_THAT(library_log::lines({"MemBuffer::"}),
                ElementsAre("MemBuffer::unlock(0)", "MemBuffer::lock(1)"));
    EXPECT_EQ(stop(), accepted());
}

TEST_F(LateFrame, EndsTheNextWaitAtOnce) {
    openLive();
    EXPECT_EQ(timeOutDuringHandOver(), noFrame());
    expectNoFrame();
    finishHandOver();
    EXPECT_EQ(wait(), done());
    EXPECT_EQ(copiedFrame()[4], 0xC1);
    EXPECT_EQ(lockedBuffers(), 0);
}

TEST_F(LateFrame, IsLeftToTheNextWaitByACopyIntoNothing) {
    openLive();
    EXPECT_EQ(timeOutDuringHandOver(), noFrame());
    EXPECT_EQ(copy(nullptr), noFrame());
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
    finishHandOver();
    EXPECT_EQ(wait(), done());
    EXPECT_EQ(copiedFrame()[4], 0xC1);
}

TEST_F(LateFrame, EndsANextWaitThatHasBegunAlready) {
    openLive();
    EXPECT_EQ(timeOutDuringHandOver(), noFrame());
    EXPECT_EQ(waitWhile([this] { finishHandOver(); }), done());
    EXPECT_EQ(copiedFrame()[4], 0xC1);
}

TEST_F(LateFrame, IsForgottenByASecondStart) {
    openLive();
    EXPECT_EQ(timeOutDuringHandOver(), noFrame());
    EXPECT_EQ(start(), refused());
    finishHandOver();
    EXPECT_EQ(wait(), done()) << "the signal stands";
    expectNoFrame();
}

TEST_F(LateFrame, IsForgottenByAStop) {
    openLive();
    EXPECT_EQ(timeOutDuringHandOver(), noFrame());
    finishHandOver();
    EXPECT_EQ(stop(), accepted());
    expectNoFrame();
    EXPECT_EQ(start(), accepted());
    EXPECT_EQ(waitInVain(), noFrame());
    EXPECT_EQ(lockedBuffers(), 0);
}

}  // namespace
