// SPDX-License-Identifier: MIT
// A record for an adapter to fill. One that takes it for a longer one does not reach
// camhost's own memory. Portable.
#pragma once

#include <array>
#include <cstdint>

#include "velmora/video_channel_record.h"

namespace camhost {

struct RecordWithRoom {
    VideoChannelRecord record{};
    std::array<std::uint8_t, sizeof(VideoChannelRecord)> behind{};
};

}  // namespace camhost
