// SPDX-License-Identifier: MIT
// Every call of a record as a host makes it, with buffers of exactly the agreed size, and what
// came of it: what was written and what was not. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "camhost/check/breaches.h"
#include "camhost/check/guarded_bytes.h"
#include "velmora/video_channel_record.h"

namespace camhost {

// What is empty was not written.
struct Answer {
    std::int32_t result = -1;
    std::optional<std::string> message{};
    std::optional<std::string> text{};    // value, name, choice or attribute
    std::optional<std::uint32_t> word{};  // status or type

    bool isDone() const { return result == HOST_RESULT_SUCCESS; }
};

// "answered 1 with the text \"...\" and the status 8192"
std::string told(const Answer& answer);

class CHostCalls {
public:
    CHostCalls(const VideoChannelRecord& record, CBreaches& breaches)
        : m_record(record), m_breaches(&breaches) {}

    const VideoChannelRecord& record() const { return m_record; }
    // The same host, calling with another context or without a buffer for messages.
    CHostCalls withContext(void* context) const;
    CHostCalls withoutMessages() const;

    // These throw NotSupported where the record has no such entry point, and what the adapter
    // throws as a Failure.
    Answer setParameters(const CameraParameterBlock& block);
    Answer imageInfo(ImageInfo& image);
    Answer waitFrame();
    Answer copyFrame(void* destination);
    Answer start();
    Answer stop();
    Answer execute(const std::string& command);
    Answer get(const std::string& key);
    Answer set(const std::string& key, const std::string& value);
    Answer name(std::int32_t index);
    Answer type(const std::string& key);
    Answer choice(const std::string& key, std::int32_t index);
    Answer attribute(const std::string& key, std::uint32_t number);
    Answer close();

private:
    class CText;
    template <class Entry, class... Arguments>
    Answer call(const char* name, const std::string& about, Entry entry, Arguments... arguments);
    std::optional<std::string> read(const CText& text, Breach breach, const std::string& about);

    VideoChannelRecord m_record;
    CBreaches* m_breaches;
    bool m_messages = true;
};

}  // namespace camhost
