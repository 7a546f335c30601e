// SPDX-License-Identifier: MIT
#include <thread>

#include "tests/virtual_cameras/camera_rig.h"

namespace camera_tests {
namespace {

using LibraryRules = CRigTest;

TEST_F(LibraryRules, NothingWorksBeforeTheStartAndAfterTheEnd) {
    DShowLib::ExitLibrary();
    EXPECT_EQ(0U, misuses());
    {
        DShowLib::Grabber grabber;
        EXPECT_FALSE(grabber.getAvailableVideoCaptureDevices_());
        EXPECT_FALSE(grabber.isDevValid());
        EXPECT_EQ("The library is not initialised.", errorOf(grabber));
    }
    EXPECT_EQ(3U, misuses());
    EXPECT_EQ("Grabber::isDevValid: The library is not initialised.", misuse());
    DShowLib::ExitLibrary();
    EXPECT_EQ(3U, misuses());
    EXPECT_TRUE(DShowLib::InitLibrary());
    EXPECT_FALSE(DShowLib::InitLibrary());
    EXPECT_EQ(4U, misuses());
}

TEST_F(LibraryRules, EndingWithGrabbersIsMisuse) {
    DShowLib::Grabber grabber;
    DShowLib::ExitLibrary();
    EXPECT_EQ("ExitLibrary: there are grabbers still.", misuse());
}

TEST_F(LibraryRules, WithoutADeviceEverythingIsEmptyAndNothingIsMisuse) {
    DShowLib::Grabber grabber;
    EXPECT_FALSE(grabber.isDevValid());
    EXPECT_FALSE(grabber.isLive());
    EXPECT_FALSE(grabber.closeDev());
    EXPECT_FALSE(grabber.stopLive());
    EXPECT_FALSE(grabber.setFPS(10.0));
    EXPECT_EQ(0.0, grabber.getFPS());
    EXPECT_EQ(0, grabber.getAcqSizeMaxX());
    EXPECT_FALSE(grabber.setOverlayBitmapPathPosition(0));
    EXPECT_FALSE(grabber.startLive(false));
    EXPECT_EQ("No video capture device is open.", errorOf(grabber));
    EXPECT_FALSE(grabber.getAvailableVCDProperties());
    EXPECT_FALSE(grabber.getAvailableVideoNorms_());
    EXPECT_FALSE(grabber.getAvailableVideoFormats_(grabber.getVideoNorm()));
    EXPECT_FALSE(grabber.showVCDPropertyPage(nullptr, DShowLib::dstringa()));
    EXPECT_STREQ("", grabber.getDev().c_str());
    std::int64_t serial = 0;
    EXPECT_FALSE(grabber.getDev().getSerialNumber(serial));
    EXPECT_TRUE(grabber.setSinkType(sinkFor(subtypeY800)));
    EXPECT_EQ("", misuse());
    EXPECT_EQ(0U, virtualCamerasPagesShown());
}

TEST_F(LibraryRules, StartNeedsASinkThatTakesTheFrames) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 0));
    EXPECT_EQ("", errorOf(grabber));
    EXPECT_FALSE(grabber.startLive(false));
    EXPECT_EQ("There is no frame sink.", errorOf(grabber));
    EXPECT_EQ(1U, misuses());
    ASSERT_TRUE(grabber.setSinkType(sinkFor(subtypeUYVY)));
    EXPECT_FALSE(grabber.startLive(false));
    EXPECT_EQ("The frame sink takes none of the device's frames.", errorOf(grabber));
    EXPECT_EQ(1U, misuses());
}

TEST_F(LibraryRules, LiveVideoForbidsChanges) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 4));
    const auto sink = sinkFor(subtypeRGB24);
    ASSERT_TRUE(grabber.setSinkType(sink));
    ASSERT_TRUE(grabber.startLive(false));
    EXPECT_TRUE(grabber.isLive());
    EXPECT_FALSE(grabber.setSinkType(sinkFor(subtypeRGB24)));
    EXPECT_EQ(0U, misuses());
    EXPECT_FALSE(grabber.startLive(false));
    EXPECT_EQ("Live video is running already.", errorOf(grabber));
    EXPECT_FALSE(grabber.setVideoFormat(grabber.getVideoFormat()));
    EXPECT_EQ("This is not possible while live video is running.", errorOf(grabber));
    EXPECT_FALSE(grabber.setVideoNorm(grabber.getVideoNorm()));
    EXPECT_FALSE(grabber.setFPS(10.0));
    EXPECT_FALSE(open(grabber, 0));
    EXPECT_EQ(5U, misuses());
    EXPECT_TRUE(grabber.setInputChannel(grabber.getInputChannel()));
    EXPECT_TRUE(grabber.isLive());
    EXPECT_TRUE(grabber.stopLive());
    EXPECT_FALSE(grabber.isLive());
}

