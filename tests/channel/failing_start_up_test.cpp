// SPDX-License-Identifier: MIT
// Cameras and libraries that throw while the cameras are listed.
#include "tests/channel/start_up_fixture.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FailingStartUp : public CStartUpTest {};

TEST_F(FailingStartUp, ReportsACameraThatThrowsATextAndGivesItsIndexToTheNext) {
    loadRig(rigs::camera("Broken", "1", "\"Y800 (8x4)\"",
                         "model = \"SIM Broken 1\"\nopen = \"throw\"") +
            rigs::grey());
    ASSERT_EQ(ask(), 0);
    EXPECT_STREQ(m_record.deviceName, "SIM Mono 23");
    EXPECT_EQ(ask(1), 1);
    EXPECT_THAT(win32::messageBoxes(), ElementsAre(isBox("Failed to initialize device SIM Broken 1",
                                                         "Device Error", 0x10)));
    EXPECT_EQ(alive().grabbers, 1U);
    EXPECT_EQ(alive().items, 0U);
}

TEST_F(FailingStartUp, HasGivenUpACameraBeforeItReportsIt) {
    throwFromCall("Grabber::getAcqSizeMaxX", "no");
    VirtualCamerasAlive inBox{};
    win32::runInside("MessageBoxW", [&] { inBox = alive(); });
    EXPECT_EQ(ask(), 1);
    win32::runInside("MessageBoxW", {});
    ASSERT_EQ(win32::messageBoxes().size(), 1U);
    EXPECT_EQ(inBox.grabbers, 1U) << "the one that lists the cameras";
    EXPECT_EQ(inBox.listeners, 0U);
    EXPECT_EQ(inBox.openDevices, 0U);
    EXPECT_EQ(inBox.sinks, 0U);
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
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(win32::messageBoxes().size(), 2U);
    EXPECT_EQ(ask(), 1);
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
    throwFromCall("Grabber::setSinkType", "no");
    EXPECT_EQ(channelCount(), 0);
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(alive().sinks, 0U);
}

TEST_F(FailingStartUp, MakesNoEventForACameraWhoseFirstReadingThrows) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    throwFromCall("IVCDRangeProperty::getValue", "no");
    EXPECT_EQ(channelCount(), 0);
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
    EXPECT_THAT(win32::callsOf("CreateEventA"), IsEmpty());
}

TEST_F(FailingStartUp, LetsATextOutsideAConstructionPass) {
    throwFromCall("Grabber::getAvailableVideoCaptureDevices_", "The library is busy.");
    EXPECT_EQ(thrownText([this] { ask(); }), "The library is busy.");
    EXPECT_TRUE(isRecordUntouched());
    EXPECT_TRUE(win32::messageBoxes().empty());
    EXPECT_FALSE(channelRegistry().isInitialised());
    EXPECT_EQ(ask(), 0);
}

TEST_F(FailingStartUp, LetsAFailingResultCodePassAndUndoesTheAttempt) {
    loadRig(rigs::color() + rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    failCall("IVCDRangeProperty::getRangeMax");
    EXPECT_EQ(thrownCode([this] { ask(); }), -2147024891);
    EXPECT_TRUE(isRecordUntouched());
    EXPECT_TRUE(win32::messageBoxes().empty());
    EXPECT_FALSE(channelRegistry().isInitialised());
    EXPECT_EQ(channelRegistry().size(), 0);
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(alive().openDevices, 0U);
    EXPECT_EQ(alive().items, 0U);

    recordAll();
    ASSERT_EQ(ask(1), 0);
    EXPECT_EQ(library_log::count("InitLibrary"), 0U) << "once per process";
    EXPECT_EQ(library_log::count("Grabber::openDev"), 2U);
    EXPECT_EQ(channelCount(), 2);
    EXPECT_DOUBLE_EQ(m_record.contrast, 0.2);
}

TEST_F(FailingStartUp, StartsTheLibraryAgainWhenAHostShutItDownAfterAFailedAttempt) {
    throwFromCall("Grabber::getAvailableVideoCaptureDevices_", "busy");
    EXPECT_ANY_THROW(GetVideoChannel(nullptr, 0, nullptr));
    channelRegistry().close(nullptr);
    EXPECT_EQ(ask(), 0);
    EXPECT_THAT(library_log::operations({"InitLibrary", "ExitLibrary"}),
                ElementsAre("InitLibrary", "ExitLibrary", "InitLibrary"));
}

}  // namespace
