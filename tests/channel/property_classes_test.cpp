// SPDX-License-Identifier: MIT
// What the classes of settings and commands are to each other, how long their
// objects live, and that they call nothing of the library but what it promises.
#include <set>
#include <type_traits>

#include "properties/camera_features.h"
#include "properties/device_format_lists.h"
#include "properties/device_formats.h"
#include "properties/executables.h"
#include "properties/process_store.h"
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::IsEmpty;

using PropertyClasses = CPropertyTest;

template <class Base, class... Derived>
constexpr bool isBaseOfAll = (std::is_base_of_v<Base, Derived> && ...);

TEST_F(PropertyClasses, FormTheirTree) {
    EXPECT_TRUE(
        (isBaseOfAll<CProperty, CVCDPropertyValue, CVCDPropertyAbsValue, CVCDPropertyAuto,
                     CVCDPropertyMapString, CFeatures, CPropertyPixelFormat, CPropertyFrameRate>));
    EXPECT_TRUE((isBaseOfAll<CProperty, CPropertyVideoFormat, CPropertyVideoFormats,
                             CPropertyVideoFormatAt, CPropertyVideoNorm, CPropertyVideoNorms,
                             CPropertyInputChannel, CPropertyInputChannels>));
    EXPECT_TRUE((isBaseOfAll<CVCDPropertyValue, CVCDPropertyValueMin, CVCDPropertyValueMax>));
    EXPECT_TRUE(
        (isBaseOfAll<CVCDPropertyAbsValue, CVCDPropertyAbsValueMin, CVCDPropertyAbsValueMax>));
    EXPECT_TRUE((isBaseOfAll<CExecute, CExecuteOnePush, CExecutePropertyDialog>));
    EXPECT_FALSE((std::is_base_of_v<CProperty, CExecute>));
}

TEST_F(PropertyClasses, AreNeverCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<CProperty>);
    EXPECT_FALSE(std::is_copy_constructible_v<CVCDPropertyValue>);
    EXPECT_FALSE(std::is_copy_assignable_v<CVCDPropertyValue>);
    EXPECT_FALSE(std::is_copy_constructible_v<CExecuteOnePush>);
    EXPECT_FALSE(std::is_copy_constructible_v<CVideoChannel>);
}

TEST_F(PropertyClasses, MakeObjectsThatOutliveTheirChannel) {
    loadRig(camera(""));
    const std::size_t before = processStore().size();
    CPropertyHost host;
    // The pixel format, the dialog, and four list entries.
    EXPECT_EQ(processStore().size(), before + 6);
    host.close();
    EXPECT_EQ(processStore().size(), before + 6);
}

// All operations of the library that the adapter may call.
const std::set<std::string>& promised() {
    static const std::set<std::string> operations = {"InitLibrary",
                                                     "ExitLibrary",
                                                     "Grabber::Grabber",
                                                     "Grabber::~Grabber",
                                                     "Grabber::getAvailableVideoCaptureDevices_",
                                                     "Grabber::openDev",
                                                     "Grabber::closeDev",
                                                     "Grabber::isDevValid",
                                                     "Grabber::getDev",
                                                     "Grabber::addListener",
                                                     "Grabber::setOverlayBitmapPathPosition",
                                                     "Grabber::getAcqSizeMaxX",
                                                     "Grabber::getAcqSizeMaxY",
                                                     "Grabber::startLive",
                                                     "Grabber::stopLive",
                                                     "Grabber::isLive",
                                                     "Grabber::getLastError",
                                                     "Grabber::setSinkType",
                                                     "Grabber::getVideoFormat",
                                                     "Grabber::setVideoFormat",
                                                     "Grabber::getAvailableVideoFormats_",
                                                     "Grabber::getVideoNorm",
                                                     "Grabber::setVideoNorm",
                                                     "Grabber::getAvailableVideoNorms_",
                                                     "Grabber::getInputChannel",
                                                     "Grabber::setInputChannel",
                                                     "Grabber::getAvailableInputChannels_",
                                                     "Grabber::isInputChannelAvailableWithCurDev",
                                                     "Grabber::getFPS",
                                                     "Grabber::setFPS",
                                                     "Grabber::getAvailableFPS_",
                                                     "Grabber::isFrameRateListAvailable",
                                                     "Grabber::getAvailableVCDProperties",
                                                     "Grabber::showVCDPropertyPage",
                                                     "VideoCaptureDeviceItem::c_str",
                                                     "VideoCaptureDeviceItem::getFriendlyName_",
                                                     "VideoCaptureDeviceItem::getSerialNumber",
                                                     "VideoFormatItem::c_str",
                                                     "VideoFormatItem::toString_",
                                                     "VideoNormItem::c_str",
                                                     "AnalogChannelItem::c_str",
                                                     "AnalogChannelItem::toString_",
                                                     "Error::c_str",
                                                     "FrameHandlerSink::create",
                                                     "FrameHandlerSink::~FrameHandlerSink",
                                                     "FrameHandlerSink::setSnapMode",
                                                     "FrameHandlerSink::getOutputFrameType",
                                                     "FrameHandlerSink::getMemBufferCollection",
                                                     "MemBufferCollection::getBufferCount",
                                                     "MemBufferCollection::operator[]",
                                                     "MemBuffer::lock",
                                                     "MemBuffer::unlock",
                                                     "MemBuffer::getData",
                                                     "MemBuffer::getSize",
                                                     "GrabberListener::frameReady",
                                                     "IVCDPropertyItems::getCount",
                                                     "IVCDPropertyItems::getItem",
                                                     "IVCDPropertyItems::findItem",
                                                     "IVCDPropertyItem::getName",
                                                     "IVCDPropertyItem::getItemID",
                                                     "IVCDPropertyItem::getCount",
                                                     "IVCDPropertyItem::getItem",
                                                     "IVCDPropertyItem::findElement",
                                                     "IVCDPropertyElement::getName",
                                                     "IVCDPropertyElement::getElementID",
                                                     "IVCDPropertyElement::getCount",
                                                     "IVCDPropertyElement::getItem",
                                                     "IVCDPropertyElement::QueryInterface",
                                                     "IVCDPropertyInterface::getInterfaceID",
                                                     "IVCDRangeProperty::getInterfaceID",
                                                     "IVCDRangeProperty::getValue",
                                                     "IVCDRangeProperty::setValue",
                                                     "IVCDRangeProperty::getRangeMin",
                                                     "IVCDRangeProperty::getRangeMax",
                                                     "IVCDAbsoluteValueProperty::getInterfaceID",
                                                     "IVCDAbsoluteValueProperty::getValue",
                                                     "IVCDAbsoluteValueProperty::setValue",
                                                     "IVCDAbsoluteValueProperty::getRangeMin",
                                                     "IVCDAbsoluteValueProperty::getRangeMax",
                                                     "IVCDSwitchProperty::getInterfaceID",
                                                     "IVCDSwitchProperty::getSwitch",
                                                     "IVCDSwitchProperty::setSwitch",
                                                     "IVCDButtonProperty::getInterfaceID",
                                                     "IVCDButtonProperty::push",
                                                     "IVCDMapStringsProperty::getInterfaceID",
                                                     "IVCDMapStringsProperty::getStrings",
                                                     "IVCDMapStringsProperty::getString",
                                                     "IVCDMapStringsProperty::setString",
                                                     "IVCDTexts::getCount",
                                                     "IVCDTexts::getItem"};
    return operations;
}

