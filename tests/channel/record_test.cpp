// SPDX-License-Identifier: MIT
// The record that a host receives, byte by byte, and its entry points.
#include <algorithm>
#include <deque>

#include "tests/support/channel_fixture.h"
#include "tests/support/host_calls.h"
#include "tests/support/raw_record.h"
#include "tests/support/refused_calls.h"

namespace {

using ::testing::IsEmpty;

class Record : public CWithGreyCamera<CChannelTest> {
protected:
    // What a camera index gives, in memory that keeps what is not written.
    CRawRecord& filled(std::int32_t index = 0) {
        CRawRecord& raw = m_records.emplace_back();
        EXPECT_EQ(GetVideoChannel(nullptr, index, raw.record()), 0);
        return raw;
    }

private:
    std::deque<CRawRecord> m_records;
};

TEST_F(Record, StatesItsBaseSizeAndTheContextOfItsIndex) {
    loadRig(rigs::grey() + rigs::color());
    const CRawRecord& first = filled(0);
    const CRawRecord& second = filled(1);
    EXPECT_EQ(first.at<std::uint32_t>(0), 632U);
    EXPECT_NE(first.at<void*>(8), nullptr);
    EXPECT_NE(first.at<void*>(8), second.at<void*>(8));
}

TEST_F(Record, LeavesItsTwoGapsToTheHost) {
    const CRawRecord& raw = filled();
    EXPECT_TRUE(raw.isUntouched(4, 4));
    EXPECT_TRUE(raw.isUntouched(632, 8));
}

TEST_F(Record, ExtendsARecordWhoseSizeWasPresetBelow608) {
    for (const std::uint32_t preset : {600U, 0U, 632U, 0xFFFFFFFFU}) {
        CRawRecord raw;
        std::memcpy(raw.data(), &preset, sizeof(preset));
        ASSERT_EQ(GetVideoChannel(nullptr, 0, raw.record()), 0);
        EXPECT_EQ(raw.at<std::uint32_t>(0), 632U);
        for (const std::size_t offset : {640U, 648U, 656U, 664U, 672U}) {
            EXPECT_FALSE(raw.isUntouched(offset, 8)) << offset;
        }
    }
}

TEST_F(Record, FillsFourteenDifferentEntryPoints) {
    const CRawRecord& raw = filled();
    std::vector<void*> entries;
    for (const std::size_t offset :
         {16U, 24U, 32U, 40U, 48U, 56U, 64U, 72U, 80U, 640U, 648U, 656U, 664U, 672U}) {
        EXPECT_FALSE(raw.isUntouched(offset, 8)) << offset;
        entries.push_back(raw.at<void*>(offset));
    }
    std::sort(entries.begin(), entries.end());
    EXPECT_EQ(std::unique(entries.begin(), entries.end()), entries.end());
    EXPECT_NE(entries.front(), nullptr);
}

TEST_F(Record, CopiesNameAndSerialTextAndNothingBehindThem) {
    const CRawRecord& raw = filled();
    EXPECT_EQ(raw.text(88), "SIM Mono 23");
    EXPECT_TRUE(raw.isUntouched(88 + 12, 256 - 12));
    EXPECT_EQ(raw.text(344), "1A2B");
    EXPECT_TRUE(raw.isUntouched(344 + 5, 256 - 5));
}

TEST_F(Record, HoldsANameOfAtMost253Characters) {
    loadRig(rigs::camera(std::string(300, 'n'), "1", "\"Y800 (8x4)\""));
    const CRawRecord& raw = filled();
    EXPECT_EQ(raw.text(88), std::string(253, 'n'));
    EXPECT_TRUE(raw.isUntouched(88 + 254, 2));
    EXPECT_EQ(raw.text(344), "1");
}

TEST_F(Record, CutsANameByByteEvenWithinACharacter) {
    // 252 bytes, then a character of two bytes of which one fits.
    loadRig(rigs::camera(std::string(252, 'n') + "\u00e9\u00e9", "1", "\"Y800 (8x4)\""));
    const CRawRecord& raw = filled();
    EXPECT_EQ(raw.text(88), std::string(252, 'n') + "\xC3");
}

TEST_F(Record, HoldsTheFirstReadingsAndTheLargestSize) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51) + rigs::range("Brightness", -10, 10, 5) +
                       std::string(rigs::exposure)));
    const CRawRecord& raw = filled();
    EXPECT_DOUBLE_EQ(raw.at<double>(600), 0.04);
    EXPECT_DOUBLE_EQ(raw.at<double>(608), 0.2);
    EXPECT_DOUBLE_EQ(raw.at<double>(616), 0.75);
    EXPECT_EQ(raw.at<std::int32_t>(624), 8);
    EXPECT_EQ(raw.at<std::int32_t>(628), 4);
}

TEST_F(Record, HoldsMinusOneForWhatTheCameraDoesNotHave) {
    const CRawRecord& raw = filled();
    EXPECT_EQ(raw.at<double>(600), -1.0);
    EXPECT_EQ(raw.at<double>(608), -1.0);
    EXPECT_EQ(raw.at<double>(616), -1.0);
}

