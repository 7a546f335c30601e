// SPDX-License-Identifier: MIT
// A host's timer that fires while a message box of the adapter is open.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "tests/border/support/border_test.h"

namespace {

// Runs work of the host on its own thread once a message box pumps its messages, and
// closes that box.
class CTimerInTheBox {
public:
    explicit CTimerInTheBox(std::wstring caption, std::function<void()> work)
        : m_caption(std::move(caption)), m_work(std::move(work)) {
        s_current = this;
        m_timer = ::SetTimer(nullptr, 0, 10, &tick);
    }
    CTimerInTheBox(const CTimerInTheBox&) = delete;
    CTimerInTheBox& operator=(const CTimerInTheBox&) = delete;
    ~CTimerInTheBox() {
        ::KillTimer(nullptr, m_timer);
        s_current = nullptr;
    }

private:
    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD) {
        const HWND box = ::FindWindowW(nullptr, s_current->m_caption.c_str());
        if (box == nullptr) {
            return;
        }
        if (const auto work = std::exchange(s_current->m_work, nullptr)) {
            work();
        }
        ::PostMessageW(box, WM_CLOSE, 0, 0);
    }

    static inline CTimerInTheBox* s_current = nullptr;

    std::wstring m_caption;
    std::function<void()> m_work;
    UINT_PTR m_timer = 0;
};

TEST(Reentrance, AHostMayCloseTheChannelInTheBoxOfItsOwnCopy) {
    const CRunFolder folder;
    folder.addAdapter();
    folder.addVirtualCameras();
    const CAdapterDll adapter(folder.adapterFile());
    VideoChannelRecord record{};
    ASSERT_EQ(adapter.getVideoChannel(0, &record), 0);
    std::int32_t closed = -1;
    std::uint32_t status = 0;
    {
        const CTimerInTheBox timer(L"Eror",
                                   [&] { closed = record.CloseChannel(nullptr, record.context); });
        EXPECT_EQ(record.CopyFrame(nullptr, record.context, nullptr, &status), 0);
    }
    EXPECT_EQ(closed, 0);
    EXPECT_EQ(status, 4096U);
    EXPECT_EQ(record.StopAcquisition(nullptr, record.context), 1) << "the context is dead";
}

}  // namespace
