// SPDX-License-Identifier: MIT
// Every call of the host in every state of a device: what it returns, what it
// writes, and what it asks of the library.
#include <array>
#include <ostream>
#include <tuple>

#include "tests/channel/host_states_table.h"
#include "tests/support/channel_fixture.h"

namespace host_states {
namespace {

std::int32_t callEntry(Entry entry, const VideoChannelRecord& record, HostSide& host) {
    void* context = record.context;
    switch (entry) {
        case Entry::setCameraParameters:
            host.block.contrast = 1.0;
            return record.SetCameraParameters(host.text, context, &host.block);
        case Entry::getImageInfo:
            return record.GetImageInfo(host.text, context, &host.image, host.status);
        case Entry::waitFrame:
            win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
            return record.WaitFrame(host.text, context, host.status);
        case Entry::copyFrame:
            return record.CopyFrame(host.text, context, host.frame.data(), host.status);
        case Entry::startAcquisition:
            return record.StartAcquisition(host.text, context);
        case Entry::stopAcquisition:
            return record.StopAcquisition(host.text, context);
        case Entry::executeCommand:
            return record.ExecuteCommand(host.text, context, "propertydialog");
        case Entry::getPropertyValue:
            return record.GetPropertyValue(host.text, context, "contrast value range", host.value);
        case Entry::setPropertyValue:
            return record.SetPropertyValue(host.text, context, "contrast value range", "7");
        case Entry::getPropertyName:
            return record.GetPropertyName(host.text, context, 0, host.value);
        case Entry::getPropertyType:
            return record.GetPropertyType(host.text, context, "videoformat", host.status);
        case Entry::getPropertyChoice:
            return record.GetPropertyChoice(host.text, context, "videoformat", 0, host.value);
        case Entry::getPropertyAttribute:
            return record.GetPropertyAttribute(host.text, context, "videoformat", 1, host.value);
        case Entry::closeChannel:
            return record.CloseChannel(host.text, context);
    }
    return -1;
}

std::string shown(const CHostText& text) {
    return text.isUntouched() ? "-" : text.text();
}

class HostStates : public CChannelTest, public ::testing::WithParamInterface<Expectation> {
protected:
    static VideoChannelRecord recordIn(State state) {
        const std::string contrast = rigs::range("Contrast", 0, 255, 51);
        loadRig(rigs::grey(state == State::noDevice ? "open = \"fail\"\n" + contrast : contrast));
        const VideoChannelRecord record = openRecord();
        if (state == State::live || state == State::lost) {
            EXPECT_EQ(record.StartAcquisition(nullptr, record.context), 0);
        }
        if (state == State::lost) {
            virtualCamerasUnplug("1A2B");
        }
        recordAll();
        return record;
    }
};

TEST_P(HostStates, AnswerEveryCallAsTheTableSays) {
    const Expectation& expected = GetParam();
    const VideoChannelRecord record = recordIn(expected.state);
    HostSide host;
    std::string result;
    try {
        result = std::to_string(callEntry(expected.entry, record, host));
    } catch (std::int32_t code) {
        result = "throws " + std::to_string(code);
    }
    EXPECT_EQ(result, expected.result);
    EXPECT_EQ(shown(host.text), expected.text);
    EXPECT_EQ(shown(host.value), expected.value);
    EXPECT_EQ(host.status.isUntouched() ? "-" : std::to_string(host.status.value()),
              expected.status);
    EXPECT_EQ(library_log::lines(), expected.calls);
    EXPECT_TRUE(host.frame.isUntouched());
    EXPECT_TRUE(win32::messageBoxes().empty());
}

std::string nameOf(const ::testing::TestParamInfo<Expectation>& info) {
    return std::string(stateName(info.param.state)) + entryName(info.param.entry);
}

INSTANTIATE_TEST_SUITE_P(All, HostStates, ::testing::ValuesIn(table()), nameOf);

TEST(HostStatesTable, HoldsEveryCallInEveryStateOnce) {
    std::vector<std::pair<State, Entry>> pairs;
    for (const Expectation& expectation : table()) {
        pairs.emplace_back(expectation.state, expectation.entry);
    }
    EXPECT_EQ(pairs.size(), 56U);
    std::sort(pairs.begin(), pairs.end());
    EXPECT_EQ(std::adjacent_find(pairs.begin(), pairs.end()), pairs.end());
}

}  // namespace
}  // namespace host_states
