// SPDX-License-Identifier: MIT
// The record as a host's raw memory: 680 bytes and no more, read at offsets.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>

#include "tests/support/host_memory.h"
#include "velmora/video_channel_record.h"

class CRawRecord : public CHostMemory {
public:
    CRawRecord() : CHostMemory(680) {}

    VideoChannelRecord* record() {
        return static_cast<VideoChannelRecord*>(static_cast<void*>(data()));
    }
    template <class Value>
    Value at(std::size_t offset) const {
        Value value{};
        std::memcpy(&value, data() + offset, sizeof(value));
        return value;
    }
    std::string text(std::size_t offset) const {
        return reinterpret_cast<const char*>(data() + offset);
    }
};
