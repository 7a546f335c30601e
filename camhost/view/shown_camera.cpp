// SPDX-License-Identifier: MIT
#include "camhost/view/shown_camera.h"

namespace camhost {

FrameLayout CShownCamera::readLayout() {
    const ImageInfo image = m_channel.readImageInfo();
    return {image.width, image.height, image.pixelType, isMadeFromColours(m_formats.current)};
}

void CShownCamera::start() {
    constexpr const char* format = "videoformat";
    m_formats = videoFormatsOf(
        m_settings.read(format).text,
        m_settings.hasKey(format) ? std::optional(m_settings.choices(format)) : std::nullopt);
    readLayout();
    m_video.emplace(m_channel);
    m_layout = readLayout();
    if (frameBytes(m_layout) == 0) {
        m_video.reset();
        throw Failure{.code = "bad_size",
                      .message = "the camera reports a picture of " +
                                 std::to_string(m_layout.width) + "x" +
                                 std::to_string(m_layout.height)};
    }
}

void CShownCamera::stop() {
    if (m_video) {
        m_video->stop();
        m_video.reset();
    }
}

bool CShownCamera::hasOtherLayout() {
    return readLayout() != m_layout;
}

}  // namespace camhost
