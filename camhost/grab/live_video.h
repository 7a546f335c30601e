// SPDX-License-Identifier: MIT
// Live video of one camera, stopped whichever way a grab ends. Portable.
#pragma once

#include "camhost/base/failure.h"
#include "camhost/camera/record_channel.h"
#include "camhost/pictures/frame_layout.h"

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

// Of the frames that the camera delivers, or would deliver when started now. Throws a Failure.
FrameLayout readFrameLayout(CRecordChannel& camera, bool madeFromColours);

// Of an adapter that reports a size that can not be, or copied too much.
Failure badSize(const FrameLayout& layout);
Failure wrotePastBuffer();

}  // namespace camhost
