// SPDX-License-Identifier: MIT
// How settings and commands reach their interface, and what they answer without.
#include "properties/camera_features.h"
#include "properties/executables.h"
#include "tests/channel/property_identifiers.h"
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using PropertyBinding = CPropertyTest;

const std::string full = camera(R"toml(
[[camera.item]]
name = "Brightness"
Value.range = { min = 0, max = 10, value = 4 }
Value.abs = { min = 0.0, max = 1.0, value = 0.5 }
Value.strings = { choices = ["a"] }
Auto.switch = true
"One Push".button = true
)toml");

// What an unbound setting answers to every text operation.
template <class Property>
void expectUnavailable(Property& property) {
    EXPECT_FALSE(property.isChanged());
    const CMemoryBalance balance;
    CHostText message;
    CHostText value;
    EXPECT_EQ(property.getValue(message, value), 1);
    EXPECT_EQ(message.text(), "some name property is not available!");
    EXPECT_TRUE(value.isUntouched());
    for (const char* text : {"", "true", "1", "a"}) {
        message.refill();
        EXPECT_EQ(property.setValue(message, text), 1);
        EXPECT_EQ(message.text(), "some name property is not available!");
    }
}

template <class Property>
void expectUnavailable(DShowLib::Grabber& grabber, const GUID& item, const GUID& element) {
    Property property(item, "some name", grabber, element);
    expectUnavailable(property);
}

void expectAllUnavailable(DShowLib::Grabber& grabber, const GUID& item, const GUID& element) {
    expectUnavailable<CVCDPropertyValue>(grabber, item, element);
    expectUnavailable<CVCDPropertyValueMin>(grabber, item, element);
    expectUnavailable<CVCDPropertyValueMax>(grabber, item, element);
    expectUnavailable<CVCDPropertyAbsValue>(grabber, item, element);
    expectUnavailable<CVCDPropertyAbsValueMin>(grabber, item, element);
    expectUnavailable<CVCDPropertyAbsValueMax>(grabber, item, element);
    expectUnavailable<CVCDPropertyAuto>(grabber, item, element);
    expectUnavailable<CVCDPropertyMapString>(grabber, item, element);
}

void expectUnavailable(CExecuteOnePush& command) {
    CHostText message;
    EXPECT_EQ(command.execute(message), 1);
    EXPECT_EQ(message.text(), "some name property is not available!");
}

const std::vector<std::string_view> bindingCalls = {
    "Grabber::getAvailableVCDProperties", "IVCDPropertyItems::findItem",
    "IVCDPropertyItem::findElement", "IVCDPropertyElement::QueryInterface"};

TEST_F(PropertyBinding, OfAValueFindsItemAutomaticAndElementByTheirIdentifiers) {
    COpenGrabber grabber(full);
    library_log::record();
    const CVCDPropertyValue property(brightnessItem, "some name", grabber.get(), valueElement);
    EXPECT_TRUE(property.isBound());
    EXPECT_THAT(library_log::invocations(bindingCalls),
                ElementsAre("Grabber::getAvailableVCDProperties()",
                            "IVCDPropertyItems::findItem({284C0E06-010B-45BF-8291-09D90A459B28})",
                            "IVCDPropertyItem::findElement(Brightness,"
                            "{B57D3001-0AC6-4819-A609-272A33140ACA})",
                            "IVCDPropertyElement::QueryInterface(Brightness,Auto,"
                            "{99B44940-BFE1-4083-ADA1-BE703F4B8E04})",
                            "IVCDPropertyItem::findElement(Brightness,"
                            "{B57D3000-0AC6-4819-A609-272A33140ACA})",
                            "IVCDPropertyElement::QueryInterface(Brightness,Value,"
                            "{99B44940-BFE1-4083-ADA1-BE703F4B8E03})"));
}

TEST_F(PropertyBinding, OfAnAbsoluteValueDoesTheSame) {
    COpenGrabber grabber(full);
    library_log::record();
    const CVCDPropertyAbsValue property(brightnessItem, "some name", grabber.get(), valueElement);
    EXPECT_TRUE(property.isBound());
    EXPECT_THAT(library_log::invocations({"IVCDPropertyElement::QueryInterface"}),
                ElementsAre("IVCDPropertyElement::QueryInterface(Brightness,Auto,"
                            "{99B44940-BFE1-4083-ADA1-BE703F4B8E04})",
                            "IVCDPropertyElement::QueryInterface(Brightness,Value,"
                            "{99B44940-BFE1-4083-ADA1-BE703F4B8E08})"));
}

