// SPDX-License-Identifier: MIT
// Long lives and sudden ends: many starts, closing while live, unloading.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <tuple>

#include "tests/border/support/border_test.h"
#include "tests/border/support/message_boxes.h"

// Wants the types of Windows before it.
#include <tlhelp32.h>

namespace {

auto fieldsOf(const VirtualCamerasAlive& alive) {
    return std::tie(alive.grabbers, alive.openDevices, alive.liveDevices, alive.listeners,
                    alive.sinks, alive.buffers, alive.items, alive.interfaces);
}

// As inside the entry of a library of the host's: meanwhile no thread starts or ends.
class CLoaderLock {
public:
    CLoaderLock() { function<Lock>("LdrLockLoaderLock")(0, nullptr, &m_cookie); }
    CLoaderLock(const CLoaderLock&) = delete;
    CLoaderLock& operator=(const CLoaderLock&) = delete;
    ~CLoaderLock() { function<Unlock>("LdrUnlockLoaderLock")(0, m_cookie); }

private:
    using Lock = LONG(WINAPI*)(ULONG flags, ULONG* state, std::uintptr_t* cookie);
    using Unlock = LONG(WINAPI*)(ULONG flags, std::uintptr_t cookie);

    template <class Function>
    static Function function(const char* name) {
        const FARPROC found = ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), name);
        return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(found));
    }

    std::uintptr_t m_cookie = 0;
};

std::size_t threadsOfThisProcess() {
    HANDLE all = ::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    std::size_t count = 0;
    for (BOOL more = ::Thread32First(all, &entry); more != FALSE;
         more = ::Thread32Next(all, &entry)) {
        count += entry.th32OwnerProcessID == ::GetCurrentProcessId() ? 1U : 0U;
    }
    ::CloseHandle(all);
    return count;
}

class Lifetime : public CBorderTest {};

TEST_F(Lifetime, TwoHundredStartsLeaveEverythingBalanced) {
    const CHostChannel camera = channel(0);
    control().setClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    CHostMemory memory(96 * 64);
    const VirtualCamerasAlive before = control().alive();
    for (int i = 0; i < 200; ++i) {
        ASSERT_EQ(camera.start(), accepted()) << "start " << i;
        ASSERT_TRUE(camera.waitForFrame()) << "start " << i;
        // Every other frame is left to the stop.
        if (i % 2 == 0) {
            ASSERT_EQ(camera.copy(memory), done()) << "start " << i;
        }
        ASSERT_EQ(camera.stop(), accepted()) << "start " << i;
    }
    EXPECT_EQ(fieldsOf(control().alive()), fieldsOf(before));
    EXPECT_EQ(control().lockedBuffers(greySerial), 0);
    EXPECT_EQ(control().misuses(), 0U) << control().lastMisuse();
}

TEST_F(Lifetime, ClosingALiveCameraStopsItFirst) {
    control().setClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    const CHostChannel camera = channel(0);
    const CHostChannel other = channel(1);
    ASSERT_EQ(camera.start(), accepted());
    ASSERT_EQ(other.start(), accepted());
    ASSERT_TRUE(camera.waitForFrame());
    control().recordCalls(1);
    EXPECT_EQ(camera.close(), accepted());
    EXPECT_EQ(control().countOf("Grabber::stopLive"), 1U);
    EXPECT_EQ(control().alive().liveDevices, 1U);
    // The other goes on.
    EXPECT_TRUE(other.waitForFrame());
    EXPECT_EQ(other.close(), accepted());
    EXPECT_EQ(control().alive().liveDevices, 0U);
}

TEST_F(Lifetime, TheAdapterCanBeUnloadedAndLoadedAgain) {
    liveChannel(0);
    closeAll();
    m_adapter->unload();
    EXPECT_EQ(::GetModuleHandleW(L"velmora_adapter.dll"), nullptr);

    m_adapter = std::make_unique<CAdapterDll>(folder().adapterFile());
    ASSERT_TRUE(adapter().isLoaded());
    // A new life: the cameras are listed again.
    const CHostChannel again = channel(0);
    EXPECT_STREQ(again.record().serialText, "1A2B");
    EXPECT_EQ(again.start(), accepted());
    EXPECT_EQ(control().deliverFrame(greySerial), 1);
    EXPECT_EQ(again.stop(), accepted());
    EXPECT_EQ(control().misuses(), 0U) << control().lastMisuse();
}

TEST_F(Lifetime, UnloadingClosesNoCamera) {
    channel(0);
    const VirtualCamerasAlive before = control().alive();
    ASSERT_EQ(before.grabbers, 4U);
    control().recordCalls(1);
    m_adapter->unload();
    EXPECT_NE(::GetModuleHandleW(L"velmora_adapter.dll"), nullptr) << "cameras are open";
    EXPECT_EQ(control().operations(), std::vector<std::string>{});
    EXPECT_EQ(fieldsOf(control().alive()), fieldsOf(before));
}

TEST_F(Lifetime, AHostThatFreesTheAdapterTooEarlyGoesOnAndMayLoadItAgain) {
    const CHostChannel camera = liveChannel(0);
    const CHostChannel others[] = {channel(1), channel(2), channel(3)};
    m_adapter->unload();
    EXPECT_EQ(control().deliverFrame(greySerial), 1) << "the listener's code is still there";
    for (const CHostChannel& other : others) {
        EXPECT_EQ(other.close(), accepted());
    }
    EXPECT_EQ(camera.close(), accepted());

    // The module goes once this thread has left it; loading it again waits for that.
    m_adapter = std::make_unique<CAdapterDll>(folder().adapterFile());
    ASSERT_TRUE(adapter().isLoaded());
    const CHostChannel again = channel(0);
    EXPECT_STREQ(again.record().serialText, "1A2B");
    EXPECT_EQ(control().misuses(), 0U) << control().lastMisuse();
}

TEST_F(Lifetime, AHostThatClosesWhileNoThreadCanStartMayFreeTheAdapterNext) {
    channel(0);
    const std::size_t threads = threadsOfThisProcess();
    {
        const CLoaderLock lock;
        closeAll();
    }
    // The reference is given back now, by a thread that had to wait.
    while (threadsOfThisProcess() > threads) {
        ::SwitchToThread();
    }
    m_adapter->unload();
    EXPECT_EQ(::GetModuleHandleW(L"velmora_adapter.dll"), nullptr);
}

TEST_F(Lifetime, TwoAdaptersInOneProcessAreApart) {
    const CRunFolder second;
    second.addAdapter();
    CMessageBoxes boxes;
    CAdapterDll other(second.adapterFile());
    ASSERT_TRUE(other.isLoaded());
    channel(0);
    VideoChannelRecord record{};
    // Nothing lies beside the second one.
    EXPECT_EQ(other.getVideoChannel(0, &record), 1);
    EXPECT_EQ(boxes.take().size(), 1U);
    EXPECT_EQ(adapter().getVideoChannel(0, &record), 0);
}

}  // namespace
