// SPDX-License-Identifier: MIT
// What a grab takes on its command line. Portable.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "camhost/base/option_list.h"

namespace camhost {

// Settings that are made before live video starts.
struct FirstSettings {
    std::string pixelFormat;
    std::vector<std::string> assignments;
    bool manual = false;
};

struct GrabOptions {
    std::uint64_t frames = 1;
    std::string output;
    bool force = false;
    std::string format;  // empty: by the output's name, else png
    FirstSettings first;
    std::string bayer = "auto";
    std::string demosaic = "none";
    std::uint64_t skip = 0;
    bool fresh = false;
    double timeout = 5.0;
    std::string onLoss = "10";
    bool reapply = false;  // settings are written again when a lost camera is back
};

// Of every run over live video.
void takeFirstSettings(COptionList& list, FirstSettings& first);
void takeOnLoss(COptionList& list, std::string& onLoss);

void takeGrabOptions(COptionList& list, GrabOptions& grab);

}  // namespace camhost
