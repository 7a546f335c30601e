// SPDX-License-Identifier: MIT
// What stays outside the adapter: exceptions of others, and operations of the
// library that it does not need.
#include <algorithm>
#include <new>
#include <set>

#include "adapter/channel_registry.h"
#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

using ::testing::IsEmpty;

class Border : public CChannelTest {};

TEST_F(Border, LetsAFailureOfMemoryPassOutOfTheStartUp) {
    loadRig(rigs::grey() + rigs::color());
    // The first text that the library hands out has no memory.
    win32::injectResults("CoTaskMemAlloc", {1, 1, 1, 1, 1, 1, 1, 1, 0});
    EXPECT_THROW(GetVideoChannel(nullptr, 0, nullptr), std::bad_alloc);
    win32::clearInjected();
    EXPECT_THAT(win32::messageBoxes(), IsEmpty());
    EXPECT_FALSE(channelRegistry().isInitialised());
    EXPECT_EQ(alive().grabbers, 0U);
    openRecord(1);
}

TEST_F(Border, KeepsEveryBufferOfTheHostWithinItsBytes) {
    const std::string longText(1000, 'k');
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    CVideoChannel& channel = makeChannel();
    CHostText text;
    CHostText value;
    EXPECT_EQ(channel.GetPropertyValue(text, longText.c_str(), value), 1);
    EXPECT_EQ(text.text(), "Unknown property \"" + std::string(237, 'k'));
    text.refill();
    EXPECT_EQ(channel.SetPropertyValue(text, longText.c_str(), longText.c_str()), 1);
    EXPECT_EQ(text.text(), "Unknown property \"" + std::string(237, 'k'));
    text.refill();
    EXPECT_EQ(channel.ExecuteCommand(text, longText.c_str()), 1);
    EXPECT_EQ(text.text(), "Unknown command \"" + std::string(238, 'k'));
    text.refill();
    EXPECT_EQ(channel.GetPropertyChoice(text, longText.c_str(), 0, value), 1);
    EXPECT_EQ(text.text(), "Feature " + std::string(247, 'k'));
}

TEST_F(Border, LooksUpWithoutAddingToTheTables) {
    loadRig(rigs::grey(rigs::exposureWithValueSwitch));
    CVideoChannel& channel = makeChannel();
    const auto names = [&] {
        std::vector<std::string> all;
        CHostText name;
        for (std::int32_t i = 0; channel.GetPropertyName(nullptr, i, name) == 0; ++i) {
            all.push_back(name.text());
        }
        return all;
    };
    const auto before = names();
    CameraParameterBlock block{};
    block.triggerEnable = 1;
    EXPECT_EQ(channel.SetCameraParameters(nullptr, &block), 0);
    setProperty(channel, "nothing", "1");
    property(channel, "nothing at all");
    EXPECT_EQ(channel.ExecuteCommand(nullptr, "no command"), 1);
    start(channel);
    virtualCamerasUnplug("1A2B");
    virtualCamerasPlug("1A2B");
    EXPECT_EQ(waitInVain(channel).status, 4096U);
    EXPECT_EQ(names(), before);
}

// One long session of a host with everything that a camera can offer.
void runSession(const VideoChannelRecord& record) {
    CHostText text;
    CHostText value;
    CHostStatus status;
    CHostMemory frame(1024);
    ImageInfo image{};
    CameraParameterBlock block{};
    block.triggerEnable = 1;
    void* context = record.context;
    for (std::int32_t i = 0; record.GetPropertyName(text, context, i, value) == 0; ++i) {
        const std::string key = value.text();
        record.GetPropertyType(text, context, key.c_str(), status);
        record.GetPropertyChoice(text, context, key.c_str(), 0, value);
        record.GetPropertyAttribute(text, context, key.c_str(), 1, value);
        if (record.GetPropertyValue(text, context, key.c_str(), value) == 0) {
            record.SetPropertyValue(text, context, key.c_str(), value.text().c_str());
        }
    }
    record.ExecuteCommand(text, context, "propertydialog");
    record.ExecuteCommand(text, context, "focus one push");
    record.GetImageInfo(text, context, &image, status);
    record.StartAcquisition(text, context);
    record.SetCameraParameters(text, context, &block);
    win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
    record.WaitFrame(text, context, status);
    record.CopyFrame(text, context, frame.data(), status);
    record.StopAcquisition(text, context);
    record.StopAcquisition(text, context);
    virtualCamerasFailCall("Grabber::startLive", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "no");
    record.StartAcquisition(text, context);
}

