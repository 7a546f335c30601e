// SPDX-License-Identifier: MIT
#include "tests/virtual_cameras/camera_rig.h"

namespace camera_tests {
namespace {

class Property : public CRigTest {
protected:
    template <class Interface>
    DShowLib::smart_com<Interface> find(DShowLib::Grabber& grabber, LONG item, LONG element,
                                        LONG index) {
        DShowLib::smart_com<DShowLib::IVCDPropertyItem> foundItem;
        EXPECT_EQ(S_OK, grabber.getAvailableVCDProperties()->getItem(item, foundItem.put()));
        DShowLib::smart_com<DShowLib::IVCDPropertyElement> foundElement;
        EXPECT_EQ(S_OK, foundItem->getItem(element, foundElement.put()));
        DShowLib::smart_com<DShowLib::IVCDPropertyInterface> any;
        EXPECT_EQ(S_OK, foundElement->getItem(index, any.put()));
        any->AddRef();
        return DShowLib::smart_com<Interface>(static_cast<Interface*>(any.get()));
    }
    static int references(const char* item, const char* element, const char* interfaceName) {
        return virtualCamerasInterfaceReferences("1A2B", item, element, interfaceName);
    }
};

TEST_F(Property, RangesKeepTheirLimits) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 1));
    const auto range = find<DShowLib::IVCDRangeProperty>(grabber, 4, 1, 1);
    LONG number = 0;
    EXPECT_EQ(S_OK, range->getRangeMin(&number));
    EXPECT_EQ(100, number);
    EXPECT_EQ(S_OK, range->getRangeMax(&number));
    EXPECT_EQ(-100, number);
    EXPECT_EQ(S_OK, range->setValue(-100));
    EXPECT_EQ(S_OK, range->setValue(100));
    EXPECT_EQ(E_INVALIDARG, range->setValue(101));
    EXPECT_EQ("100", property("77C01", "Saturation", "Value", "IVCDRangeProperty"));
    EXPECT_EQ(E_POINTER, range->getValue(nullptr));
    EXPECT_EQ(1U, misuses());
}

TEST_F(Property, AutomaticOwnsTheValue) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 0));
    const auto range = find<DShowLib::IVCDRangeProperty>(grabber, 3, 1, 1);
    const auto absolute = find<DShowLib::IVCDAbsoluteValueProperty>(grabber, 3, 1, 2);
    const auto automatic = find<DShowLib::IVCDSwitchProperty>(grabber, 3, 2, 1);
    EXPECT_EQ(E_FAIL, range->setValue(400));
    EXPECT_EQ(E_FAIL, absolute->setValue(0.5));
    EXPECT_EQ(S_OK, automatic->setSwitch(VARIANT_FALSE));
    EXPECT_EQ(S_OK, range->setValue(400));
    EXPECT_EQ(E_INVALIDARG, automatic->setSwitch(1));
    EXPECT_EQ("400", property("1A2B", "Exposure", "Value", "IVCDRangeProperty"));
}

TEST_F(Property, ASharedValueHasTwoFaces) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 0));
    const auto range = find<DShowLib::IVCDRangeProperty>(grabber, 3, 1, 1);
    const auto absolute = find<DShowLib::IVCDAbsoluteValueProperty>(grabber, 3, 1, 2);
    const auto automatic = find<DShowLib::IVCDSwitchProperty>(grabber, 3, 2, 1);
    double seconds = 0.0;
    EXPECT_EQ(S_OK, absolute->getValue(&seconds));
    EXPECT_NEAR(0.0333, seconds, 1e-9);
    ASSERT_EQ(S_OK, automatic->setSwitch(VARIANT_FALSE));
    ASSERT_EQ(S_OK, range->setValue(10000));
    EXPECT_EQ(S_OK, absolute->getValue(&seconds));
    EXPECT_EQ(1.0, seconds);
    ASSERT_EQ(S_OK, absolute->setValue(0.0500));
    LONG number = 0;
    EXPECT_EQ(S_OK, range->getValue(&number));
    EXPECT_EQ(500, number);
}

TEST_F(Property, ButtonsAreCountedAndSetWhatTheySet) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 0));
    const auto button = find<DShowLib::IVCDButtonProperty>(grabber, 4, 3, 1);
    EXPECT_EQ(0U, virtualCamerasButtonPushes("1A2B", "Gain"));
    EXPECT_EQ(S_OK, button->push());
    EXPECT_EQ(1U, virtualCamerasButtonPushes("1A2B", "Gain"));
    EXPECT_EQ("260", property("1A2B", "Gain", "Value", "IVCDRangeProperty"));
    EXPECT_TRUE(grabber.showVCDPropertyPage(nullptr, DShowLib::dstringa()));
    EXPECT_EQ(1U, virtualCamerasPagesShown());
}

