// SPDX-License-Identifier: MIT
// One camera as a host holds it: the record, and its entry points called with
// guarded buffers of exactly 256 bytes.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

#include "tests/border/support/adapter_dll.h"
#include "tests/border/support/host_buffers.h"
#include "velmora/video_channel_record.h"

// A status, type or number that the adapter has not written.
inline constexpr std::uint32_t untouchedWord = 0xA5A5A5A5;

// What a call returned and wrote.
struct Answer {
    std::int32_t result = 0;
    std::uint32_t word = untouchedWord;  // status or type
    std::string errorText = "<untouched>";
    std::string value = "<untouched>";  // name, value, choice or attribute

    bool operator==(const Answer&) const = default;
};
void PrintTo(const Answer& answer, std::ostream* stream);

inline Answer done() {
    return {0, 0};
}
inline Answer noFrame() {
    return {0, 0x1000};
}
inline Answer succeeded() {
    return {0};
}
inline Answer failed() {
    return {1};
}
inline Answer failed(std::string errorText) {
    return {1, untouchedWord, std::move(errorText)};
}
inline Answer valued(std::string value) {
    return {0, untouchedWord, "<untouched>", std::move(value)};
}

class CHostChannel {
public:
    CHostChannel() = default;
    // The record of camera `index`, which must be there.
    CHostChannel(const CAdapterDll& adapter, std::int32_t index);

    const VideoChannelRecord& record() const noexcept { return m_record; }

    Answer start() const;
    Answer stop() const;
    Answer wait() const;
    Answer copy(void* destination) const;
    Answer imageInfo(ImageInfo* image) const;
    Answer get(const char* key) const;
    Answer set(const char* key, const char* value) const;
    Answer execute(const char* command) const;
    Answer parameters(const CameraParameterBlock* block) const;
    Answer name(std::int32_t index) const;
    Answer type(const char* key) const;
    Answer choice(const char* key, std::int32_t index) const;
    Answer attribute(const char* key, std::uint32_t attribute) const;
    Answer close() const;

    // Waits until a frame has come; some waits may time out. False after ten.
    bool waitForFrame() const;

private:
    VideoChannelRecord m_record{};
};
