// SPDX-License-Identifier: MIT
// The capture library's texts, COM's texts, and their way to standard ones.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "capture/conversions.h"
#include "capture/library/strings.h"

namespace {

using DShowLib::dstringa;
using DShowLib::dstringw;
using namespace std::string_literals;

TEST(Dstring, StartsAsTheEmptyText) {
    const dstringa text;
    EXPECT_STREQ("", text.c_str());
    EXPECT_EQ(0U, text.size());
}

TEST(Dstring, HoldsACopyOfItsText) {
    char original[] = "Y800 (640x480)";
    const dstringa text(original);
    original[0] = 'X';
    EXPECT_STREQ("Y800 (640x480)", text.c_str());
    EXPECT_EQ(14U, text.size());
    EXPECT_STREQ(L"Norm", dstringw(L"Norm").c_str());
    EXPECT_EQ(4U, dstringw(L"Norm").size());
}

TEST(Dstring, NullIsTheEmptyText) {
    const char* missing = nullptr;
    EXPECT_STREQ("", dstringa(missing).c_str());
    EXPECT_EQ(0U, dstringa(missing).size());
    EXPECT_STREQ("", dstringa(nullptr, 0).c_str());
}

TEST(Dstring, PartOfATextIsTerminated) {
    const dstringa text("Y800 (640x480)", 4);
    EXPECT_STREQ("Y800", text.c_str());
    EXPECT_EQ(4U, text.size());
}

TEST(Dstring, CountedTextMayHoldATerminator) {
    const dstringw text(L"a\0b", 3);
    EXPECT_EQ(3U, text.size());
    EXPECT_EQ(L'b', text.c_str()[2]);
    EXPECT_EQ(L'\0', text.c_str()[3]);
}

TEST(Dstring, CopyIsIndependent) {
    dstringa text("first");
    const dstringa copy(text);
    text = dstringa("second");
    EXPECT_STREQ("first", copy.c_str());
    EXPECT_STREQ("second", text.c_str());
    EXPECT_EQ(6U, text.size());
}

TEST(Dstring, MovedFromTextReadsAsEmptyAndCanBeUsedAgain) {
    dstringa text("text");
    const char* characters = text.c_str();
    dstringa target(std::move(text));
    EXPECT_EQ(characters, target.c_str());
    EXPECT_STREQ("", text.c_str());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(0U, text.size());
    const dstringa copyOfEmpty(text);
    EXPECT_STREQ("", copyOfEmpty.c_str());
    text = dstringa("again");
    EXPECT_STREQ("again", text.c_str());
}

TEST(Dstring, AssignmentToItselfKeepsTheText) {
    dstringa text("text");
    const dstringa& same = text;
    text = same;
    EXPECT_STREQ("text", text.c_str());
}

TEST(Dstring, LayoutIsAPointerAndASize) {
    EXPECT_EQ(16U, sizeof(dstringa));
    EXPECT_EQ(16U, sizeof(dstringw));
}

TEST(TextConversions, LibraryTextBecomesStandard) {
    EXPECT_EQ(L"QRM 52XAV07", toStandard(dstringw(L"QRM 52XAV07")));
    EXPECT_EQ(L"a\0b"s, toStandard(dstringw(L"a\0b", 3)));
    EXPECT_EQ(L"", toStandard(dstringw()));
}

TEST(TextConversions, LibraryTextBecomesUtf8) {
    EXPECT_EQ("\xC3\xA4\xE2\x82\xAC", toNarrow(dstringw(L"\u00E4\u20AC")));
    EXPECT_EQ("a\0b"s, toNarrow(dstringw(L"a\0b", 3)));
    EXPECT_EQ("", toNarrow(dstringw()));
}

TEST(ComText, NullIsTheEmptyText) {
    const CComText text;
    EXPECT_EQ(nullptr, text.get());
    EXPECT_EQ("", text.narrow());
}

TEST(ComText, HoldsItsTextWithItsLength) {
    const CComText text(L"Exposure \u00E4\0x"s);
    EXPECT_EQ(12U, ::SysStringLen(text.get()));
    EXPECT_EQ("Exposure \xC3\xA4\0x"s, text.narrow());
    EXPECT_EQ("", CComText(L"").narrow());
}

TEST(ComText, PutHandsOutAnEmptyPlaceToFill) {
    CComText text(L"old");
    BSTR* place = text.put();
    EXPECT_EQ(nullptr, *place);
    EXPECT_EQ("", text.narrow());
    *place = ::SysAllocString(L"new");
    EXPECT_EQ("new", text.narrow());
}

}  // namespace