TEST_F(Record, SaysThatThereIsNoSerialNumber) {
    loadRig(rigs::camera("SIM Mono 23", "", "\"Y800 (8x4)\""));
    const CRawRecord& raw = filled();
    EXPECT_EQ(raw.text(344), "n/a");
}

TEST_F(Record, KeepsItsSnapshotWhenSettingsChange) {
    loadRig(rigs::camera("SIM Mono 23", "1A2B", "\"Y800 (8x4)\", \"Y800 (6x2)\"",
                         rigs::range("Contrast", 0, 255, 51)));
    CRawRecord& raw = filled();
    const CRecordHost host(*raw.record());
    EXPECT_EQ(host.set("contrast value range", "102"), accepted());
    EXPECT_EQ(host.set("videoformat", "Y800 (8x4)"), accepted());
    EXPECT_DOUBLE_EQ(raw.at<double>(608), 0.2);
    const CRawRecord& later = filled();
    EXPECT_DOUBLE_EQ(later.at<double>(608), 0.2);
    EXPECT_EQ(later.at<std::int32_t>(624), 6) << "the last grey format is the first choice";
}

TEST_F(Record, PassesEveryCallOnToItsChannel) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)) + rigs::color());
    const CRecordHost host(openRecord(0));
    ImageInfo image{};
    EXPECT_EQ(host.imageInfo(&image), done());
    EXPECT_EQ(image.width, 8);
    CameraParameterBlock block{};
    block.contrast = 1.0;
    EXPECT_EQ(host.parameters(block), accepted());
    EXPECT_EQ(host.get("contrast value range"), accepted("255"));
    EXPECT_EQ(host.set("contrast value range", "7"), accepted());
    EXPECT_EQ(host.name(0), accepted("contrast value range"));
    EXPECT_EQ(host.type("videoformat"), withStatus(1));
    EXPECT_EQ(host.choice("videoformat", 0), accepted("Y800 (8x4)"));
    EXPECT_EQ(host.attribute("any", 1), accepted("No comment."));
    EXPECT_EQ(host.start(), accepted());
    win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
    EXPECT_EQ(host.wait(), noFrame());
    CHostMemory frame(32);
    EXPECT_EQ(host.copy(frame), noFrame());
    EXPECT_EQ(host.stop(), accepted());
    EXPECT_EQ(host.execute("nothing"), refused("Unknown command \"nothing\""));
    EXPECT_EQ(host.close(), accepted());
    EXPECT_EQ(alive().grabbers, 1U);
}

TEST_F(Record, RefusesANullContextEverywhereAndTouchesNothing) {
    const CRecordHost host(openRecord());
    recordAll();
    expectAllRefused(host.with(nullptr));
    EXPECT_THAT(library_log::lines(), IsEmpty());
    EXPECT_THAT(win32Calls({}), IsEmpty());
}

TEST_F(Record, RefusesAContextThatWasNeverHandedOut) {
    const CRecordHost host(openRecord());
    CHostMemory stranger(4096);
    recordAll();
    expectAllRefused(host.with(stranger.data()));
    EXPECT_THAT(library_log::lines(), IsEmpty());
    EXPECT_TRUE(stranger.isUntouched());
}

TEST_F(Record, RefusesAContextThatIsClosed) {
    loadRig(rigs::grey() + rigs::color());
    const CRecordHost host(openRecord());
    EXPECT_EQ(host.close(), accepted());
    recordAll();
    expectAllRefused(host);
    EXPECT_THAT(library_log::lines(), IsEmpty());
}

TEST_F(Record, TakesNullForEveryText) {
    const VideoChannelRecord record = openRecord();
    void* context = record.context;
    EXPECT_EQ(record.GetPropertyValue(nullptr, context, nullptr, nullptr), 1);
    EXPECT_EQ(record.SetPropertyValue(nullptr, context, nullptr, nullptr), 1);
    EXPECT_EQ(record.ExecuteCommand(nullptr, context, nullptr), 1);
    EXPECT_EQ(record.GetPropertyName(nullptr, context, 0, nullptr), 0);
    EXPECT_EQ(record.GetPropertyType(nullptr, context, nullptr, nullptr), 0);
    EXPECT_EQ(record.GetPropertyChoice(nullptr, context, nullptr, 0, nullptr), 1);
    EXPECT_EQ(record.GetPropertyChoice(nullptr, context, "videoformat", 0, nullptr), 0);
    EXPECT_EQ(record.GetPropertyAttribute(nullptr, context, nullptr, 1, nullptr), 0);
}

TEST_F(Record, CountsANullKeyAsTheEmptyText) {
    const CRecordHost host(openRecord());
    EXPECT_EQ(host.get(nullptr), refused("Unknown property \"\""));
    EXPECT_EQ(host.set(nullptr, "x"), refused("Unknown property \"\""));
    EXPECT_EQ(host.execute(nullptr), refused("Unknown command \"\""));
    EXPECT_EQ(host.choice(nullptr, 0), refused("Feature  Not Found"));
}

TEST_F(Record, SetsNothingForAMissingParameterBlock) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    const CRecordHost host(openRecord());
    recordAll();
    EXPECT_EQ(host.parameters(nullptr), accepted());
    EXPECT_THAT(library_log::lines(), IsEmpty());
}

}  // namespace
