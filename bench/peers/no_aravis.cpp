// SPDX-License-Identifier: MIT
#include "bench/peers/frames_peer.h"
#include "bench/peers/settings_peer.h"

namespace bench {

namespace {

#if defined(_WIN32)
constexpr const char* reason = "a Linux library; measured in the native run";
#else
constexpr const char* reason = "built without Aravis (package libaravis-dev)";
#endif

}  // namespace

std::unique_ptr<CSettingsPeer> makeAravisSettings(std::string& whyNot) {
    whyNot = reason;
    return nullptr;
}

std::unique_ptr<CFramesPeer> makeAravisFrames(std::int32_t, std::int32_t, std::string& whyNot) {
    whyNot = reason;
    return nullptr;
}

}  // namespace bench
