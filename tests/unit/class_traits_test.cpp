// SPDX-License-Identifier: MIT
// What may be copied, moved and deleted, and what may not. The claims hold at
// compile time; a test names each.
#include <gtest/gtest.h>

#include <type_traits>

#include "acquisition/color_formats.h"
#include "acquisition/listener.h"
#include "adapter/video_channel.h"
#include "capture/library/grabber.h"
#include "properties/executables.h"
#include "properties/property.h"

namespace {

template <class Class>
constexpr bool staysInPlace =
    !std::is_copy_constructible_v<Class> && !std::is_copy_assignable_v<Class> &&
    !std::is_move_constructible_v<Class> && !std::is_move_assignable_v<Class>;

TEST(ClassTraits, ChannelStaysInPlaceSinceItIsTheHostsContext) {
    static_assert(staysInPlace<CVideoChannel>);
    static_assert(!std::is_polymorphic_v<CVideoChannel>);
    static_assert(!std::is_default_constructible_v<CVideoChannel>);
}

TEST(ClassTraits, DeviceItemDoesNotBecomeAChannelByItself) {
    static_assert(std::is_constructible_v<CVideoChannel, DShowLib::VideoCaptureDeviceItem>);
    static_assert(!std::is_convertible_v<DShowLib::VideoCaptureDeviceItem, CVideoChannel>);
}

TEST(ClassTraits, ListenerStaysInPlaceSinceTheGrabberKnowsItsAddress) {
    static_assert(staysInPlace<CListener>);
    static_assert(std::is_base_of_v<DShowLib::GrabberListener, CListener>);
}

TEST(ClassTraits, ObjectsOfTheLibraryStayInPlace) {
    static_assert(staysInPlace<DShowLib::Grabber>);
    static_assert(staysInPlace<DShowLib::MemBuffer>);
    static_assert(staysInPlace<DShowLib::MemBufferCollection>);
    static_assert(staysInPlace<DShowLib::FrameHandlerSink>);
}

TEST(ClassTraits, ItemsOfTheLibraryAreCopiedAndNotAssigned) {
    static_assert(std::is_copy_constructible_v<DShowLib::VideoCaptureDeviceItem>);
    static_assert(std::is_copy_constructible_v<DShowLib::VideoFormatItem>);
    static_assert(std::is_copy_constructible_v<DShowLib::VideoNormItem>);
    static_assert(std::is_copy_constructible_v<DShowLib::AnalogChannelItem>);
    static_assert(!std::is_copy_assignable_v<DShowLib::VideoCaptureDeviceItem>);
    static_assert(!std::is_copy_assignable_v<DShowLib::VideoFormatItem>);
}

TEST(ClassTraits, PropertiesAndExecutablesAreAbstractAndStayInPlace) {
    static_assert(std::is_abstract_v<CProperty>);
    static_assert(std::is_abstract_v<CExecute>);
    static_assert(!std::is_copy_assignable_v<CProperty>);
    static_assert(!std::is_copy_assignable_v<CExecute>);
}

TEST(ClassTraits, PropertiesAndExecutablesHaveNoVirtualDestructor) {
    // Their slots are the operations alone: nothing deletes them.
    static_assert(!std::has_virtual_destructor_v<CProperty>);
    static_assert(!std::has_virtual_destructor_v<CExecute>);
}

TEST(ClassTraits, ColourFormatsAndPixelTypesDoNotMix) {
    static_assert(!std::is_convertible_v<ColorFormat, std::uint32_t>);
    static_assert(!std::is_convertible_v<std::uint32_t, ColorFormat>);
}

}  // namespace
