// SPDX-License-Identifier: MIT
// What a grab is to do, checked and completed before anything is started.
// Portable.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "camhost/grab/grab_options.h"
#include "camhost/pictures/bayer.h"
#include "camhost/pictures/file_pattern.h"
#include "camhost/pictures/picture_file.h"

namespace camhost {

struct GrabPlan {
    std::uint64_t frames = 1;
    std::uint64_t skip = 0;
    PictureFormat format = PictureFormat::Png;
    CFilePattern names;
    std::optional<BayerOrder> bayer;  // none: judged by the video format
    bool demosaic = false;
    double timeout = 5.0;
    // Seconds to wait for a lost camera; 0 does not wait.
    double patience = std::numeric_limits<double>::infinity();
};

// Throws a usage Failure.
GrabPlan planGrab(const GrabOptions& options);

}  // namespace camhost
