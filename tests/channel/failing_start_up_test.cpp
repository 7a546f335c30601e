// SPDX-License-Identifier: MIT
// Cameras and libraries that throw while the cameras are listed.
#include "tests/channel/start_up_fixture.h"

namespace {

class FailingStartUp : public CStartUpTest {};

TEST_F(FailingStartUp, ReportsACameraThatThrowsATextAndGivesItsIndexToTheNext) {
    loadRig(rigs::camera("Broken", "1", "\"Y800 (8x4)\"",
                         "model = \"SIM Broken 1\"\nopen = \"throw\"") +
            rigs::grey());
    HostRecord host;
    ASSERT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
    EXPECT_STREQ(host.record.deviceName, "SIM Mono 23");
    EXPECT_EQ(GetVideoChannel(nullptr, 1, &host.record), 1);
    const auto boxes = win32::messageBoxes();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].owner, nullptr);
    EXPECT_EQ(boxes[0].text, "Failed to initialize device SIM Broken 1");
    EXPECT_EQ(boxes[0].caption, "Device Error");
    EXPECT_EQ(boxes[0].type, 0x10U);
    EXPECT_EQ(alive().grabbers, 1U);
    EXPECT_EQ(alive().items, 0U);
}

TEST_F(FailingStartUp, GoesOnAfterACameraInTheMiddleThatThrows) {
    loadRig(rigs::grey() + rigs::camera("Broken", "1", "\"Y800 (8x4)\"", "open = \"throw\"") +
            rigs::color());
    EXPECT_STREQ(openRecord(0).deviceName, "SIM Mono 23");
    EXPECT_STREQ(openRecord(1).deviceName, "SIM Color 23");
    EXPECT_EQ(channelCount(), 2);
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
}

TEST_F(FailingStartUp, ListsNothingWhenEveryCameraThrows) {
    loadRig(rigs::camera("One", "1", "\"Y800 (8x4)\"", "open = \"throw\"") +
            rigs::camera("Two", "2", "\"Y800 (8x4)\"", "open = \"throw\""));
    HostRecord host;
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 1);
    EXPECT_EQ(win32::messageBoxes().size(), 2U);
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 1);
    EXPECT_EQ(win32::messageBoxes().size(), 2U);
    EXPECT_TRUE(channelRegistry().isInitialised());
    EXPECT_EQ(alive().grabbers, 0U);
}

TEST_F(FailingStartUp, ShowsAModelNameBeyondAsciiAsItIs) {
    loadRig(rigs::camera("Broken", "1", "\"Y800 (8x4)\"",
                         "model = \"Kam\u00e9ra \u4e2d\"\nopen = \"throw\""));
    EXPECT_EQ(channelCount(), 0);
    ASSERT_EQ(win32::messageBoxes().size(), 1U);
    EXPECT_EQ(win32::messageBoxes()[0].text, "Failed to initialize device Kam\u00e9ra \u4e2d");
}

TEST_F(FailingStartUp, CutsTheReportTo299Characters) {
    loadRig(rigs::camera("Broken", "1", "\"Y800 (8x4)\"",
                         "model = \"" + std::string(400, 'm') + "\"\nopen = \"throw\""));
    EXPECT_EQ(channelCount(), 0);
    ASSERT_EQ(win32::messageBoxes().size(), 1U);
    EXPECT_EQ(win32::messageBoxes()[0].text,
              "Failed to initialize device " + std::string(271, 'm'));
}

TEST_F(FailingStartUp, ReportsATextThrownAnywhereInTheConstruction) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    virtualCamerasFailCall("Grabber::setSinkType", 1, 1, VIRTUAL_CAMERAS_FAIL_THROW, 0, "no");
    EXPECT_EQ(channelCount(), 0);
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(alive().sinks, 0U);
}

TEST_F(FailingStartUp, LetsATextOutsideAConstructionPass) {
    loadRig(rigs::grey());
    virtualCamerasFailCall("Grabber::getAvailableVideoCaptureDevices_", 1, 1,
                           VIRTUAL_CAMERAS_FAIL_THROW, 0, "The library is busy.");
    HostRecord host;
    try {
        GetVideoChannel(nullptr, 0, &host.record);
        FAIL() << "nothing was thrown";
    } catch (char* text) {
        EXPECT_STREQ(text, "The library is busy.");
    }
    EXPECT_TRUE(host.isUntouched());
    EXPECT_TRUE(win32::messageBoxes().empty());
    EXPECT_FALSE(channelRegistry().isInitialised());
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
}

TEST_F(FailingStartUp, LetsAFailingResultCodePassAndUndoesTheAttempt) {
    loadRig(rigs::color() + rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    virtualCamerasFailCall("IVCDRangeProperty::getRangeMax", 1, 1, VIRTUAL_CAMERAS_FAIL_CODE,
                           static_cast<std::int32_t>(0x80070005), "");
    HostRecord host;
    try {
        GetVideoChannel(nullptr, 0, &host.record);
        FAIL() << "nothing was thrown";
    } catch (std::int32_t code) {
        EXPECT_EQ(code, static_cast<std::int32_t>(0x80070005));
    }
    EXPECT_TRUE(host.isUntouched());
    EXPECT_TRUE(win32::messageBoxes().empty());
    EXPECT_FALSE(channelRegistry().isInitialised());
    EXPECT_EQ(channelRegistry().size(), 0);
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(alive().openDevices, 0U);
    EXPECT_EQ(alive().items, 0U);

    recordAll();
    ASSERT_EQ(GetVideoChannel(nullptr, 1, &host.record), 0);
    EXPECT_EQ(library_log::count("InitLibrary"), 0U) << "once per process";
    EXPECT_EQ(library_log::count("Grabber::openDev"), 2U);
    EXPECT_EQ(channelCount(), 2);
    EXPECT_DOUBLE_EQ(host.record.contrast, 0.2);
}

TEST_F(FailingStartUp, StartsTheLibraryAgainWhenAHostShutItDownAfterAFailedAttempt) {
    loadRig(rigs::grey());
    virtualCamerasFailCall("Grabber::getAvailableVideoCaptureDevices_", 1, 1,
                           VIRTUAL_CAMERAS_FAIL_THROW, 0, "busy");
    EXPECT_ANY_THROW(GetVideoChannel(nullptr, 0, nullptr));
    channelRegistry().close(nullptr);
    HostRecord host;
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
    EXPECT_EQ(library_log::operations({"InitLibrary", "ExitLibrary"}),
              (std::vector<std::string>{"InitLibrary", "ExitLibrary", "InitLibrary"}));
}

}  // namespace
