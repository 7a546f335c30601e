// SPDX-License-Identifier: MIT
// The record that a host receives, byte by byte, and its entry points.
#include <array>

#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

using ::testing::IsEmpty;

constexpr std::size_t recordBytes = 680;

// The record as the host's raw memory.
class CRawRecord {
public:
    std::int32_t fill(std::int32_t index = 0) { return GetVideoChannel(nullptr, index, &record()); }
    VideoChannelRecord& record() {
        return *static_cast<VideoChannelRecord*>(static_cast<void*>(m_memory.data()));
    }
    CHostMemory& memory() { return m_memory; }
    template <class Value>
    Value at(std::size_t offset) const {
        Value value{};
        std::memcpy(&value, m_memory.data() + offset, sizeof(value));
        return value;
    }
    std::string text(std::size_t offset) const {
        return reinterpret_cast<const char*>(m_memory.data() + offset);
    }

private:
    CHostMemory m_memory{recordBytes};
};

class Record : public CChannelTest {};

TEST_F(Record, StatesItsBaseSizeAndTheContextOfItsIndex) {
    loadRig(rigs::grey() + rigs::color());
    CRawRecord first;
    CRawRecord second;
    ASSERT_EQ(first.fill(0), 0);
    ASSERT_EQ(second.fill(1), 0);
    EXPECT_EQ(first.at<std::uint32_t>(0), 632U);
    EXPECT_NE(first.at<void*>(8), nullptr);
    EXPECT_NE(first.at<void*>(8), second.at<void*>(8));
}

TEST_F(Record, LeavesItsTwoGapsToTheHost) {
    loadRig(rigs::grey());
    CRawRecord raw;
    ASSERT_EQ(raw.fill(), 0);
    EXPECT_TRUE(raw.memory().isUntouched(4, 4));
    EXPECT_TRUE(raw.memory().isUntouched(632, 8));
}

TEST_F(Record, ExtendsARecordWhoseSizeWasPresetBelow608) {
    loadRig(rigs::grey());
    for (const std::uint32_t preset : {600U, 0U, 632U, 0xFFFFFFFFU}) {
        CRawRecord raw;
        std::memcpy(raw.memory().data(), &preset, sizeof(preset));
        ASSERT_EQ(raw.fill(), 0);
        EXPECT_EQ(raw.at<std::uint32_t>(0), 632U);
        for (const std::size_t offset : {640U, 648U, 656U, 664U, 672U}) {
            EXPECT_FALSE(raw.memory().isUntouched(offset, 8)) << offset;
        }
    }
}

TEST_F(Record, FillsFourteenDifferentEntryPoints) {
    loadRig(rigs::grey());
    CRawRecord raw;
    ASSERT_EQ(raw.fill(), 0);
    std::vector<void*> entries;
    for (const std::size_t offset :
         {16U, 24U, 32U, 40U, 48U, 56U, 64U, 72U, 80U, 640U, 648U, 656U, 664U, 672U}) {
        EXPECT_FALSE(raw.memory().isUntouched(offset, 8)) << offset;
        entries.push_back(raw.at<void*>(offset));
    }
    std::sort(entries.begin(), entries.end());
    EXPECT_EQ(std::unique(entries.begin(), entries.end()), entries.end());
    EXPECT_NE(entries.front(), nullptr);
}

TEST_F(Record, CopiesNameAndSerialTextAndNothingBehindThem) {
    loadRig(rigs::grey());
    CRawRecord raw;
    ASSERT_EQ(raw.fill(), 0);
    EXPECT_EQ(raw.text(88), "SIM Mono 23");
    EXPECT_TRUE(raw.memory().isUntouched(88 + 12, 256 - 12));
    EXPECT_EQ(raw.text(344), "1A2B");
    EXPECT_TRUE(raw.memory().isUntouched(344 + 5, 256 - 5));
}

TEST_F(Record, HoldsANameOfAtMost253Characters) {
    loadRig(rigs::camera(std::string(300, 'n'), "1", "\"Y800 (8x4)\""));
    CRawRecord raw;
    ASSERT_EQ(raw.fill(), 0);
    EXPECT_EQ(raw.text(88), std::string(253, 'n'));
    EXPECT_TRUE(raw.memory().isUntouched(88 + 254, 2));
    EXPECT_EQ(raw.text(344), "1");
}

TEST_F(Record, CutsANameByByteEvenWithinACharacter) {
    // 252 bytes, then a character of two bytes of which one fits.
    loadRig(rigs::camera(std::string(252, 'n') + "\u00e9\u00e9", "1", "\"Y800 (8x4)\""));
    CRawRecord raw;
    ASSERT_EQ(raw.fill(), 0);
    EXPECT_EQ(raw.text(88), std::string(252, 'n') + "\xC3");
}

