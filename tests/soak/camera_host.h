// SPDX-License-Identifier: MIT
// A host of one camera that checks what every call answers.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "velmora/video_channel_record.h"

namespace soak {

struct Counts {
    std::uint64_t frames = 0;
    std::uint64_t losses = 0;
    std::uint64_t settings = 0;
    std::uint64_t refusals = 0;  // of settings
};

// Ends the program with the claim that does not hold.
void require(bool holds, const char* claim, const std::string& detail = {});

// Frames come while the host waits, on the camera's delivery thread.
class CCameraHost {
public:
    explicit CCameraHost(std::int32_t index);

    void start();
    void stop() const;
    // Waits for one frame and copies it.
    void takeFrame(Counts& counts);
    // The camera goes and comes back `times` over, and is found again.
    void loseAndRestore(Counts& counts, std::uint32_t times);
    // Any listed setting to any value.
    void setAnything(Counts& counts, std::mt19937_64& random);
    // As it was when it was opened, as far as what it holds is concerned.
    void setBack();

private:
    std::string get(const char* key) const;
    bool set(const char* key, const char* value) const;
    std::string anyValueOf(const std::string& key, std::mt19937_64& random) const;
    void wait();
    void takeSize();

    VideoChannelRecord m_record{};
    std::string m_camera;  // as the virtual cameras call it
    std::string m_videoFormat;
    std::string m_pixelFormat;
    std::vector<std::string> m_keys;
    std::vector<std::uint8_t> m_frame;
};

}  // namespace soak