TEST_F(LibraryRules, ItemsOfOtherDevicesAreRefused) {
    DShowLib::Grabber first;
    DShowLib::Grabber second;
    ASSERT_TRUE(open(first, 0));
    ASSERT_TRUE(open(second, 1));
    EXPECT_FALSE(first.setVideoFormat(second.getVideoFormat()));
    EXPECT_FALSE(first.getAvailableFPS_(second.getVideoFormat()));
    EXPECT_EQ(2U, misuses());
    EXPECT_STREQ("Y800 (640x480)", first.getVideoFormat().c_str());
}

TEST_F(LibraryRules, AnItemOfAReplacedRigOpensNothing) {
    DShowLib::Grabber grabber;
    const auto devices = toStandard(grabber.getAvailableVideoCaptureDevices_());
    ASSERT_TRUE(grabber.openDev(devices[0]));
    choose("standard");
    EXPECT_FALSE(grabber.isDevValid());
    EXPECT_FALSE(grabber.openDev(devices[0]));
    EXPECT_EQ("There is no such video capture device.", errorOf(grabber));
    EXPECT_EQ(1U, misuses());
    EXPECT_STREQ("SIM Mono 23", devices[0].c_str());
}

TEST_F(LibraryRules, DevicesMayFailOrThrowWhileTheyAreOpened) {
    choose("failing-open");
    DShowLib::Grabber grabber;
    EXPECT_FALSE(open(grabber, 0));
    EXPECT_EQ("The video capture device does not answer.", errorOf(grabber));
    EXPECT_TRUE(open(grabber, 1));
    choose("throwing");
    std::string thrown;
    try {
        open(grabber, 0);
    } catch (char* text) {
        thrown = text;
    }
    EXPECT_EQ("The video capture device could not be initialised.", thrown);
    EXPECT_FALSE(grabber.isDevValid());
    EXPECT_TRUE(open(grabber, 1));
    EXPECT_EQ("", misuse());
}

TEST_F(LibraryRules, TwoGrabbersShareADeviceButOnlyOneStreams) {
    DShowLib::Grabber first;
    DShowLib::Grabber second;
    ASSERT_TRUE(open(first, 0));
    ASSERT_TRUE(open(second, 0));
    EXPECT_EQ(2U, alive().openDevices);
    ASSERT_TRUE(first.setSinkType(sinkFor(subtypeY800)));
    ASSERT_TRUE(second.setSinkType(sinkFor(subtypeY800)));
    ASSERT_TRUE(first.startLive(false));
    EXPECT_FALSE(second.startLive(false));
    EXPECT_EQ("The video capture device is in use.", errorOf(second));
    EXPECT_TRUE(second.closeDev());
    EXPECT_TRUE(first.isLive());
    EXPECT_EQ("", misuse());
}

TEST_F(LibraryRules, AnExclusiveDeviceIsOpenedOnce) {
    load("[[camera]]\nname = \"A\"\nexclusive = true\n");
    DShowLib::Grabber first;
    DShowLib::Grabber second;
    ASSERT_TRUE(open(first, 0));
    EXPECT_FALSE(open(second, 0));
    EXPECT_EQ("The video capture device is in use.", errorOf(second));
}

TEST_F(LibraryRules, FrameRatesAreClampedAndOtherwiseTakenAsAsked) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 0));
    EXPECT_EQ(60.0, grabber.getFPS());
    EXPECT_TRUE(grabber.setFPS(17.25));
    EXPECT_EQ(17.25, grabber.getFPS());
    EXPECT_TRUE(grabber.setFPS(10000.0));
    EXPECT_EQ(60.0, grabber.getFPS());
    EXPECT_TRUE(grabber.setFPS(0.5));
    EXPECT_EQ(3.75, grabber.getFPS());
    EXPECT_FALSE(grabber.setFPS(-1.0));
    const auto rates = toStandard(grabber.getAvailableFPS_(grabber.getVideoFormat()));
    EXPECT_EQ((std::vector<double>{60.0, 30.0, 15.0, 3.75}), rates);
    ASSERT_TRUE(open(grabber, 4));
    EXPECT_EQ(25.0, grabber.getFPS());
    EXPECT_FALSE(grabber.setFPS(10.0));
    EXPECT_FALSE(grabber.isFrameRateListAvailable());
    EXPECT_FALSE(grabber.getAvailableFPS_(grabber.getVideoFormat()));
}

