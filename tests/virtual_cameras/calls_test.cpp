// SPDX-License-Identifier: MIT
#include <stdexcept>

#include "tests/virtual_cameras/camera_rig.h"

namespace camera_tests {
namespace {

class Calls : public CRigTest {
protected:
    static std::string logged(std::uint64_t sequence) {
        VirtualCamerasCall call;
        if (virtualCamerasGetCall(sequence, &call) == 0) {
            return "none";
        }
        return std::string(call.camera) + "|" + call.operation + "|" + call.arguments + "|" +
               call.result;
    }
};

TEST_F(Calls, AreLoggedInOrderWithArgumentsAndResults) {
    virtualCamerasRecordCalls(1);
    DShowLib::Grabber grabber;
    const auto devices = grabber.getAvailableVideoCaptureDevices_();
    grabber.openDev((*devices)[0]);
    grabber.setFPS(15.0);
    grabber.getFPS();
    grabber.setVideoFormat(grabber.getVideoFormat());
    const auto sink = sinkFor(subtypeY800);
    grabber.setSinkType(sink);
    grabber.startLive(false);
    virtualCamerasDeliverFrame("1A2B");
    grabber.closeDev();
    const std::vector<std::string> expected = {
        "|Grabber::Grabber||",
        "|Grabber::getAvailableVideoCaptureDevices_||5",
        "1A2B|Grabber::openDev|SIM Mono 23|true",
        "1A2B|Grabber::setFPS|15|true",
        "1A2B|Grabber::getFPS||15",
        "1A2B|Grabber::getVideoFormat||Y800 (640x480)",
        "1A2B|Grabber::setVideoFormat|Y800 (640x480)|true",
        "|FrameHandlerSink::create|5,1,{30303859-0000-0010-8000-00AA00389B71}|sink",
        "1A2B|Grabber::setSinkType|sink|true",
        "1A2B|Grabber::startLive|false|true",
        "1A2B|GrabberListener::frameReady|1,0|",
        "1A2B|Grabber::closeDev||true"};
    std::vector<std::string> found;
    for (std::uint64_t i = 0; i < virtualCamerasCallCount(); ++i) {
        found.push_back(logged(i));
    }
    EXPECT_EQ(expected, found);
}

TEST_F(Calls, OfPropertiesNameItemElementAndCode) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 0));
    virtualCamerasRecordCalls(1);
    const auto items = grabber.getAvailableVCDProperties();
    CComText identifier(L"{284C0E06-010B-45BF-8291-09D90A459B28}");
    DShowLib::smart_com<DShowLib::IVCDPropertyItem> item;
    items->findItem(identifier.get(), item.put());
    DShowLib::smart_com<DShowLib::IVCDPropertyElement> element;
    CComText value(L"{B57D3000-0AC6-4819-A609-272A33140ACA}");
    item->findElement(value.get(), element.put());
    DShowLib::smart_com<DShowLib::IVCDRangeProperty> range;
    element->QueryInterface(DShowLib::IID_IVCDRangeProperty, reinterpret_cast<void**>(range.put()));
    LONG number = 0;
    range->getValue(&number);
    range->setValue(7);
    range->setValue(256);
    EXPECT_EQ("1A2B|Grabber::getAvailableVCDProperties||items", logged(0));
    EXPECT_EQ("1A2B|IVCDPropertyItems::findItem|{284C0E06-010B-45BF-8291-09D90A459B28}|0x00000000",
              logged(1));
    EXPECT_EQ(
        "1A2B|IVCDPropertyItem::findElement|Brightness,{B57D3000-0AC6-4819-A609-272A33140ACA}|"
        "0x00000000",
        logged(2));
    EXPECT_EQ(
        "1A2B|IVCDPropertyElement::QueryInterface|Brightness,Value,"
        "{99B44940-BFE1-4083-ADA1-BE703F4B8E03}|0x00000000",
        logged(3));
    EXPECT_EQ("1A2B|IVCDRangeProperty::getValue|Brightness,Value|0x00000000 51", logged(4));
    EXPECT_EQ("1A2B|IVCDRangeProperty::setValue|Brightness,Value,7|0x00000000", logged(5));
    EXPECT_EQ("1A2B|IVCDRangeProperty::setValue|Brightness,Value,256|0x80070057", logged(6));
    EXPECT_EQ("7", property("1A2B", "Brightness", "Value", "IVCDRangeProperty"));
}

TEST_F(Calls, AreNotLoggedUnlessAsked) {
    DShowLib::Grabber grabber;
    EXPECT_EQ(0U, virtualCamerasCallCount());
    virtualCamerasRecordCalls(1);
    grabber.isLive();
    EXPECT_EQ(1U, virtualCamerasCallCount());
    virtualCamerasRecordCalls(0);
    grabber.isLive();
    EXPECT_EQ(1U, virtualCamerasCallCount());
    virtualCamerasRecordCalls(1);
    EXPECT_EQ(0U, virtualCamerasCallCount());
    EXPECT_EQ("none", logged(0));
    EXPECT_EQ(0, virtualCamerasWaitForCall("Grabber::isLive", 0, 0, nullptr));
}

