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
    bool toOutput = false;            // the pictures go to the results' stream, and have no names
    bool force = false;               // files that are there are written over
    std::optional<BayerOrder> bayer;  // none: judged by the video format
    bool demosaic = false;
    bool fresh = false;  // frames that lay ready when they were waited for are dropped
    double timeout = 5.0;
    // Seconds to wait for a lost camera; 0 does not wait.
    double patience = std::numeric_limits<double>::infinity();
};

// Seconds, of "wait", "fail" or a number. Throws a usage Failure.
double patienceOf(const std::string& onLoss);

// Throws a usage Failure.
GrabPlan planGrab(const GrabOptions& options);

// Throws a usage Failure when the file of that number is there and is not to be written over.
void refuseExisting(const GrabPlan& plan, std::uint64_t number);
// The same for all files of a grab that is not endless; those behind are looked at in time.
inline constexpr std::uint64_t mostNamesAtOnce = 10000;
void refuseExisting(const GrabPlan& plan);

}  // namespace camhost