TEST_F(Border, CallsNothingOfTheLibraryThatItDoesNotNeed) {
    loadRig(rigs::camera("SIM Full", "1", "\"BY8 (8x4)\", \"Y800 (8x4)\"",
                         "framerates = [15.0, 30.0]\nchannels = [\"Composite\"]\n" +
                             rigs::range("Contrast", 0, 255, 51) + std::string(rigs::exposure) +
                             std::string(rigs::trigger) +
                             "[[camera.item]]\nname = \"Focus\"\n\"One Push\".button = true\n" +
                             "[[camera.item]]\nname = \"Mode\"\nValue.strings = { choices = "
                             "[\"A\", \"B\"] }\n"));
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_STEPPED);
    recordAll();
    const VideoChannelRecord record = openRecord();
    runSession(record);
    virtualCamerasUnplug("1");
    virtualCamerasPlug("1");
    win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
    record.WaitFrame(nullptr, record.context, nullptr);
    virtualCamerasDeliverFrame("1");
    record.CloseChannel(nullptr, record.context);

    const std::set<std::string> needed = {
        "InitLibrary", "ExitLibrary", "Grabber::Grabber", "Grabber::~Grabber",
        "Grabber::getAvailableVideoCaptureDevices_", "Grabber::openDev", "Grabber::closeDev",
        "Grabber::isDevValid", "Grabber::getDev", "Grabber::addListener",
        "Grabber::setOverlayBitmapPathPosition", "Grabber::getAcqSizeMaxX",
        "Grabber::getAcqSizeMaxY", "Grabber::startLive", "Grabber::stopLive", "Grabber::isLive",
        "Grabber::getLastError", "Grabber::setSinkType", "Grabber::getVideoFormat",
        "Grabber::setVideoFormat", "Grabber::getAvailableVideoFormats_", "Grabber::getVideoNorm",
        "Grabber::setVideoNorm", "Grabber::getAvailableVideoNorms_", "Grabber::getInputChannel",
        "Grabber::setInputChannel", "Grabber::getAvailableInputChannels_",
        "Grabber::isInputChannelAvailableWithCurDev", "Grabber::getFPS", "Grabber::setFPS",
        "Grabber::getAvailableFPS_", "Grabber::isFrameRateListAvailable",
        "Grabber::getAvailableVCDProperties", "Grabber::showVCDPropertyPage",
        "VideoCaptureDeviceItem::c_str", "VideoCaptureDeviceItem::getFriendlyName_",
        "VideoCaptureDeviceItem::getSerialNumber", "VideoFormatItem::c_str",
        "VideoFormatItem::toString_", "VideoNormItem::c_str", "AnalogChannelItem::c_str",
        "AnalogChannelItem::toString_", "Error::c_str", "FrameHandlerSink::create",
        "FrameHandlerSink::~FrameHandlerSink", "FrameHandlerSink::setSnapMode",
        "FrameHandlerSink::getOutputFrameType", "FrameHandlerSink::getMemBufferCollection",
        "MemBufferCollection::getBufferCount", "MemBufferCollection::operator[]", "MemBuffer::lock",
        "MemBuffer::unlock", "MemBuffer::getData", "MemBuffer::getSize",
        // Notifications, out of the library.
        "GrabberListener::frameReady", "GrabberListener::frameDropped",
        "GrabberListener::deviceLost"};
    std::set<std::string> others;
    for (const std::string& operation : library_log::operations()) {
        if (needed.count(operation) == 0 && operation.rfind("IVCD", 0) != 0) {
            others.insert(operation);
        }
    }
    EXPECT_THAT(others, IsEmpty());
    EXPECT_GT(library_log::operations().size(), 200U) << "the session was cut short";
}

}  // namespace