TEST_F(LibraryRules, ANormBringsItsOwnFormats) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 4));
    EXPECT_STREQ("PAL_B", grabber.getVideoNorm().c_str());
    const auto norms = toStandard(grabber.getAvailableVideoNorms_());
    ASSERT_EQ(3U, norms.size());
    EXPECT_EQ(3U, grabber.getAvailableVideoFormats_(norms[0])->size());
    EXPECT_EQ(2U, grabber.getAvailableVideoFormats_(norms[1])->size());
    EXPECT_TRUE(grabber.setVideoNorm(norms[1]));
    EXPECT_STREQ("Y800 (640x480)", grabber.getVideoFormat().c_str());
    EXPECT_EQ(640, grabber.getAcqSizeMaxX());
    EXPECT_TRUE(grabber.setVideoNorm(norms[2]));
    EXPECT_STREQ("", grabber.getVideoFormat().c_str());
    EXPECT_TRUE(grabber.getAvailableVideoFormats_(norms[2])->empty());
    ASSERT_TRUE(grabber.setSinkType(sinkFor(subtypeY800)));
    EXPECT_FALSE(grabber.startLive(false));
    EXPECT_EQ("The video capture device offers no video format.", errorOf(grabber));
    EXPECT_EQ("", misuse());
}

class DeviceLoss : public CRigTest {
protected:
    void SetUp() override {
        CRigTest::SetUp();
        ASSERT_TRUE(m_grabber.addListener(&m_listener, 0xFFFFFFFF));
        ASSERT_TRUE(m_grabber.setSinkType(sinkFor(subtypeY800)));
    }
    CMemory m_listener;
    DShowLib::Grabber m_grabber;
};

TEST_F(DeviceLoss, AnUnpluggedDeviceIsGoneUntilItIsPluggedIn) {
    ASSERT_TRUE(open(m_grabber, 1));
    ASSERT_TRUE(m_grabber.startLive(false));
    const auto item = m_grabber.getDev();
    ASSERT_EQ(1, virtualCamerasUnplug("77C01"));
    EXPECT_EQ(1, m_listener.losses);
    EXPECT_FALSE(m_grabber.isDevValid());
    EXPECT_FALSE(m_grabber.isLive());
    EXPECT_EQ(0, m_grabber.getAcqSizeMaxX());
    EXPECT_EQ(4U, m_grabber.getAvailableVideoCaptureDevices_()->size());
    EXPECT_FALSE(m_grabber.startLive(false));
    EXPECT_EQ("The video capture device is not connected.", errorOf(m_grabber));
    EXPECT_FALSE(m_grabber.openDev(item));
    ASSERT_EQ(1, virtualCamerasPlug("77C01"));
    const auto devices = m_grabber.getAvailableVideoCaptureDevices_();
    ASSERT_EQ(5U, devices->size());
    EXPECT_STREQ("SIM Colour 5", (*devices)[1].c_str());
    EXPECT_FALSE(m_grabber.isDevValid()) << "it has to be opened again";
    EXPECT_TRUE(m_grabber.openDev(item));
    EXPECT_TRUE(m_grabber.isDevValid());
    EXPECT_TRUE(m_grabber.startLive(false));
    EXPECT_EQ(1, virtualCamerasDeliverFrame("77C01"));
    EXPECT_EQ("", misuse());
    EXPECT_EQ(0, virtualCamerasUnplug("FFFF"));
}

TEST_F(DeviceLoss, IsToldOnceOutsideLiveVideoToo) {
    ASSERT_TRUE(open(m_grabber, 4));
    ASSERT_EQ(1, virtualCamerasUnplug("SIM Frame Grabber"));
    ASSERT_EQ(1, virtualCamerasUnplug("SIM Frame Grabber"));
    ASSERT_EQ(1, virtualCamerasPlug("SIM Frame Grabber"));
    ASSERT_EQ(1, virtualCamerasUnplug("SIM Frame Grabber"));
    EXPECT_EQ(1, m_listener.losses);
}

TEST_F(DeviceLoss, OfTheOwnCameraMayBeCausedByAListener) {
    ASSERT_TRUE(open(m_grabber, 0));
    m_listener.onFrame = [](DShowLib::Grabber&) { virtualCamerasUnplug("1A2B"); };
    ASSERT_TRUE(m_grabber.startLive(false));
    EXPECT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_FALSE(m_grabber.isDevValid());
    m_grabber.closeDev();
    EXPECT_EQ(1, m_listener.losses);
}

TEST_F(DeviceLoss, WhileFramesFlowLeavesNothingBehind) {
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    ASSERT_TRUE(open(m_grabber, 0));
    ASSERT_TRUE(m_grabber.startLive(false));
    std::thread other([] { virtualCamerasUnplug("1A2B"); });
    m_grabber.stopLive();
    other.join();
    EXPECT_FALSE(m_grabber.isDevValid());
    EXPECT_EQ(0U, alive().liveDevices);
    EXPECT_EQ(1, m_listener.losses);
}

}  // namespace
}  // namespace camera_tests
