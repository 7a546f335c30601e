// SPDX-License-Identifier: MIT
// The adapter's cameras as a host sees them: the record, and nothing else.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "velmora/video_channel_record.h"

namespace bench {

// Throws std::runtime_error where an entry point refuses.
class CCamera {
public:
    explicit CCamera(const VideoChannelRecord& record) : m_record(record) {}

    std::string get(const char* key);
    void set(const char* key, const char* value);
    // Whether there is a name at this index.
    bool hasName(std::int32_t index);
    std::int32_t countNames();

    void start();
    void stop();
    // Waits as long as it takes.
    void wait();
    void copy(void* destination);
    void close();

    const VideoChannelRecord& record() const { return m_record; }

private:
    void require(std::int32_t result, const char* what) const;

    VideoChannelRecord m_record;
    char m_text[HOST_TEXT_BYTES] = "";
    char m_value[HOST_TEXT_BYTES] = "";
};

// All cameras that `entry` finds.
std::vector<CCamera> openCameras(GetVideoChannelEntry entry);

// A rig of `cameras` cameras with `items` settings each, of three keys each, which
// deliver frames of the format `rate` times a second.
struct Rig {
    std::int32_t cameras = 1;
    std::int32_t items = 1;
    std::string format = "Y800 (64x64)";
    std::int32_t rate = 250;

    std::string text(std::int32_t firstSerial = 0xA000) const;
};

}  // namespace bench
