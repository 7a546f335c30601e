// SPDX-License-Identifier: MIT
// The page for hosts against the example that is built and the headers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "camhost/base/files.h"
#include "velmora/video_channel_record.h"

namespace camhost {
namespace {

using testing::HasSubstr;

const std::string root = VELMORA_SOURCE_DIR;

std::string page() {
    return readTextFile(root + "/docs/host_border.md");
}

std::string row(std::size_t offset, const char* entry) {
    return "| " + std::to_string(offset) + " | `" + entry + "` |";
}

TEST(HostBorderPage, ShowsTheExampleThatIsBuilt) {
    EXPECT_THAT(page(), HasSubstr("```c\n" + readTextFile(root + "/examples/host.c") + "```\n"));
}

TEST(HostBorderPage, GivesEveryEntryPointItsOffset) {
    const std::string text = page();
    const std::string rows[] = {
        row(offsetof(VideoChannelRecord, SetCameraParameters), "SetCameraParameters"),
        row(offsetof(VideoChannelRecord, GetImageInfo), "GetImageInfo"),
        row(offsetof(VideoChannelRecord, WaitFrame), "WaitFrame"),
        row(offsetof(VideoChannelRecord, CopyFrame), "CopyFrame"),
        row(offsetof(VideoChannelRecord, StartAcquisition), "StartAcquisition"),
        row(offsetof(VideoChannelRecord, StopAcquisition), "StopAcquisition"),
        row(offsetof(VideoChannelRecord, ExecuteCommand), "ExecuteCommand"),
        row(offsetof(VideoChannelRecord, GetPropertyValue), "GetPropertyValue"),
        row(offsetof(VideoChannelRecord, SetPropertyValue), "SetPropertyValue"),
        row(offsetof(VideoChannelRecord, GetPropertyName), "GetPropertyName"),
        row(offsetof(VideoChannelRecord, GetPropertyType), "GetPropertyType"),
        row(offsetof(VideoChannelRecord, GetPropertyChoice), "GetPropertyChoice"),
        row(offsetof(VideoChannelRecord, GetPropertyAttribute), "GetPropertyAttribute"),
        row(offsetof(VideoChannelRecord, CloseChannel), "CloseChannel"),
    };
    for (const std::string& each : rows) {
        EXPECT_THAT(text, HasSubstr(each));
    }
}

TEST(HostBorderPage, GivesTheSizesOfTheBlocks) {
    const std::string text = page();
    EXPECT_THAT(text, HasSubstr("(" + std::to_string(sizeof(VideoChannelRecord)) + " bytes)"));
    EXPECT_THAT(text, HasSubstr("(" + std::to_string(sizeof(CameraParameterBlock)) + " bytes)"));
    EXPECT_THAT(text, HasSubstr("(" + std::to_string(sizeof(ImageInfo)) + " bytes)"));
}

}  // namespace
}  // namespace camhost
