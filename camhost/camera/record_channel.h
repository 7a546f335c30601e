// SPDX-License-Identifier: MIT
// One camera of an adapter, driven through its record alone. Every call checks
// what the adapter wrote and turns what it throws into a Failure. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "camhost/camera/guarded_text.h"
#include "velmora/video_channel_record.h"

namespace camhost {

struct Reply {
    std::int32_t result = 0;
    std::string message;  // what the adapter reported, if anything

    bool done() const { return result == HOST_RESULT_SUCCESS; }
};

struct FrameReply {
    std::int32_t result = 0;
    std::uint32_t status = 0;
};

class CRecordChannel {
public:
    CRecordChannel(const VideoChannelRecord& record, std::int32_t index);

    std::int32_t index() const { return m_index; }
    const VideoChannelRecord& record() const { return m_record; }
    const std::string& name() const { return m_name; }
    const std::string& serial() const { return m_serial; }
    bool hasSerial() const { return m_serial != "n/a" && !m_serial.empty(); }
    // What selects this camera on the command line: its serial or "#index".
    std::string selector() const;

    Reply getValue(const std::string& key, std::string& value);
    Reply setValue(const std::string& key, const std::string& value);
    std::uint32_t propertyType(const std::string& key);
    // In order, up to the first index that has none.
    std::vector<std::string> choices(const std::string& key);
    Reply execute(const std::string& command);
    Reply applyParameters(const CameraParameterBlock& block);

    Reply imageInfo(ImageInfo& image, std::uint32_t& status);
    // Whether the adapter knows it as a camera that it could not open: there is no device,
    // nor a single setting, which a lost camera keeps.
    bool neverOpened();
    // False as soon as the camera is gone: earlier than a wait tells, and settings that are
    // read from then on may be empty.
    bool hasDevice();
    // Throws a Failure that tells a lost camera from a refusal.
    ImageInfo readImageInfo();
    Reply start();
    Reply stop();
    // These two allocate nothing as long as nothing is thrown.
    FrameReply waitFrame();
    FrameReply copyFrame(void* destination);
    // What the last call reported.
    std::string lastMessage() const { return m_message.text(); }

    void close();

private:
    template <class Call>
    std::int32_t guarded(const char* entry, Call call);
    template <class Call>
    Reply reply(const char* entry, Call call);
    void checkBuffer(const CGuardedText& buffer, const char* entry) const;

    VideoChannelRecord m_record;
    std::int32_t m_index;
    std::string m_name;
    std::string m_serial;
    CGuardedText m_message;
    CGuardedText m_value;
};

}  // namespace camhost
