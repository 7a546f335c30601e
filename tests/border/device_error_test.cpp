// SPDX-License-Identifier: MIT
// Cameras that fail while the adapter lists them.
#include <gtest/gtest.h>

#include "tests/border/support/border_test.h"
#include "tests/border/support/message_boxes.h"

namespace {

class DeviceError : public CBorderTest {
protected:
    CMessageBoxes m_boxes;
};

TEST_F(DeviceError, ACameraThatThrowsIsNamedInABoxAndLeftOut) {
    control().loadRig(oneThrows);
    EXPECT_STREQ(channel(0).record().serialText, "1");
    EXPECT_EQ(
        m_boxes.take(),
        (std::vector<MessageBoxSeen>{{L"Device Error",
                                      L"Failed to initialize device Gr\u00FC\u00DFe \U0001F4F7",
                                      true,
                                      true,
                                      false,
                                      {L"OK"}}}));
    EXPECT_STREQ(channel(1).record().serialText, "3");
    VideoChannelRecord record{};
    EXPECT_EQ(adapter().getVideoChannel(2, &record), 1);
    EXPECT_TRUE(m_boxes.seen().empty());
}

TEST_F(DeviceError, ALongNameIsCutToTheBox) {
    const std::string name(400, 'M');
    control().loadRig(("[[camera]]\nname = \"Long\"\nmodel = \"" + name +
                       "\"\nserial = \"7\"\nopen = \"throw\"\n")
                          .c_str());
    VideoChannelRecord record{};
    EXPECT_EQ(adapter().getVideoChannel(0, &record), 1);
    ASSERT_EQ(m_boxes.seen().size(), 1U);
    EXPECT_EQ(m_boxes.seen()[0].text,
              L"Failed to initialize device " + std::wstring(299 - 28, L'M'));
}

TEST_F(DeviceError, WhenEveryCameraThrowsNoneIsListedAndNoneIsTriedAgain) {
    control().loadRig(R"toml([[camera]]
name = "Only"
serial = "2"
open = "throw")toml");
    VideoChannelRecord record{};
    EXPECT_EQ(adapter().getVideoChannel(0, &record), 1);
    EXPECT_EQ(m_boxes.take().size(), 1U);
    EXPECT_EQ(adapter().getVideoChannel(0, &record), 1);
    EXPECT_TRUE(m_boxes.seen().empty());
}

TEST_F(DeviceError, ACameraThatDoesNotOpenIsListedWithoutADevice) {
    control().loadRig(oneDoesNotOpen);
    const CHostChannel silent = channel(0);
    EXPECT_TRUE(m_boxes.seen().empty());
    EXPECT_STREQ(silent.record().deviceName, "Silent");
    EXPECT_STREQ(silent.record().serialText, "n/a");
    EXPECT_EQ(silent.start(), refused("No valid video capture device selected."));
    EXPECT_EQ(silent.stop(), refused("No valid video capture device selected."));
    ImageInfo image{};
    EXPECT_EQ(silent.imageInfo(&image), deviceLost("No valid video capture device selected."));
    EXPECT_EQ(silent.wait(), deviceLost("The video capture device is disconnected."));
}

}  // namespace