TEST_F(Record, HoldsTheFirstReadingsAndTheLargestSize) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51) + rigs::range("Brightness", -10, 10, 5) +
                       std::string(rigs::exposure)));
    CRawRecord raw;
    ASSERT_EQ(raw.fill(), 0);
    EXPECT_DOUBLE_EQ(raw.at<double>(600), 0.04);
    EXPECT_DOUBLE_EQ(raw.at<double>(608), 0.2);
    EXPECT_DOUBLE_EQ(raw.at<double>(616), 0.75);
    EXPECT_EQ(raw.at<std::int32_t>(624), 8);
    EXPECT_EQ(raw.at<std::int32_t>(628), 4);
}

TEST_F(Record, HoldsMinusOneForWhatTheCameraDoesNotHave) {
    loadRig(rigs::grey());
    CRawRecord raw;
    ASSERT_EQ(raw.fill(), 0);
    EXPECT_EQ(raw.at<double>(600), -1.0);
    EXPECT_EQ(raw.at<double>(608), -1.0);
    EXPECT_EQ(raw.at<double>(616), -1.0);
}

TEST_F(Record, SaysThatThereIsNoSerialNumber) {
    loadRig(rigs::camera("SIM Mono 23", "", "\"Y800 (8x4)\""));
    CRawRecord raw;
    ASSERT_EQ(raw.fill(), 0);
    EXPECT_EQ(raw.text(344), "n/a");
}

TEST_F(Record, KeepsItsSnapshotWhenSettingsChange) {
    loadRig(rigs::camera("SIM Mono 23", "1A2B", "\"Y800 (8x4)\", \"Y800 (6x2)\"",
                         rigs::range("Contrast", 0, 255, 51)));
    CRawRecord raw;
    ASSERT_EQ(raw.fill(), 0);
    const VideoChannelRecord record = raw.record();
    CHostText text;
    EXPECT_EQ(record.SetPropertyValue(text, record.context, "contrast value range", "102"), 0);
    EXPECT_EQ(record.SetPropertyValue(text, record.context, "videoformat", "Y800 (8x4)"), 0);
    EXPECT_DOUBLE_EQ(raw.at<double>(608), 0.2);
    CRawRecord later;
    ASSERT_EQ(later.fill(), 0);
    EXPECT_DOUBLE_EQ(later.at<double>(608), 0.2);
    EXPECT_EQ(later.at<std::int32_t>(624), 6) << "the last grey format is the first choice";
}

TEST_F(Record, PassesEveryCallOnToItsChannel) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)) + rigs::color());
    const VideoChannelRecord record = openRecord(0);
    CHostText text;
    CHostText value;
    CHostStatus status;
    CHostMemory frame(32);
    ImageInfo image{};
    EXPECT_EQ(record.GetImageInfo(text, record.context, &image, status), 0);
    EXPECT_EQ(image.width, 8);
    EXPECT_EQ(status.value(), 0U);
    CameraParameterBlock block{};
    block.contrast = 1.0;
    EXPECT_EQ(record.SetCameraParameters(text, record.context, &block), 0);
    EXPECT_EQ(record.GetPropertyValue(text, record.context, "contrast value range", value), 0);
    EXPECT_EQ(value.text(), "255");
    EXPECT_EQ(record.SetPropertyValue(text, record.context, "contrast value range", "7"), 0);
    EXPECT_EQ(record.GetPropertyName(text, record.context, 0, value), 0);
    EXPECT_EQ(value.text(), "contrast value range");
    std::uint32_t type = 0;
    EXPECT_EQ(record.GetPropertyType(text, record.context, "videoformat", &type), 0);
    EXPECT_EQ(type, 1U);
    EXPECT_EQ(record.GetPropertyChoice(text, record.context, "videoformat", 0, value), 0);
    EXPECT_EQ(value.text(), "Y800 (8x4)");
    EXPECT_EQ(record.GetPropertyAttribute(text, record.context, "any", 1, value), 0);
    EXPECT_EQ(value.text(), "No comment.");
    EXPECT_EQ(record.StartAcquisition(text, record.context), 0);
    win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
    EXPECT_EQ(record.WaitFrame(text, record.context, status), 0);
    EXPECT_EQ(status.value(), 4096U);
    EXPECT_EQ(record.CopyFrame(text, record.context, frame.data(), status), 0);
    EXPECT_EQ(record.StopAcquisition(text, record.context), 0);
    EXPECT_TRUE(text.isUntouched());
    EXPECT_EQ(record.ExecuteCommand(text, record.context, "nothing"), 1);
    EXPECT_EQ(text.text(), "Unknown command \"nothing\"");
    EXPECT_EQ(record.CloseChannel(text, record.context), 0);
    EXPECT_EQ(alive().grabbers, 1U);
}

