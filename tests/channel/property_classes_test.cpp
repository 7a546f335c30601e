// SPDX-License-Identifier: MIT
// What the classes of settings and commands are to each other, how long their
// objects live, and that they call nothing of the library but what it promises.
#include <type_traits>

#include "properties/camera_features.h"
#include "properties/device_format_lists.h"
#include "properties/device_formats.h"
#include "properties/executables.h"
#include "properties/process_store.h"
#include "tests/channel/promised_calls.h"
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
    EXPECT_EQ(host.parameters(CameraParameterBlock{}), accepted());
    EXPECT_EQ(host.start(), accepted());
    EXPECT_EQ(host.stop(), accepted());
    EXPECT_GT(virtualCamerasCallCount(), 100U);
    EXPECT_THAT(callsBeyondThosePromised(), IsEmpty());
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
    host.parameters(CameraParameterBlock{});
    expectAsBefore("parameters");
}

INSTANTIATE_TEST_SUITE_P(OfTheStandardRig, StandardCameraCalls, testing::Range(0, 5));

}  // namespace
}  // namespace property_tests
