// SPDX-License-Identifier: MIT
// Another camera library's frames, waited for and copied.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace bench {

class CFramesPeer {
public:
    CFramesPeer() = default;
    CFramesPeer(const CFramesPeer&) = delete;
    CFramesPeer& operator=(const CFramesPeer&) = delete;
    virtual ~CFramesPeer() = default;

    virtual void start() = 0;
    virtual void stop() = 0;
    // Waits for a frame, copies it, and gives its buffer back.
    virtual void grab(std::uint8_t* destination) = 0;
};

// Aravis with its own fake camera, eight bits of grey at most 1000 times a second.
std::unique_ptr<CFramesPeer> makeAravisFrames(std::int32_t width, std::int32_t height,
                                              std::string& whyNot);

}  // namespace bench
