// SPDX-License-Identifier: MIT
#include "tests/border/support/host_channel.h"

#include <gtest/gtest.h>

namespace {

VideoChannelRecord recordOf(const CAdapterDll& adapter, std::int32_t index) {
    VideoChannelRecord record{};
    EXPECT_EQ(adapter.getVideoChannel(index, &record), 0) << "camera " << index;
    return record;
}

}  // namespace

CHostChannel::CHostChannel(const CAdapterDll& adapter, std::int32_t index)
    : CRecordHost(recordOf(adapter, index)) {}

bool CHostChannel::waitForFrame() const {
    constexpr int longestPatience = 10;
    for (int i = 0; i < longestPatience; ++i) {
        if (wait() == done()) {
            return true;
        }
    }
    return false;
}