// What a call of every entry point but CloseChannel with a context gives. All
// outputs are checked to stay as they are.
void expectRefused(const VideoChannelRecord& record, void* context) {
    CHostText text;
    CHostText value;
    CHostStatus status;
    CHostMemory frame(32);
    CHostMemory image(sizeof(ImageInfo));
    auto* imageInfo = static_cast<ImageInfo*>(static_cast<void*>(image.data()));
    const CameraParameterBlock block{};
    const std::array<std::int32_t, 13> results = {
        record.SetCameraParameters(text, context, &block),
        record.GetImageInfo(text, context, imageInfo, status),
        record.WaitFrame(text, context, status),
        record.CopyFrame(text, context, frame.data(), status),
        record.StartAcquisition(text, context),
        record.StopAcquisition(text, context),
        record.ExecuteCommand(text, context, "propertydialog"),
        record.GetPropertyValue(text, context, "videoformat", value),
        record.SetPropertyValue(text, context, "videoformat", "Y800 (8x4)"),
        record.GetPropertyName(text, context, 0, value),
        record.GetPropertyType(text, context, "videoformat", status),
        record.GetPropertyChoice(text, context, "videoformat", 0, value),
        record.GetPropertyAttribute(text, context, "videoformat", 1, value)};
    for (std::size_t i = 0; i < results.size(); ++i) {
        EXPECT_EQ(results[i], 1) << "entry point " << i + 1;
    }
    EXPECT_TRUE(text.isUntouched());
    EXPECT_TRUE(value.isUntouched());
    EXPECT_TRUE(status.isUntouched());
    EXPECT_TRUE(frame.isUntouched());
    EXPECT_TRUE(image.isUntouched());
}

TEST_F(Record, RefusesANullContextEverywhereAndTouchesNothing) {
    loadRig(rigs::grey());
    const VideoChannelRecord record = openRecord();
    recordAll();
    expectRefused(record, nullptr);
    EXPECT_THAT(library_log::lines(), IsEmpty());
    EXPECT_THAT(win32Calls({}), IsEmpty());
}

TEST_F(Record, RefusesAContextThatWasNeverHandedOut) {
    loadRig(rigs::grey());
    const VideoChannelRecord record = openRecord();
    CHostMemory stranger(4096);
    recordAll();
    expectRefused(record, stranger.data());
    EXPECT_THAT(library_log::lines(), IsEmpty());
    EXPECT_TRUE(stranger.isUntouched());
}

TEST_F(Record, RefusesAContextThatIsClosed) {
    loadRig(rigs::grey() + rigs::color());
    const VideoChannelRecord record = openRecord();
    record.CloseChannel(nullptr, record.context);
    recordAll();
    expectRefused(record, record.context);
    EXPECT_THAT(library_log::lines(), IsEmpty());
}

TEST_F(Record, TakesNullForEveryText) {
    loadRig(rigs::grey());
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
    loadRig(rigs::grey());
    const VideoChannelRecord record = openRecord();
    CHostText text;
    EXPECT_EQ(record.GetPropertyValue(text, record.context, nullptr, nullptr), 1);
    EXPECT_EQ(text.text(), "Unknown property \"\"");
    text.refill();
    EXPECT_EQ(record.SetPropertyValue(text, record.context, nullptr, "x"), 1);
    EXPECT_EQ(text.text(), "Unknown property \"\"");
    text.refill();
    EXPECT_EQ(record.ExecuteCommand(text, record.context, nullptr), 1);
    EXPECT_EQ(text.text(), "Unknown command \"\"");
    text.refill();
    EXPECT_EQ(record.GetPropertyChoice(text, record.context, nullptr, 0, nullptr), 1);
    EXPECT_EQ(text.text(), "Feature  Not Found");
}

TEST_F(Record, SetsNothingForAMissingParameterBlock) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    const VideoChannelRecord record = openRecord();
    recordAll();
    CHostText text;
    EXPECT_EQ(record.SetCameraParameters(text, record.context, nullptr), 0);
    EXPECT_TRUE(text.isUntouched());
    EXPECT_THAT(library_log::lines(), IsEmpty());
}

}  // namespace
