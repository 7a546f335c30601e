// SPDX-License-Identifier: MIT
// Failures that pass through the adapter to the host, caught by their types.
#include <gtest/gtest.h>

#include "tests/border/support/border_test.h"
#include "tests/border/support/message_boxes.h"
#include "tests/support/thrown.h"

namespace {

constexpr std::int32_t failure = -2147467259;  // 0x80004005

class Exceptions : public CBorderTest {
protected:
    void failNextWithCode(const char* operation, std::int32_t code) const {
        control().failNext(operation, VIRTUAL_CAMERAS_FAIL_CODE, code, "");
    }
    void failNextWithText(const char* operation, const char* text) const {
        control().failNext(operation, VIRTUAL_CAMERAS_FAIL_THROW, 0, text);
    }
};

TEST_F(Exceptions, AFailingResultCodeLeavesAGetAsANumber) {
    const CHostChannel camera = channel(0);
    failNextWithCode("IVCDRangeProperty::getValue", failure);
    EXPECT_EQ(thrownCode([&] { camera.get("contrast value range"); }), failure);
    EXPECT_EQ(camera.get("contrast value range"), accepted("51"));
}

TEST_F(Exceptions, AFailingResultCodeOfASetIsAnUnknownProperty) {
    const CHostChannel camera = channel(0);
    failNextWithCode("IVCDRangeProperty::setValue", failure);
    EXPECT_EQ(camera.set("contrast value range", "52"),
              refused("Unknown property \"contrast value range\""));
    EXPECT_EQ(camera.set("contrast value range", "52"), accepted());
}

TEST_F(Exceptions, AFailingResultCodeLeavesTheParameterBlockAsANumber) {
    const CHostChannel camera = channel(0);
    const CameraParameterBlock block{};
    failNextWithCode("IVCDRangeProperty::getRangeMin", failure);
    EXPECT_EQ(thrownCode([&] { camera.parameters(block); }), failure);
}

TEST_F(Exceptions, AFailingResultCodeLeavesTheListingAndTheNextCallListsAnew) {
    CMessageBoxes boxes;
    VideoChannelRecord record{};
    failNextWithCode("IVCDPropertyItems::getCount", failure);
    EXPECT_EQ(thrownCode([&] { adapter().getVideoChannel(0, &record); }), failure);
    EXPECT_EQ(record.context, nullptr);
    EXPECT_TRUE(boxes.seen().empty());
    EXPECT_EQ(control().alive().grabbers, 0U);
    EXPECT_STREQ(channel(3).record().serialText, "C0506");
}

TEST_F(Exceptions, ATextOfTheLibraryLeavesAStart) {
    const CHostChannel camera = channel(0);
    failNextWithText("Grabber::startLive", "The cable is loose.");
    EXPECT_EQ(thrownText([&] { camera.start(); }), "The cable is loose.");
    EXPECT_EQ(camera.start(), accepted());
}

TEST_F(Exceptions, ATextOfTheLibraryLeavesAStopAWaitAndADescription) {
    const CHostChannel camera = liveChannel(0);
    ImageInfo image{};
    failNextWithText("Grabber::isDevValid", "One.");
    EXPECT_EQ(thrownText([&] { camera.wait(); }), "One.");
    failNextWithText("Grabber::isDevValid", "Two.");
    EXPECT_EQ(thrownText([&] { camera.imageInfo(&image); }), "Two.");
    failNextWithText("Grabber::stopLive", "Three.");
    EXPECT_EQ(thrownText([&] { camera.stop(); }), "Three.");
    EXPECT_EQ(camera.stop(), accepted());
}

TEST_F(Exceptions, ATextOfTheLibraryWhileListingLeavesToTheHost) {
    CMessageBoxes boxes;
    VideoChannelRecord record{};
    failNextWithText("Grabber::getAvailableVideoCaptureDevices_", "No bus.");
    EXPECT_EQ(thrownText([&] { adapter().getVideoChannel(0, &record); }), "No bus.");
    EXPECT_TRUE(boxes.seen().empty());
    EXPECT_EQ(adapter().getVideoChannel(0, &record), 0);
}

TEST_F(Exceptions, ANegativeChoiceIsOutOfRange) {
    const CHostChannel camera = channel(0);
    EXPECT_EQ(outOfRangeText([&] { camera.choice("videoformat", -1); }),
              "invalid vector<T> subscript");
    EXPECT_EQ(camera.choice("videoformat", 0), accepted("Y800 (64x48)"));
}

}  // namespace
