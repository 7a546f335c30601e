// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <utility>

#include "platform/text.h"
#include "properties/property.h"
#include "properties/value_text.h"
#include "velmora/host_blocks.h"

namespace {

static_assert(static_cast<std::uint32_t>(PixelType::mono8) == HOST_PIXEL_MONO8);
static_assert(static_cast<std::uint32_t>(PixelType::raw8) == HOST_PIXEL_RAW8);
static_assert(static_cast<std::uint32_t>(PixelType::rgb24) == HOST_PIXEL_RGB24);

constexpr std::array<PixelType, 3> pixelTypes = {PixelType::mono8, PixelType::raw8,
                                                 PixelType::rgb24};

std::string_view nameOf(PixelType pixelType) noexcept {
    switch (pixelType) {
        case PixelType::mono8:
            return "Mono8";
        case PixelType::raw8:
            return "Raw8";
        case PixelType::rgb24:
            return "RGB24";
    }
    return "unkown";
}

}  // namespace

CPropertyPixelFormat::CPropertyPixelFormat(std::string_view name, DShowLib::Grabber& grabber,
                                           SinkHolder sink)
    : CProperty(name), m_grabber(grabber), m_sink(std::move(sink)) {}

std::int32_t CPropertyPixelFormat::getValue(char* /*message*/, char* value) {
    writeText(value, 255, nameOf(m_pixelType));
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
    const auto found = std::find_if(
        pixelTypes.begin(), pixelTypes.end(),
        [value](PixelType pixelType) { return equalsIgnoringCase(nameOf(pixelType), value); });
    if (found == pixelTypes.end()) {
        writeText(message, 255, "Unsupported pixelformat:\"", value,
                  "\". Valid formats are \"mono8\", \"raw8\" and \"rgb24\".");
        return HOST_RESULT_FAILURE;
    }
    m_pixelType = *found;
    return HOST_RESULT_SUCCESS;
}