TEST_F(Property, MapStringsTakeOnlyTheirChoices) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 1));
    const auto strings = find<DShowLib::IVCDMapStringsProperty>(grabber, 3, 6, 1);
    DShowLib::smart_com<DShowLib::IVCDTexts> texts;
    ASSERT_EQ(S_OK, strings->getStrings(texts.put()));
    LONG count = 0;
    EXPECT_EQ(S_OK, texts->getCount(&count));
    ASSERT_EQ(3, count);
    CComText last;
    EXPECT_EQ(S_OK, texts->getItem(3, last.put()));
    EXPECT_EQ("Glühlampe", last.narrow());
    EXPECT_EQ(S_OK, strings->setString(last.get()));
    EXPECT_EQ("Glühlampe", property("77C01", "White Balance", "Mode", "IVCDMapStringsProperty"));
    CComText wrong(L"grey world");
    EXPECT_EQ(E_INVALIDARG, strings->setString(wrong.get()));
    CComText current;
    EXPECT_EQ(S_OK, strings->getString(current.put()));
    EXPECT_EQ("Glühlampe", current.narrow());
    EXPECT_EQ(E_INVALIDARG, texts->getItem(0, last.put()));
    EXPECT_EQ(1U, misuses());
}

TEST_F(Property, ReferencesOfCallersAreCounted) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 0));
    EXPECT_EQ(0, references("Brightness", "Value", "IVCDRangeProperty"));
    {
        const auto range = find<DShowLib::IVCDRangeProperty>(grabber, 1, 1, 1);
        EXPECT_EQ(1, references("Brightness", "Value", "IVCDRangeProperty"));
        const auto copy = range;
        EXPECT_EQ(2, references("Brightness", "Value", "IVCDRangeProperty"));
        EXPECT_EQ(2U, alive().interfaces);
    }
    EXPECT_EQ(0, references("Brightness", "Value", "IVCDRangeProperty"));
    EXPECT_EQ(-1, references("Brightness", "Value", "IVCDButtonProperty"));
    EXPECT_EQ(-1, references("Nothing", "Value", "IVCDRangeProperty"));
    EXPECT_EQ(0U, alive().interfaces);
}

TEST_F(Property, ElementsAnswerOnlyForWhatTheyOffer) {
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 0));
    DShowLib::smart_com<DShowLib::IVCDPropertyItem> item;
    ASSERT_EQ(S_OK, grabber.getAvailableVCDProperties()->getItem(1, item.put()));
    DShowLib::smart_com<DShowLib::IVCDPropertyElement> element;
    ASSERT_EQ(S_OK, item->getItem(1, element.put()));
    void* object = &element;
    EXPECT_EQ(E_NOINTERFACE, element->QueryInterface(DShowLib::IID_IVCDSwitchProperty, &object));
    EXPECT_EQ(nullptr, object);
    CComText automatic(L"{B57D3001-0AC6-4819-A609-272A33140ACA}");
    EXPECT_EQ(E_FAIL, item->findElement(automatic.get(), element.put()));
    CComText nonsense(L"Value");
    EXPECT_EQ(E_FAIL, item->findElement(nonsense.get(), element.put()));
    EXPECT_EQ(0U, misuses());
}

TEST_F(Property, AnswersOnlyWhileTheDeviceIsOpenAndThere) {
    DShowLib::smart_com<DShowLib::IVCDRangeProperty> range;
    LONG number = 0;
    {
        DShowLib::Grabber grabber;
        ASSERT_TRUE(open(grabber, 0));
        range = find<DShowLib::IVCDRangeProperty>(grabber, 1, 1, 1);
        EXPECT_EQ(S_OK, range->setValue(99));
        virtualCamerasUnplug("1A2B");
        EXPECT_EQ(E_FAIL, range->getValue(&number));
        virtualCamerasPlug("1A2B");
        EXPECT_EQ(E_FAIL, range->getValue(&number)) << "it has to be opened again";
        EXPECT_TRUE(open(grabber, 0));
        EXPECT_EQ(S_OK, range->getValue(&number));
        EXPECT_EQ(51, number);  // as after power-up
    }
    EXPECT_EQ(E_FAIL, range->getValue(&number));
    EXPECT_EQ("", misuse());
}

TEST_F(Property, OutlivesItsDeviceAndTheLibrary) {
    DShowLib::smart_com<DShowLib::IVCDRangeProperty> range;
    DShowLib::smart_com<DShowLib::IVCDTexts> texts;
    {
        DShowLib::Grabber grabber;
        ASSERT_TRUE(open(grabber, 0));
        range = find<DShowLib::IVCDRangeProperty>(grabber, 1, 1, 1);
        ASSERT_EQ(
            S_OK,
            find<DShowLib::IVCDMapStringsProperty>(grabber, 5, 3, 1)->getStrings(texts.put()));
    }
    DShowLib::ExitLibrary();
    virtualCamerasReset();
    LONG number = 0;
    EXPECT_EQ(E_FAIL, range->getValue(&number));
    EXPECT_EQ(E_FAIL, texts->getCount(&number));
    EXPECT_EQ(2U, misuses());
    EXPECT_EQ("IVCDTexts::getCount on a device that is no more", misuse());
    EXPECT_EQ(2U, alive().interfaces);
    range = {};
    texts = {};
    EXPECT_EQ(0U, alive().interfaces);
}

TEST_F(Property, AreMissingAltogetherWhereTheRigSaysSo) {
    choose("no-properties");
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 0));
    EXPECT_FALSE(grabber.getAvailableVCDProperties());
}

}  // namespace
}  // namespace camera_tests
