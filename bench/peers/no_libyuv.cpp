// SPDX-License-Identifier: MIT
#include "bench/peers/mosaic_peer.h"

std::unique_ptr<bench::CMosaicPeer> bench::makeLibyuvPeer(std::string& whyNot) {
    whyNot = "a Linux library; compared with in the native run";
    return nullptr;
}
