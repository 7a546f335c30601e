// SPDX-License-Identifier: MIT
// Who listens to a grabber, and how each event is told. A listener is called
// without the world's lock, and may call the library or destroy the grabber.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "capture/library/grabber.h"
#include "capture/library/mem_buffer.h"

namespace virtual_cameras {

struct Listener {
    DShowLib::GrabberListener* listener;
    ULONG events;  // that it asked for
};

// What becomes of one frame.
struct FrameNews {
    DShowLib::Grabber& owner;
    const std::string& camera;  // for the call log
    std::uint32_t number;
};

// `buffer` may be null.
void tellFrameDropped(const std::vector<Listener>& listeners, const FrameNews& news,
                      const DShowLib::smart_ptr<DShowLib::MemBuffer>& buffer);
void tellFrameReady(const std::vector<Listener>& listeners, const FrameNews& news,
                    DShowLib::smart_ptr<DShowLib::MemBuffer>& buffer, std::uint32_t bufferIndex,
                    bool overlay);
void tellDeviceLost(const std::vector<Listener>& listeners, DShowLib::Grabber& owner,
                    const std::string& camera);

}  // namespace virtual_cameras
