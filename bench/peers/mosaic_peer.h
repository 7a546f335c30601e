// SPDX-License-Identifier: MIT
// Other people's code that moves the same bytes as the re-mosaic: four in, one out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace bench {

class CMosaicPeer {
public:
    CMosaicPeer() = default;
    CMosaicPeer(const CMosaicPeer&) = delete;
    CMosaicPeer& operator=(const CMosaicPeer&) = delete;
    virtual ~CMosaicPeer() = default;

    // The buffers stay where they are until the next call, and belong to the caller.
    virtual void prepare(const std::vector<std::uint8_t*>& sources, std::uint8_t* destination,
                         std::int32_t width, std::int32_t height) = 0;
    virtual void run(std::size_t source) = 0;
};

// libyuv's ARGBExtractAlpha; nothing, and the reason, where it cannot be had.
std::unique_ptr<CMosaicPeer> makeLibyuvPeer(std::string& whyNot);
// GStreamer's rgb2bayer.
std::unique_ptr<CMosaicPeer> makeRgb2bayerPeer(std::string& whyNot);

}  // namespace bench
