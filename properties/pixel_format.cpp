// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <utility>

#include "platform/text.h"
#include "properties/property.h"
#include "properties/value_text.h"
#include "velmora/host_blocks.h"

namespace {

struct PixelTypeName {
    std::uint32_t pixelType;
    std::string_view name;
};

constexpr std::array<PixelTypeName, 3> pixelTypeNames = {{
    {HOST_PIXEL_MONO8, "Mono8"},
    {HOST_PIXEL_RAW8, "Raw8"},
    {HOST_PIXEL_RGB24, "RGB24"},
}};

}  // namespace

CPropertyPixelFormat::CPropertyPixelFormat(std::string_view name, DShowLib::Grabber& grabber,
                                           SinkHolder sink)
    : CProperty(name), m_grabber(grabber), m_sink(std::move(sink)) {}

std::int32_t CPropertyPixelFormat::getValue(char* /*message*/, char* value) {
    const auto* found =
        std::find_if(pixelTypeNames.begin(), pixelTypeNames.end(),
                     [this](const PixelTypeName& entry) { return entry.pixelType == m_pixelType; });
    writeText(value, 255, found != pixelTypeNames.end() ? found->name : "unkown");
    return HOST_RESULT_SUCCESS;
}

std::int32_t CPropertyPixelFormat::setValue(char* message, std::string_view value) {
    if (m_grabber.isLive()) {
        writeText(message, 255, "Can not set pixelformat, while live video is running.");
        return HOST_RESULT_FAILURE;
    }
    // A refused text raises the flag as well: the sink is then built again for
    // the pixel type as it was.
    m_changed = true;
    const auto* found = std::find_if(
        pixelTypeNames.begin(), pixelTypeNames.end(),
        [value](const PixelTypeName& entry) { return equalsIgnoringCase(entry.name, value); });
    if (found == pixelTypeNames.end()) {
        writeText(message, 255, "Unsupported pixelformat:\"", value,
                  "\". Valid formats are \"mono8\", \"raw8\" and \"rgb24\".");
        return HOST_RESULT_FAILURE;
    }
    m_pixelType = found->pixelType;
    return HOST_RESULT_SUCCESS;
}
