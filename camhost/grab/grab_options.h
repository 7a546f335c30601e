// SPDX-License-Identifier: MIT
// What a grab takes on its command line. Portable.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "camhost/base/option_list.h"

namespace camhost {

struct GrabOptions {
    std::uint64_t frames = 1;
    std::string output;
    bool force = false;
    std::string format;  // empty: by the output's name, else png
    std::string pixelFormat;
    std::vector<std::string> assignments;  // made before the first frame
    bool manual = false;
    std::string bayer = "auto";
    std::string demosaic = "none";
    std::uint64_t skip = 0;
    double timeout = 5.0;
    std::string onLoss = "10";
};

void takeGrabOptions(COptionList& list, GrabOptions& grab);

}  // namespace camhost