TEST_F(PropertyBinding, OfASwitchAndOfTextsLooksForNoAutomatic) {
    COpenGrabber grabber(full);
    library_log::record();
    const CVCDPropertyAuto automatic(brightnessItem, "some name", grabber.get(), autoElement);
    EXPECT_THAT(library_log::invocations(bindingCalls),
                ElementsAre("Grabber::getAvailableVCDProperties()",
                            "IVCDPropertyItems::findItem({284C0E06-010B-45BF-8291-09D90A459B28})",
                            "IVCDPropertyItem::findElement(Brightness,"
                            "{B57D3001-0AC6-4819-A609-272A33140ACA})",
                            "IVCDPropertyElement::QueryInterface(Brightness,Auto,"
                            "{99B44940-BFE1-4083-ADA1-BE703F4B8E04})"));
    library_log::record();
    const CVCDPropertyMapString texts(brightnessItem, "some name", grabber.get(), valueElement);
    EXPECT_THAT(library_log::invocations(bindingCalls),
                ElementsAre("Grabber::getAvailableVCDProperties()",
                            "IVCDPropertyItems::findItem({284C0E06-010B-45BF-8291-09D90A459B28})",
                            "IVCDPropertyItem::findElement(Brightness,"
                            "{B57D3000-0AC6-4819-A609-272A33140ACA})",
                            "IVCDPropertyElement::QueryInterface(Brightness,Value,"
                            "{99B44940-BFE1-4083-ADA1-BE703F4B8E06})"));
}

TEST_F(PropertyBinding, OfACommandFindsTheAutomaticThenTheOnePush) {
    COpenGrabber grabber(full);
    library_log::record();
    const CExecuteOnePush command(brightnessItem, "some name", grabber.get());
    EXPECT_THAT(library_log::invocations(bindingCalls),
                ElementsAre("Grabber::getAvailableVCDProperties()",
                            "IVCDPropertyItems::findItem({284C0E06-010B-45BF-8291-09D90A459B28})",
                            "IVCDPropertyItem::findElement(Brightness,"
                            "{B57D3001-0AC6-4819-A609-272A33140ACA})",
                            "IVCDPropertyElement::QueryInterface(Brightness,Auto,"
                            "{99B44940-BFE1-4083-ADA1-BE703F4B8E04})",
                            "IVCDPropertyItem::findElement(Brightness,"
                            "{B57D3002-0AC6-4819-A609-272A33140ACA})",
                            "IVCDPropertyElement::QueryInterface(Brightness,One Push,"
                            "{99B44940-BFE1-4083-ADA1-BE703F4B8E05})"));
}

TEST_F(PropertyBinding, WithoutADeviceStopsAtTheCollection) {
    loadRig(full);
    DShowLib::Grabber grabber;
    library_log::record();
    expectAllUnavailable(grabber, brightnessItem, valueElement);
    EXPECT_THAT(library_log::invocations({"IVCDPropertyItems::findItem"}), IsEmpty());
}

TEST_F(PropertyBinding, WithoutACollectionStopsThere) {
    COpenGrabber grabber(camera("properties = false\n"));
    expectAllUnavailable(grabber.get(), brightnessItem, valueElement);
    CExecuteOnePush command(brightnessItem, "some name", grabber.get());
    expectUnavailable(command);
}

TEST_F(PropertyBinding, WithoutTheItemStopsThere) {
    COpenGrabber grabber(full);
    library_log::record();
    expectAllUnavailable(grabber.get(), contrastItem, valueElement);
    EXPECT_THAT(library_log::invocations({"IVCDPropertyItem::findElement"}), IsEmpty());
    CExecuteOnePush command(contrastItem, "some name", grabber.get());
    expectUnavailable(command);
}

TEST_F(PropertyBinding, WithoutTheElementStopsThere) {
    COpenGrabber grabber(full);
    expectAllUnavailable(grabber.get(), brightnessItem,
                         {0xB57D3009, 0x0AC6, 0x4819, {1, 2, 3, 4, 5, 6, 7, 8}});
}

TEST_F(PropertyBinding, ToAnElementWithoutTheInterfaceStaysEmpty) {
    COpenGrabber grabber(full);
    expectUnavailable<CVCDPropertyValue>(grabber.get(), brightnessItem, autoElement);
    expectUnavailable<CVCDPropertyValueMax>(grabber.get(), brightnessItem, onePushElement);
    expectUnavailable<CVCDPropertyAbsValue>(grabber.get(), brightnessItem, autoElement);
    expectUnavailable<CVCDPropertyAuto>(grabber.get(), brightnessItem, valueElement);
    expectUnavailable<CVCDPropertyMapString>(grabber.get(), brightnessItem, autoElement);
}

