// SPDX-License-Identifier: MIT
// Live video of one camera, stopped whichever way a grab ends. Portable.
#pragma once

#include "camhost/camera/record_channel.h"

namespace camhost {

class CLiveVideo {
public:
    // Throws a Failure when the video does not start.
    explicit CLiveVideo(CRecordChannel& camera);
    CLiveVideo(const CLiveVideo&) = delete;
    CLiveVideo& operator=(const CLiveVideo&) = delete;
    ~CLiveVideo();

    // A lost camera refuses, which is not news.
    void stop();

private:
    CRecordChannel& m_camera;
    bool m_live = true;
};

}  // namespace camhost
