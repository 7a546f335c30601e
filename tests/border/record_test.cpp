// SPDX-License-Identifier: MIT
// The record: which bytes are written, with what, and for which indices.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/border/support/border_test.h"
#include "tests/support/raw_record.h"
#include "tests/support/thrown.h"

namespace {

class Record : public CBorderTest {
protected:
    VideoChannelRecord* record() { return m_raw.record(); }

    CRawRecord m_raw;
};

TEST_F(Record, HoldsTheFactsOfTheCameraAtTheirOffsets) {
    ASSERT_EQ(adapter().getVideoChannel(0, record()), 0);
    EXPECT_EQ(m_raw.at<std::uint32_t>(0), 632U);
    EXPECT_EQ(m_raw.text(88), "Border Grey");
    EXPECT_EQ(m_raw.text(344), "1A2B");
    EXPECT_EQ(m_raw.at<double>(600), 0.25);
    EXPECT_EQ(m_raw.at<double>(608), 0.2);
    EXPECT_EQ(m_raw.at<double>(616), -1.0);
    EXPECT_EQ(m_raw.at<std::int32_t>(624), 96);
    EXPECT_EQ(m_raw.at<std::int32_t>(628), 64);
}

TEST_F(Record, ACameraWithoutTheSettingsHasMinusOne) {
    ASSERT_EQ(adapter().getVideoChannel(1, record()), 0);
    EXPECT_EQ(m_raw.at<double>(600), -1.0);
    EXPECT_EQ(m_raw.at<double>(608), -1.0);
    EXPECT_EQ(m_raw.at<double>(616), -1.0);
}

TEST_F(Record, HasFourteenEntryPointsAndAContext) {
    ASSERT_EQ(adapter().getVideoChannel(0, record()), 0);
    const auto missing = m_raw.at<std::uintptr_t>(632);  // still as the host left it
    for (std::size_t offset :
         {8U, 16U, 24U, 32U, 40U, 48U, 56U, 64U, 72U, 80U, 640U, 648U, 656U, 664U, 672U}) {
        EXPECT_NE(m_raw.at<std::uintptr_t>(offset), 0U) << offset;
        EXPECT_NE(m_raw.at<std::uintptr_t>(offset), missing) << offset;
    }
}

TEST_F(Record, GapsAndTheRestOfTheTextsStayAsTheHostLeftThem) {
    ASSERT_EQ(adapter().getVideoChannel(0, record()), 0);
    EXPECT_TRUE(m_raw.isUntouched(4, 4));
    EXPECT_TRUE(m_raw.isUntouched(88 + sizeof("Border Grey"), 344 - (88 + sizeof("Border Grey"))));
    EXPECT_TRUE(m_raw.isUntouched(344 + sizeof("1A2B"), 600 - (344 + sizeof("1A2B"))));
    EXPECT_TRUE(m_raw.isUntouched(632, 8));
}

TEST_F(Record, AnOldHostsSizeIsOverwrittenAndDoesNotCount) {
    const std::uint32_t oldSize = 600;
    std::memcpy(m_raw.data(), &oldSize, sizeof(oldSize));
    ASSERT_EQ(adapter().getVideoChannel(0, record()), 0);
    EXPECT_EQ(m_raw.at<std::uint32_t>(0), 632U);
    EXPECT_FALSE(m_raw.isUntouched(640, 40));
}

TEST_F(Record, IndexPastTheLastCameraFailsAndLeavesTheRecord) {
    for (std::int32_t index : {4, 5, 1000, 0x7FFFFFFF}) {
        EXPECT_EQ(adapter().getVideoChannel(index, record()), 1) << index;
    }
    EXPECT_TRUE(m_raw.isUntouched());
}

TEST_F(Record, NegativeIndexRaisesOutOfRangeWithItsText) {
    for (std::int32_t index : {-1, -2147483647 - 1}) {
        EXPECT_EQ(outOfRangeText([&] { adapter().getVideoChannel(index, record()); }),
                  "invalid vector<T> subscript")
            << index;
    }
    EXPECT_TRUE(m_raw.isUntouched());
    // The adapter still answers.
    EXPECT_EQ(adapter().getVideoChannel(3, record()), 0);
}

TEST_F(Record, ANullRecordFails) {
    EXPECT_EQ(adapter().getVideoChannel(0, nullptr), 1);
    EXPECT_EQ(adapter().getVideoChannel(0, record()), 0);
}

TEST_F(Record, SameIndexGivesTheSameChannel) {
    const CHostChannel first = channel(2);
    const CHostChannel again = channel(2);
    const CHostChannel other = channel(1);
    EXPECT_EQ(first.record().context, again.record().context);
    EXPECT_NE(first.record().context, other.record().context);
}

TEST_F(Record, CamerasComeInTheOrderOfTheLibrary) {
    EXPECT_STREQ(channel(0).record().serialText, "1A2B");
    EXPECT_STREQ(channel(1).record().serialText, "C0102");
    EXPECT_STREQ(channel(2).record().serialText, "C0304");
    EXPECT_STREQ(channel(3).record().serialText, "C0506");
}

TEST_F(Record, ACameraWithoutASerialNumberSaysSo) {
    control().loadRig(R"toml([[camera]]
name = "Nameless"
formats = ["Y800 (64x48)"])toml");
    EXPECT_STREQ(channel(0).record().serialText, "n/a");
}

TEST_F(Record, TheLongestNameIsCutAndTerminated) {
    const std::string name(300, 'N');
    control().loadRig(("[[camera]]\nname = \"" + name + "\"\nserial = \"9\"\n").c_str());
    ASSERT_EQ(adapter().getVideoChannel(0, record()), 0);
    EXPECT_EQ(m_raw.text(88), name.substr(0, 253));
    EXPECT_TRUE(m_raw.isUntouched(88 + 254, 344 - (88 + 254)));
}

TEST_F(Record, WithoutCamerasEveryIndexFailsForever) {
    control().chooseRig("empty");
    EXPECT_EQ(adapter().getVideoChannel(0, record()), 1);
    control().loadRig(fourCameras);
    EXPECT_EQ(adapter().getVideoChannel(0, record()), 1);
    EXPECT_TRUE(m_raw.isUntouched());
}

}  // namespace