TEST_F(Calls, FailFromTheNthOn) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 0));
    virtualCamerasFailCall("Grabber::isDevValid", 2, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "why not");
    EXPECT_TRUE(grabber.isDevValid());
    EXPECT_FALSE(grabber.isDevValid());
    EXPECT_EQ("why not", errorOf(grabber));
    EXPECT_TRUE(grabber.isDevValid());
    virtualCamerasFailCall("Grabber::isDevValid", 1, 0, VIRTUAL_CAMERAS_FAIL_FALSE, 0, nullptr);
    EXPECT_FALSE(grabber.isDevValid());
    EXPECT_FALSE(grabber.isDevValid());
    virtualCamerasClearFailures();
    EXPECT_TRUE(grabber.isDevValid());
    EXPECT_EQ("", misuse());
}

TEST_F(Calls, FailByMissingOrEmptyLists) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 4));
    const char* operation = "Grabber::getAvailableVideoNorms_";
    virtualCamerasFailCall(operation, 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, nullptr);
    EXPECT_FALSE(grabber.getAvailableVideoNorms_());
    virtualCamerasFailCall(operation, 1, 1, VIRTUAL_CAMERAS_FAIL_EMPTY, 0, nullptr);
    ASSERT_TRUE(grabber.getAvailableVideoNorms_());
    virtualCamerasFailCall(operation, 1, 1, VIRTUAL_CAMERAS_FAIL_EMPTY, 0, nullptr);
    EXPECT_TRUE(grabber.getAvailableVideoNorms_()->empty());
    virtualCamerasFailCall("VideoNormItem::c_str", 1, 1, VIRTUAL_CAMERAS_FAIL_EMPTY, 0, nullptr);
    EXPECT_EQ(nullptr, grabber.getVideoNorm().c_str());
}

TEST_F(Calls, FailByCodeOrNullReference) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 0));
    const auto items = grabber.getAvailableVCDProperties();
    virtualCamerasFailCall("IVCDPropertyItems::getCount", 1, 1, VIRTUAL_CAMERAS_FAIL_CODE,
                           -2147024809, nullptr);
    LONG count = 77;
    EXPECT_EQ(E_INVALIDARG, items->getCount(&count));
    EXPECT_EQ(77, count);
    EXPECT_EQ(S_OK, items->getCount(&count));
    EXPECT_EQ(6, count);
    virtualCamerasFailCall("IVCDPropertyItems::getItem", 1, 1, VIRTUAL_CAMERAS_FAIL_EMPTY, 0,
                           nullptr);
    DShowLib::smart_com<DShowLib::IVCDPropertyItem> item;
    EXPECT_EQ(S_OK, items->getItem(1, item.put()));
    EXPECT_FALSE(item);
    virtualCamerasFailCall("IVCDPropertyItems::getItem", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0,
                           nullptr);
    EXPECT_EQ(E_FAIL, items->getItem(1, item.put()));
}

TEST_F(Calls, FailByThrowingATextThatStaysReadable) {
    virtualCamerasRecordCalls(1);
    virtualCamerasFailCall("Grabber::Grabber", 1, 1, VIRTUAL_CAMERAS_FAIL_THROW, 0, "no memory");
    char* thrown = nullptr;
    try {
        const DShowLib::Grabber grabber;
    } catch (char* text) {
        thrown = text;
    }
    EXPECT_EQ("|Grabber::Grabber||throw no memory", logged(0));
    virtualCamerasReset();
    EXPECT_STREQ("no memory", thrown);
    EXPECT_EQ(0U, alive().grabbers);
}

TEST_F(Calls, FailByThrowingACode) {
    virtualCamerasRecordCalls(1);
    virtualCamerasFailCall("Grabber::Grabber", 1, 1, VIRTUAL_CAMERAS_FAIL_THROW_CODE, -2147024809,
                           nullptr);
    std::int32_t thrown = 0;
    try {
        const DShowLib::Grabber grabber;
    } catch (std::int32_t code) {
        thrown = code;
    }
    EXPECT_EQ(-2147024809, thrown);
    EXPECT_EQ("|Grabber::Grabber||throw 0x80070057", logged(0));
    EXPECT_EQ(0U, alive().grabbers);
}

TEST_F(Calls, FailByThrowingAStandardException) {
    virtualCamerasRecordCalls(1);
    virtualCamerasFailCall("Grabber::Grabber", 1, 1, VIRTUAL_CAMERAS_FAIL_THROW_STANDARD, 0,
                           "no memory");
    std::string thrown;
    try {
        const DShowLib::Grabber grabber;
    } catch (const std::runtime_error& failure) {
        thrown = failure.what();
    }
    EXPECT_EQ("no memory", thrown);
    EXPECT_EQ("|Grabber::Grabber||throw no memory", logged(0));
    EXPECT_EQ(0U, alive().grabbers);
}

}  // namespace
}  // namespace camera_tests
