// SPDX-License-Identifier: MIT
#include "camhost/view/shown_camera.h"

namespace camhost {

FrameLayout CShownCamera::readLayout() {
    return readFrameLayout(m_channel, isMadeFromColours(m_formats.current));
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
        throw badSize(m_layout);
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
