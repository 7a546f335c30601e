// SPDX-License-Identifier: MIT
// A host's calls, each with guarded buffers of its own, and what they answer. The same
// for a channel itself and for the record of one.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/host_memory.h"
#include "velmora/host_blocks.h"
#include "velmora/video_channel_record.h"

// What one call returned and wrote.
struct Answer {
    std::int32_t result = 0;
    std::string message = untouched;
    std::string value = untouched;                // value, name, choice or attribute
    std::uint32_t word = CHostStatus::unwritten;  // status or type

    bool operator==(const Answer&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Answer& answer) {
        return out << answer.result << ", message \"" << answer.message << "\", value \""
                   << answer.value << "\", word 0x" << std::hex << answer.word << std::dec;
    }
};

// 0, and nothing written but this value.
inline Answer accepted(std::string value = untouched) {
    return {0, untouched, std::move(value)};
}
// 1, and nothing written but this message.
inline Answer refused(std::string message = untouched) {
    return {1, std::move(message)};
}
// The calls with a status, and the one with a type.
inline Answer withStatus(std::uint32_t status) {
    return {0, untouched, untouched, status};
}
inline Answer done() {
    return withStatus(0);
}
inline Answer noFrame() {
    return withStatus(0x1000);
}
inline Answer deviceLost(std::string message) {
    return {1, std::move(message), untouched, 0x2000};
}

// Watches nothing.
struct CNoCheck {};

// `Host` gives channel(): a CVideoChannel, or a record with its context. A `Check` lives
// around each call but those that move frames, which have no say in what the camera does
// meanwhile.
template <class Host, class Channel, class Check = CNoCheck>
class CHostCalls {
public:
    Answer start() const {
        return answerOf<CNoCheck>([this](char* message, std::uint32_t*, char*) {
            return enter(&Channel::StartAcquisition, message);
        });
    }
    Answer stop() const {
        return answerOf<CNoCheck>([this](char* message, std::uint32_t*, char*) {
            return enter(&Channel::StopAcquisition, message);
        });
    }
    Answer wait() const {
        return answerOf<CNoCheck>([this](char* message, std::uint32_t* status, char*) {
            return enter(&Channel::WaitFrame, message, status);
        });
    }
    Answer copy(void* destination) const {
        return answerOf<CNoCheck>([&](char* message, std::uint32_t* status, char*) {
            return enter(&Channel::CopyFrame, message, destination, status);
        });
    }
    Answer copy(CHostMemory& destination) const { return copy(destination.data()); }
    Answer imageInfo(ImageInfo* image) const {
        return answerOf([&](char* message, std::uint32_t* status, char*) {
            return enter(&Channel::GetImageInfo, message, image, status);
        });
    }

    Answer get(const char* key) const {
        return answerOf([&](char* message, std::uint32_t*, char* value) {
            return enter(&Channel::GetPropertyValue, message, key, value);
        });
    }
    Answer get(const std::string& key) const { return get(key.c_str()); }
    Answer set(const char* key, const char* value) const {
        return answerOf([&](char* message, std::uint32_t*, char*) {
            return enter(&Channel::SetPropertyValue, message, key, value);
        });
    }
    Answer set(const std::string& key, const std::string& value) const {
        return set(key.c_str(), value.c_str());
    }
    Answer execute(const char* command) const {
        return answerOf([&](char* message, std::uint32_t*, char*) {
            return enter(&Channel::ExecuteCommand, message, command);
        });
    }
    Answer execute(const std::string& command) const { return execute(command.c_str()); }
    Answer parameters(const CameraParameterBlock* block) const {
        return answerOf([&](char* message, std::uint32_t*, char*) {
            return enter(&Channel::SetCameraParameters, message, block);
        });
    }
    Answer parameters(const CameraParameterBlock& block) const { return parameters(&block); }

    Answer name(std::int32_t index) const {
        return answerOf([&](char* message, std::uint32_t*, char* name) {
            return enter(&Channel::GetPropertyName, message, index, name);
        });
    }
    Answer type(const char* key) const {
        return answerOf([&](char* message, std::uint32_t* type, char*) {
            return enter(&Channel::GetPropertyType, message, key, type);
        });
    }
    Answer choice(const char* key, std::int32_t index) const {
        return answerOf([&](char* message, std::uint32_t*, char* choice) {
            return enter(&Channel::GetPropertyChoice, message, key, index, choice);
        });
    }
    Answer attribute(const char* key, std::uint32_t attribute) const {
        return answerOf([&](char* message, std::uint32_t*, char* text) {
            return enter(&Channel::GetPropertyAttribute, message, key, attribute, text);
        });
    }

    // What a host lists by index.
    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (Answer answer = name(0); answer.result == 0;
             answer = name(static_cast<std::int32_t>(all.size()))) {
            all.push_back(answer.value);
        }
        return all;
    }

protected:
    CHostCalls() = default;

    // One call with a message buffer, a word and a value buffer of its own.
    template <class Around = Check, class Call>
    static Answer answerOf(Call&& call) {
        [[maybe_unused]] const Around check{};
        CHostText message;
        CHostText value;
        CHostStatus word;
        const std::int32_t result = call(message, word, value);
        return {result, message.read(), value.read(), word.value()};
    }
    template <class Entry, class... Arguments>
    std::int32_t enter(Entry entry, char* message, Arguments... arguments) const {
        auto& channel = static_cast<const Host&>(*this).channel();
        if constexpr (std::is_same_v<Channel, VideoChannelRecord>) {
            return (channel.*entry)(message, channel.context, arguments...);
        } else {
            return (channel.*entry)(message, arguments...);
        }
    }
};

// A host that holds a record.
class CRecordHost : public CHostCalls<CRecordHost, VideoChannelRecord> {
public:
    CRecordHost() = default;
    explicit CRecordHost(const VideoChannelRecord& record) : m_record(record) {}

    const VideoChannelRecord& channel() const noexcept { return m_record; }
    const VideoChannelRecord& record() const noexcept { return m_record; }
    void* context() const noexcept { return m_record.context; }
    // As a host that passes another context.
    CRecordHost with(void* context) const {
        VideoChannelRecord record = m_record;
        record.context = context;
        return CRecordHost(record);
    }

    Answer close() const {
        return answerOf([this](char* message, std::uint32_t*, char*) {
            return enter(&VideoChannelRecord::CloseChannel, message);
        });
    }

private:
    VideoChannelRecord m_record{};
};
