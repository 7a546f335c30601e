// SPDX-License-Identifier: MIT
#include "camhost/grab/live_video.h"

#include <string>

namespace camhost {

CLiveVideo::CLiveVideo(CRecordChannel& camera) : m_camera(camera) {
    const Reply reply = camera.start();
    if (!reply.done()) {
        const std::string reason = reply.message.empty() ? "" : ": " + reply.message;
        throw Failure{.code = "refused",
                      .message = "live video does not start" + reason,
                      .adapterMessage = reply.message};
    }
}

CLiveVideo::~CLiveVideo() {
    if (m_live) {
        try {
            m_camera.stop();
        } catch (const Failure&) {
            m_live = false;  // there is an earlier failure to tell of
        }
    }
}

void CLiveVideo::stop() {
    m_live = false;
    m_camera.stop();
}

FrameLayout readFrameLayout(CRecordChannel& camera, bool madeFromColours) {
    const ImageInfo image = camera.readImageInfo();
    return {image.width, image.height, image.pixelType, madeFromColours};
}

Failure badSize(const FrameLayout& layout) {
    return {.code = "bad_size",
            .message = "the camera reports a picture of " + std::to_string(layout.width) + "x" +
                       std::to_string(layout.height)};
}

Failure wrotePastBuffer() {
    return {.code = "internal", .message = "the adapter wrote past the frame buffer"};
}

}  // namespace camhost