// Names in the log that the library does not promise.
std::set<std::string> otherCalls() {
    std::set<std::string> others;
    VirtualCamerasCall call{};
    for (std::uint64_t i = 0; virtualCamerasGetCall(i, &call) != 0; ++i) {
        if (!promised().contains(call.operation)) {
            others.insert(call.operation);
        }
    }
    return others;
}

class StandardCameraCalls : public CPropertyTest, public testing::WithParamInterface<int> {};

TEST_P(StandardCameraCalls, AreAmongThosePromised) {
    chooseRig("standard");
    CPropertyHost host(static_cast<std::uint32_t>(GetParam()));
    for (const std::string& key : host.list("feature_")) {
        const Answer answer = host.get(key);
        EXPECT_EQ(answer.result, 0) << key;
        // Back to what it is; read-only ones and automatics refuse.
        host.set(key, answer.value);
    }
    for (const std::string& command : host.list("execute_")) {
        host.execute(command);
    }
    EXPECT_EQ(host.apply(CameraParameterBlock{}), accepted());
    EXPECT_EQ(host.start(), accepted());
    EXPECT_EQ(host.stop(), accepted());
    EXPECT_GT(virtualCamerasCallCount(), 100U);
    EXPECT_THAT(otherCalls(), IsEmpty());
}

TEST_P(StandardCameraCalls, LeaveNothingOfTheLibraryBehind) {
    chooseRig("standard");
    CPropertyHost host(static_cast<std::uint32_t>(GetParam()));
    const VirtualCamerasAlive before = alive();
    const auto expectAsBefore = [&before](const std::string& key) {
        const VirtualCamerasAlive now = alive();
        EXPECT_EQ(now.items, before.items) << key;
        EXPECT_EQ(now.sinks, before.sinks) << key;
        EXPECT_EQ(now.interfaces, before.interfaces) << key;
        EXPECT_EQ(now.grabbers, before.grabbers) << key;
    };
    for (const std::string& key : host.list("feature_")) {
        const Answer answer = host.get(key);
        expectAsBefore("get " + key);
        host.choice(key.c_str(), 0);
        expectAsBefore("choice " + key);
        host.set(key, "no such value");
        expectAsBefore("refused set " + key);
        host.set(key, answer.value);
        expectAsBefore("set " + key);
    }
    for (const std::string& command : host.list("execute_")) {
        host.execute(command);
        expectAsBefore(command);
    }
    host.apply(CameraParameterBlock{});
    expectAsBefore("parameters");
}

INSTANTIATE_TEST_SUITE_P(OfTheStandardRig, StandardCameraCalls, testing::Range(0, 5));

}  // namespace
}  // namespace property_tests
