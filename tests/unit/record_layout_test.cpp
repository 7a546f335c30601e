// SPDX-License-Identifier: MIT
// Every offset, size and code that hosts have compiled in.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "velmora/host_blocks.h"
#include "velmora/video_channel_record.h"

namespace {

TEST(RecordLayout, HeadIsSizeGapAndContext) {
    EXPECT_EQ(0U, offsetof(VideoChannelRecord, size));
    EXPECT_EQ(4U, offsetof(VideoChannelRecord, gap4));
    EXPECT_EQ(8U, offsetof(VideoChannelRecord, context));
}

TEST(RecordLayout, BaseEntryPointsFollowEachOther) {
    EXPECT_EQ(16U, offsetof(VideoChannelRecord, SetCameraParameters));
    EXPECT_EQ(24U, offsetof(VideoChannelRecord, GetImageInfo));
    EXPECT_EQ(32U, offsetof(VideoChannelRecord, WaitFrame));
    EXPECT_EQ(40U, offsetof(VideoChannelRecord, CopyFrame));
    EXPECT_EQ(48U, offsetof(VideoChannelRecord, StartAcquisition));
    EXPECT_EQ(56U, offsetof(VideoChannelRecord, StopAcquisition));
    EXPECT_EQ(64U, offsetof(VideoChannelRecord, ExecuteCommand));
    EXPECT_EQ(72U, offsetof(VideoChannelRecord, GetPropertyValue));
    EXPECT_EQ(80U, offsetof(VideoChannelRecord, SetPropertyValue));
}

TEST(RecordLayout, DeviceFactsFollowTheBaseEntryPoints) {
    EXPECT_EQ(88U, offsetof(VideoChannelRecord, deviceName));
    EXPECT_EQ(344U, offsetof(VideoChannelRecord, serialText));
    EXPECT_EQ(600U, offsetof(VideoChannelRecord, exposure));
    EXPECT_EQ(608U, offsetof(VideoChannelRecord, contrast));
    EXPECT_EQ(616U, offsetof(VideoChannelRecord, brightness));
    EXPECT_EQ(624U, offsetof(VideoChannelRecord, maxWidth));
    EXPECT_EQ(628U, offsetof(VideoChannelRecord, maxHeight));
    EXPECT_EQ(632U, offsetof(VideoChannelRecord, gap632));
}

TEST(RecordLayout, ExtendedEntryPointsFollowTheBaseRecord) {
    EXPECT_EQ(640U, offsetof(VideoChannelRecord, GetPropertyName));
    EXPECT_EQ(648U, offsetof(VideoChannelRecord, GetPropertyType));
    EXPECT_EQ(656U, offsetof(VideoChannelRecord, GetPropertyChoice));
    EXPECT_EQ(664U, offsetof(VideoChannelRecord, GetPropertyAttribute));
    EXPECT_EQ(672U, offsetof(VideoChannelRecord, CloseChannel));
    EXPECT_EQ(680U, sizeof(VideoChannelRecord));
}

TEST(RecordLayout, FieldsHaveTheirWidths) {
    static_assert(std::is_same_v<std::uint32_t, decltype(VideoChannelRecord::size)>);
    static_assert(std::is_same_v<void*, decltype(VideoChannelRecord::context)>);
    static_assert(std::is_same_v<char[256], decltype(VideoChannelRecord::deviceName)>);
    static_assert(std::is_same_v<char[256], decltype(VideoChannelRecord::serialText)>);
    static_assert(std::is_same_v<double, decltype(VideoChannelRecord::exposure)>);
    static_assert(std::is_same_v<double, decltype(VideoChannelRecord::contrast)>);
    static_assert(std::is_same_v<double, decltype(VideoChannelRecord::brightness)>);
    static_assert(std::is_same_v<std::int32_t, decltype(VideoChannelRecord::maxWidth)>);
    static_assert(std::is_same_v<std::int32_t, decltype(VideoChannelRecord::maxHeight)>);
    static_assert(std::is_standard_layout_v<VideoChannelRecord>);
    static_assert(std::is_trivially_copyable_v<VideoChannelRecord>);
}

TEST(RecordLayout, EntryPointsTakeTheErrorTextAndTheContextFirst) {
    using Error = char*;
    using Context = void*;
    using Key = const char*;
    static_assert(std::is_same_v<std::int32_t (*)(Error, Context, const CameraParameterBlock*),
                                 SetCameraParametersEntry>);
    static_assert(std::is_same_v<std::int32_t (*)(Error, Context, ImageInfo*, std::uint32_t*),
                                 GetImageInfoEntry>);
    static_assert(std::is_same_v<std::int32_t (*)(Error, Context, std::uint32_t*), WaitFrameEntry>);
    static_assert(
        std::is_same_v<std::int32_t (*)(Error, Context, void*, std::uint32_t*), CopyFrameEntry>);
    static_assert(std::is_same_v<std::int32_t (*)(Error, Context), StartAcquisitionEntry>);
    static_assert(std::is_same_v<std::int32_t (*)(Error, Context), StopAcquisitionEntry>);
    static_assert(std::is_same_v<std::int32_t (*)(Error, Context, Key), ExecuteCommandEntry>);
    static_assert(
        std::is_same_v<std::int32_t (*)(Error, Context, Key, char*), GetPropertyValueEntry>);
    static_assert(
        std::is_same_v<std::int32_t (*)(Error, Context, Key, const char*), SetPropertyValueEntry>);
    static_assert(std::is_same_v<std::int32_t (*)(Error, Context, std::int32_t, char*),
                                 GetPropertyNameEntry>);
    static_assert(std::is_same_v<std::int32_t (*)(Error, Context, Key, std::uint32_t*),
                                 GetPropertyTypeEntry>);
    static_assert(std::is_same_v<std::int32_t (*)(Error, Context, Key, std::int32_t, char*),
                                 GetPropertyChoiceEntry>);
    static_assert(std::is_same_v<std::int32_t (*)(Error, Context, Key, std::uint32_t, char*),
                                 GetPropertyAttributeEntry>);
    static_assert(std::is_same_v<std::int32_t (*)(Error, Context), CloseChannelEntry>);
    static_assert(std::is_same_v<std::int32_t (*)(void*, std::int32_t, VideoChannelRecord*),
                                 GetVideoChannelEntry>);
}

TEST(ParameterBlockLayout, FieldsLieWhereHostsPutThem) {
    EXPECT_EQ(8U, offsetof(CameraParameterBlock, exposure));
    EXPECT_EQ(16U, offsetof(CameraParameterBlock, contrast));
    EXPECT_EQ(24U, offsetof(CameraParameterBlock, brightness));
    EXPECT_EQ(36U, offsetof(CameraParameterBlock, triggerEnable));
    EXPECT_EQ(40U, offsetof(CameraParameterBlock, triggerPolarity));
    EXPECT_EQ(44U, offsetof(CameraParameterBlock, roiLeft));
    EXPECT_EQ(48U, offsetof(CameraParameterBlock, roiTop));
    EXPECT_EQ(52U, offsetof(CameraParameterBlock, roiWidth));
    EXPECT_EQ(56U, offsetof(CameraParameterBlock, roiHeight));
    static_assert(std::is_standard_layout_v<CameraParameterBlock>);
}

TEST(ImageInfoLayout, FieldsLieWhereHostsLook) {
    EXPECT_EQ(0U, offsetof(ImageInfo, hostOwn));
    EXPECT_EQ(4U, offsetof(ImageInfo, width));
    EXPECT_EQ(8U, offsetof(ImageInfo, height));
    EXPECT_EQ(12U, offsetof(ImageInfo, lineWidth));
    EXPECT_EQ(16U, offsetof(ImageInfo, pixelType));
    EXPECT_EQ(20U, offsetof(ImageInfo, regionLeft));
    EXPECT_EQ(24U, offsetof(ImageInfo, regionTop));
    EXPECT_EQ(28U, offsetof(ImageInfo, regionWidth));
    EXPECT_EQ(32U, offsetof(ImageInfo, regionHeight));
    EXPECT_EQ(36U, offsetof(ImageInfo, reserved0));
    EXPECT_EQ(40U, offsetof(ImageInfo, reserved1));
    EXPECT_EQ(44U, sizeof(ImageInfo));
}

TEST(HostCodes, HaveTheValuesThatHostsKnow) {
    EXPECT_EQ(0, HOST_RESULT_SUCCESS);
    EXPECT_EQ(1, HOST_RESULT_FAILURE);
    EXPECT_EQ(256, HOST_TEXT_BYTES);
    EXPECT_EQ(0, HOST_STATUS_DONE);
    EXPECT_EQ(4096, HOST_STATUS_NO_FRAME);
    EXPECT_EQ(8192, HOST_STATUS_NO_DEVICE);
    EXPECT_EQ(0, HOST_PIXEL_MONO8);
    EXPECT_EQ(4, HOST_PIXEL_RAW8);
    EXPECT_EQ(7, HOST_PIXEL_RGB24);
    EXPECT_EQ(1, HOST_PROPERTY_CHOICE);
    EXPECT_EQ(2, HOST_PROPERTY_TEXT);
    EXPECT_EQ(4, HOST_PROPERTY_EXECUTABLE);
}

}  // namespace