TEST_F(PropertyBinding, OfACommandWithoutAOnePushElementStaysEmpty) {
    COpenGrabber grabber(camera(R"toml(
[[camera.item]]
name = "Brightness"
Value.button = true
)toml"));
    CExecuteOnePush command(brightnessItem, "some name", grabber.get());
    expectUnavailable(command);
}

TEST_F(PropertyBinding, FailsQuietlyAtEveryStep) {
    for (const char* operation :
         {"Grabber::getAvailableVCDProperties", "IVCDPropertyItems::findItem"}) {
        COpenGrabber grabber(full);
        refuseCall(operation, 1, 0);
        expectAllUnavailable(grabber.get(), brightnessItem, valueElement);
        CExecuteOnePush command(brightnessItem, "some name", grabber.get());
        expectUnavailable(command);
        virtualCamerasClearFailures();
    }
    // The automatic's element first, then the setting's own.
    for (const char* operation :
         {"IVCDPropertyItem::findElement", "IVCDPropertyElement::QueryInterface"}) {
        COpenGrabber grabber(full);
        failCall(operation, 1, 0);
        expectAllUnavailable(grabber.get(), brightnessItem, valueElement);
        CExecuteOnePush command(brightnessItem, "some name", grabber.get());
        expectUnavailable(command);
        virtualCamerasClearFailures();
    }
}

TEST_F(PropertyBinding, WithoutTheAutomaticStillReachesItsElement) {
    for (const char* operation :
         {"IVCDPropertyItem::findElement", "IVCDPropertyElement::QueryInterface"}) {
        COpenGrabber grabber(full);
        failCall(operation, 1);
        CVCDPropertyValue property(brightnessItem, "some name", grabber.get(), valueElement);
        ASSERT_TRUE(property.isBound());
        CHostText message;
        // The automatic is on, but nobody is there to say so: the device itself refuses.
        EXPECT_EQ(thrownCode([&] { property.setValue(message, "5"); }), -2147467259);
        EXPECT_TRUE(message.isUntouched());
    }
}

TEST_F(PropertyBinding, ToAnEmptyReferenceStaysEmpty) {
    COpenGrabber grabber(full);
    emptyCall("IVCDPropertyItems::findItem");
    expectUnavailable<CVCDPropertyAuto>(grabber.get(), brightnessItem, autoElement);
    emptyCall("IVCDPropertyItem::findElement");
    expectUnavailable<CVCDPropertyAuto>(grabber.get(), brightnessItem, autoElement);
    emptyCall("IVCDPropertyElement::QueryInterface");
    expectUnavailable<CVCDPropertyAuto>(grabber.get(), brightnessItem, autoElement);
}

TEST_F(PropertyBinding, WithoutMemoryForTheIdentifierStaysEmpty) {
    COpenGrabber grabber(full);
    win32::injectResults("StringFromCLSID", {E_OUTOFMEMORY});
    expectUnavailable<CVCDPropertyAuto>(grabber.get(), brightnessItem, autoElement);
    win32::injectResults("SysAllocString", {0});
    expectUnavailable<CVCDPropertyAuto>(grabber.get(), brightnessItem, autoElement);
}

TEST_F(PropertyBinding, LeavesNothingAllocatedAndNoReferenceTooMany) {
    COpenGrabber grabber(full);
    const std::uint32_t before = alive().interfaces;
    {
        const CMemoryBalance balance;
        const CVCDPropertyValue value(brightnessItem, "v", grabber.get(), valueElement);
        const CVCDPropertyAbsValue absolute(brightnessItem, "a", grabber.get(), valueElement);
        const CVCDPropertyMapString texts(brightnessItem, "t", grabber.get(), valueElement);
        const CVCDPropertyAuto automatic(brightnessItem, "s", grabber.get(), autoElement);
        const CExecuteOnePush command(brightnessItem, "c", grabber.get());
        EXPECT_EQ(alive().interfaces - before, 8U);
    }
    EXPECT_EQ(alive().interfaces, before);
    EXPECT_EQ(references("Brightness", "Auto", "IVCDSwitchProperty"), 0);
}

TEST_F(PropertyBinding, CutsTheMessageOfTheLongestName) {
    loadRig(full);
    DShowLib::Grabber grabber;
    const std::string name(254, 'n');
    CVCDPropertyValue property(brightnessItem, name, grabber, valueElement);
    CExecuteOnePush command(brightnessItem, name, grabber);
    CHostText message;
    CHostText value;
    EXPECT_EQ(property.getValue(message, value), 1);
    EXPECT_EQ(message.text(), name + " ");
    message.refill();
    EXPECT_EQ(command.execute(message), 1);
    EXPECT_EQ(message.text(), name + " ");
}

TEST_F(PropertyBinding, OfAnUnboundSettingInTheTableAnswersTheHost) {
    loadRig(full);
    // Four find calls bind the value; the one after them is the minimum's own.
    failCall("IVCDPropertyElement::QueryInterface", 1, 0);
    CPropertyHost host;
    virtualCamerasClearFailures();
    host.forgetCalls();
    EXPECT_EQ(host.get("brightness value range"),
              refused("brightness value range property is not available!"));
    EXPECT_EQ(host.set("brightness value range", "5"),
              refused("brightness value range property is not available!"));
    EXPECT_EQ(host.get("brightness value range min"),
              refused("brightness value range min property is not available!"));
    EXPECT_EQ(host.set("brightness value range min", "5"),
              refused("brightness value range min property is not available!"));
    EXPECT_EQ(host.set("brightness value abs max", "5"),
              refused("brightness value abs max property is not available!"));
    EXPECT_EQ(host.set("brightness auto switch", "true"),
              refused("brightness auto switch property is not available!"));
    EXPECT_EQ(host.get("brightness value strings"),
              refused("brightness value strings property is not available!"));
    EXPECT_EQ(host.execute("brightness one push"),
              refused("brightness one push property is not available!"));
    EXPECT_EQ(host.callCount(), 0U);
}

}  // namespace
}  // namespace property_tests
