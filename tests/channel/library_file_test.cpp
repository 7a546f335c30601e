// SPDX-License-Identifier: MIT
// Which file is taken for the capture library, how often, and what it has to offer.
#include <delayimp.h>

#include "adapter/channel_registry.h"
#include "adapter/delay_load.h"
#include "tests/channel/start_up_fixture.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A module whose delayed calls are those of InitLibrary and one more, as the linker lays
// their tables out, with the hook in the place of the linker's helper.
struct MadeUpModule {
    ImgDelayDescr import{};
    IMAGE_THUNK_DATA names[3]{};
    struct {
        WORD hint;
        char name[30];
    } functions[2] = {{0, "InitLibrary"}, {0, "startLive"}};

    MadeUpModule() {
        import.rvaINT = offsetOf(names);
        names[0].u1.AddressOfData = offsetOf(&functions[0]);
        names[1].u1.AddressOfData = offsetOf(&functions[1]);
    }
    HMODULE handle() { return reinterpret_cast<HMODULE>(this); }
    FARPROC notify(unsigned notification) {
        DelayLoadInfo call{};
        call.pidd = &import;
        return __pfnDliNotifyHook2(notification, &call);
    }

private:
    DWORD offsetOf(const void* part) const {
        return static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(part) -
                                  reinterpret_cast<std::uintptr_t>(this));
    }
};

class LibraryFile : public CStartUpTest {
protected:
    static std::intptr_t someFunction() { return 1; }
};

TEST_F(LibraryFile, IsLoadedOnceHoweverOftenTheListingFails) {
    throwFromCall("Grabber::getAvailableVideoCaptureDevices_", "busy", 1, 3);
    for (int attempt = 0; attempt < 3; ++attempt) {
        EXPECT_ANY_THROW(GetVideoChannel(nullptr, 0, nullptr));
    }
    EXPECT_EQ(ask(), 0);
    EXPECT_EQ(win32::callsOf("LoadLibraryExW").size(), 1U);
    EXPECT_THAT(win32::callsOf("FreeLibrary"), IsEmpty());
}

TEST_F(LibraryFile, IsNoneThatStandsInAnotherFolder) {
    win32::setFiles({L"C:\\adapter\\ORV_CAPLB11_old.dll", L"C:\\host\\ORV_CAPLB11_x64.dll",
                     L"ORV_CAPLB11_x64.dll"});
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
    EXPECT_THAT(win32Calls({"LoadLibraryExW"}),
                ElementsAre("LoadLibraryExW(C:\\adapter\\ORV_CAPLB11_x64.dll, null, 8)"));
}

TEST_F(LibraryFile, IsWhatTheDelayedCallsBindTo) {
    MadeUpModule adapter;
    int library = 0;
    bindDelayedCalls(adapter.handle(), reinterpret_cast<HMODULE>(&library));
    EXPECT_EQ(adapter.notify(dliNotePreLoadLibrary), reinterpret_cast<FARPROC>(&library));
    EXPECT_EQ(adapter.notify(dliNotePreGetProcAddress), nullptr);
    EXPECT_EQ(adapter.notify(dliNoteEndProcessing), nullptr);
}

TEST_F(LibraryFile, IsLeftToTheHelperWhenItHasEveryFunction) {
    win32::setProcAddress("InitLibrary", &someFunction);
    win32::setProcAddress("startLive", &someFunction);
    MadeUpModule adapter;
    int library = 0;
    bindDelayedCalls(adapter.handle(), reinterpret_cast<HMODULE>(&library));
    win32::reset();
    win32::setProcAddress("InitLibrary", &someFunction);
    win32::setProcAddress("startLive", &someFunction);
    EXPECT_EQ(adapter.notify(dliStartProcessing), nullptr);
    EXPECT_EQ(win32::callsOf("GetProcAddress").size(), 2U);
    EXPECT_EQ(adapter.notify(dliStartProcessing), nullptr);
    EXPECT_EQ(win32::callsOf("GetProcAddress").size(), 2U) << "looked through once";
}

TEST_F(LibraryFile, IsNotCalledWhenItLacksAFunction) {
    win32::setProcAddress("InitLibrary", &someFunction);
    MadeUpModule adapter;
    int library = 0;
    bindDelayedCalls(adapter.handle(), reinterpret_cast<HMODULE>(&library));
    const FARPROC standIn = adapter.notify(dliStartProcessing);
    ASSERT_NE(standIn, nullptr);
    EXPECT_NE(standIn, &someFunction);
    // It answers as a library does that will not start.
    EXPECT_FALSE(reinterpret_cast<bool (*)()>(reinterpret_cast<void (*)()>(standIn))());
}

TEST_F(LibraryFile, MayBeAWholeOneAtTheNextAttempt) {
    MadeUpModule adapter;
    int library = 0;
    bindDelayedCalls(adapter.handle(), reinterpret_cast<HMODULE>(&library));
    ASSERT_NE(adapter.notify(dliStartProcessing), nullptr) << "it lacks a function";
    EXPECT_TRUE(startCaptureLibrary());
}

TEST_F(LibraryFile, IsAskedByOrdinalForAFunctionWithoutAName) {
    win32::setProcAddress("InitLibrary", &someFunction);
    win32::setProcAddress("#7", &someFunction);
    MadeUpModule adapter;
    adapter.names[1].u1.Ordinal = 0x8000000000000007U;
    int library = 0;
    bindDelayedCalls(adapter.handle(), reinterpret_cast<HMODULE>(&library));
    EXPECT_EQ(adapter.notify(dliStartProcessing), nullptr);
    adapter.names[1].u1.Ordinal = 0x8000000000000008U;
    int another = 0;
    bindDelayedCalls(adapter.handle(), reinterpret_cast<HMODULE>(&another));
    EXPECT_NE(adapter.notify(dliStartProcessing), nullptr);
}

}  // namespace
