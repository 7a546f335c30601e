// SPDX-License-Identifier: MIT
// Where the capture library's types take their memory from, and that they give it
// back: judged by the counts of the Win32 subset, which native builds alone have.
#ifndef _WIN32
#include <gtest/gtest.h>

#include <new>
#include <string>

#include "capture/conversions.h"
#include "capture/library/handles.h"
#include "capture/library/strings.h"
#include "tests/win32/win32_log.h"

namespace {

using DShowLib::dstringa;
using DShowLib::dvector;

class CaptureMemory : public testing::Test {
protected:
    ~CaptureMemory() override { win32::clearInjected(); }

    std::int64_t newBlocks() const { return win32::taskMemoryBlocks() - m_blocks; }
    std::int64_t newTexts() const { return win32::bstrs() - m_texts; }

private:
    std::int64_t m_blocks = win32::taskMemoryBlocks();
    std::int64_t m_texts = win32::bstrs();
};

TEST_F(CaptureMemory, TextIsOneBlockOfTaskMemoryEvenWhenEmpty) {
    {
        const dstringa empty;
        EXPECT_EQ(1, newBlocks());
        const dstringa text("text");
        EXPECT_EQ(2, newBlocks());
        const dstringa copy(text);
        EXPECT_EQ(3, newBlocks());
    }
    EXPECT_EQ(0, newBlocks());
}

TEST_F(CaptureMemory, MovedTextTakesItsBlockAlong) {
    {
        dstringa text("text");
        dstringa target(std::move(text));
        EXPECT_EQ(1, newBlocks());
        target = dstringa("other");
        EXPECT_EQ(1, newBlocks());
    }
    EXPECT_EQ(0, newBlocks());
}

TEST_F(CaptureMemory, ListIsOneBlockOfTaskMemoryFromItsFirstItemOn) {
    {
        dvector<int> list;
        EXPECT_EQ(0, newBlocks());
        for (int i = 0; i < 100; ++i) {
            list.push_back(i);
            EXPECT_EQ(1, newBlocks());
        }
        const dvector<int> copy(list);
        EXPECT_EQ(2, newBlocks());
        list = dvector<int>();
        EXPECT_EQ(1, newBlocks());
    }
    EXPECT_EQ(0, newBlocks());
}

TEST_F(CaptureMemory, ExhaustedTaskMemoryIsAnExceptionAndLeaksNothing) {
    {
        dvector<int> list;
        for (int i = 0; i < 4; ++i) {
            list.push_back(i);
        }
        win32::injectResults("CoTaskMemAlloc", {0});
        EXPECT_THROW(list.push_back(4), std::bad_alloc);
        EXPECT_EQ(4U, list.size());
        EXPECT_EQ(3, list[3]);
        list.push_back(4);
        EXPECT_EQ(5U, list.size());
        win32::injectResults("CoTaskMemAlloc", {0});
        EXPECT_THROW(dstringa("text"), std::bad_alloc);
    }
    EXPECT_EQ(0, newBlocks());
}

TEST_F(CaptureMemory, ComTextIsFreedOnce) {
    {
        CComText text(L"text");
        EXPECT_EQ(1, newTexts());
        text.put();
        EXPECT_EQ(0, newTexts());
        *text.put() = ::SysAllocString(L"filled");
        EXPECT_EQ(1, newTexts());
        *text.put() = ::SysAllocString(L"filled again");
        EXPECT_EQ(1, newTexts());
    }
    EXPECT_EQ(0, newTexts());
}

}  // namespace
#endif
