// SPDX-License-Identifier: MIT
// The entry points of the host's record.
#pragma once

#include "adapter/video_channel.h"
#include "velmora/video_channel_record.h"

// Fills the record for one channel: everything but its two gaps.
void fillRecord(VideoChannelRecord& record, CVideoChannel& channel);
