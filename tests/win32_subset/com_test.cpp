// SPDX-License-Identifier: MIT
// COM of the Win32 subset: starts per thread, memory, texts.
#include <gtest/gtest.h>

#include <cstdint>
#include <thread>

#include "tests/win32/win32_log.h"

class Com : public ::testing::Test {
protected:
    void SetUp() override { win32::reset(); }
};

TEST_F(Com, StartsAreCountedPerThread) {
    std::thread([] {
        EXPECT_EQ(0, CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        EXPECT_EQ(1, CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        EXPECT_EQ(2, win32::comBalance());
        std::thread([] { EXPECT_EQ(0, win32::comBalance()); }).join();
        CoUninitialize();
        CoUninitialize();
        EXPECT_EQ(0, win32::comBalance());
    }).join();
}

TEST_F(Com, ASecondApartmentIsRefused) {
    std::thread([] {
        EXPECT_EQ(0, OleInitialize(nullptr));
        EXPECT_EQ(static_cast<HRESULT>(0x80010106), CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        EXPECT_EQ(1, win32::comBalance());
        CoUninitialize();
        EXPECT_EQ(0, CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        CoUninitialize();
    }).join();
}

TEST_F(Com, AStopWithoutAStartIsCountedApart) {
    const std::uint32_t before = win32::unbalancedComStops();
    std::thread([] {
        CoUninitialize();
        EXPECT_EQ(0, win32::comBalance());
    }).join();
    EXPECT_EQ(before + 1, win32::unbalancedComStops());
}

TEST_F(Com, InjectedSuccessCountsAndInjectedFailureDoesNot) {
    std::thread([] {
        win32::injectResults("CoInitializeEx", {S_FALSE, E_FAIL});
        EXPECT_EQ(1, CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        EXPECT_EQ(1, win32::comBalance());
        EXPECT_EQ(static_cast<HRESULT>(0x80004005), CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        EXPECT_EQ(1, win32::comBalance());
        CoUninitialize();
    }).join();
}

TEST_F(Com, IdentifiersAreUpperCaseInBraces) {
    constexpr GUID identifier = {
        0x284C0E06, 0x010B, 0x45BF, {0x82, 0x91, 9, 0xD9, 0x0A, 0x45, 0x9B, 0x28}};
    LPOLESTR text = nullptr;
    ASSERT_EQ(0, StringFromCLSID(identifier, &text));
    EXPECT_STREQ(L"{284C0E06-010B-45BF-8291-09D90A459B28}", text);
    CoTaskMemFree(text);
    win32::injectResults("StringFromCLSID", {E_OUTOFMEMORY});
    EXPECT_EQ(static_cast<HRESULT>(0x8007000E), StringFromCLSID(identifier, &text));
    EXPECT_EQ(nullptr, text);
}

TEST_F(Com, MemoryAndTextsAreCounted) {
    const std::int64_t blocks = win32::taskMemoryBlocks();
    const std::int64_t texts = win32::bstrs();
    void* memory = CoTaskMemAlloc(0);
    const BSTR text = SysAllocStringLen(L"a\0b", 3);
    EXPECT_EQ(blocks + 1, win32::taskMemoryBlocks());
    EXPECT_EQ(texts + 1, win32::bstrs());
    EXPECT_EQ(3u, SysStringLen(text));
    EXPECT_EQ(L'b', text[2]);
    CoTaskMemFree(memory);
    SysFreeString(text);
    EXPECT_EQ(blocks, win32::taskMemoryBlocks());
    EXPECT_EQ(texts, win32::bstrs());
    EXPECT_EQ(0u, SysStringLen(nullptr));
}

TEST_F(Com, InjectedExhaustionGivesNull) {
    win32::injectResults("CoTaskMemAlloc", {0});
    win32::injectResults("SysAllocString", {0});
    EXPECT_EQ(nullptr, CoTaskMemAlloc(16));
    EXPECT_EQ(nullptr, SysAllocString(L"text"));
}

TEST_F(Com, InjectedResultsThatNobodyAskedForAreCounted) {
    win32::injectResults("CoTaskMemAlloc", {0, 0, 0});
    EXPECT_EQ(3u, win32::unusedResults("CoTaskMemAlloc"));
    EXPECT_EQ(nullptr, CoTaskMemAlloc(16));
    EXPECT_EQ(2u, win32::unusedResults("CoTaskMemAlloc"));
    EXPECT_EQ(0u, win32::unusedResults("SysAllocString"));
}
