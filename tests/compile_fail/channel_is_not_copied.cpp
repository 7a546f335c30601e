// SPDX-License-Identifier: MIT
// A channel owns a grabber and is known by its address.
// Error: deleted
#include "adapter/video_channel.h"

#ifdef MUST_NOT_COMPILE
CVideoChannel copyOf(const CVideoChannel& channel) {
    return channel;
}
#endif
