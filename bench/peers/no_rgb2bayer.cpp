// SPDX-License-Identifier: MIT
#include "bench/peers/mosaic_peer.h"

std::unique_ptr<bench::CMosaicPeer> bench::makeRgb2bayerPeer(std::string& whyNot) {
#if defined(_WIN32)
    whyNot = "a Linux library; compared with in the native run";
#else
    whyNot = "built without GStreamer (package libgstreamer1.0-dev)";
#endif
    return nullptr;
}
