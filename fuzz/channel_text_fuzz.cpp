// SPDX-License-Identifier: MIT
// Any text at a channel's operations, on every camera of the standard rig. Each line
// of the input is one call: a letter for the operation, then key, '=' and value.
#include <memory>
#include <stdexcept>
#include <vector>

#include "adapter/video_channel.h"
#include "capture/library/library.h"
#include "fuzz/input/fuzz_input.h"
#include "virtual_cameras/control.h"

namespace {

using Channels = std::vector<std::unique_ptr<CVideoChannel>>;

// Made once: settings live to the end of the process.
Channels makeChannels() {
    virtualCamerasReset();
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_STEPPED);
    DShowLib::InitLibrary();
    const DShowLib::Grabber grabber;
    const auto devices = grabber.getAvailableVideoCaptureDevices_();
    Channels channels;
    for (std::uint32_t i = 0; devices && i < devices->size(); ++i) {
        channels.push_back(std::make_unique<CVideoChannel>((*devices)[i]));
    }
    require(!channels.empty(), "the standard rig has cameras");
    return channels;
}

// One call with guarded buffers.
class CCall {
public:
    CCall(CVideoChannel& channel, std::string key, std::string value, std::int32_t number)
        : m_channel(channel), m_key(std::move(key)), m_value(std::move(value)), m_number(number) {}

    void run(char operation) {
        try {
            const std::int32_t result = call(operation);
            require(result == HOST_RESULT_SUCCESS || result == HOST_RESULT_FAILURE,
                    "a result is success or failure");
        } catch (std::int32_t code) {
            require(code < 0, "a thrown code is a failure of the library");
        } catch (const std::out_of_range& failure) {
            require(std::string_view(failure.what()) == "invalid vector<T> subscript",
                    "an index outside a list has its text");
        }
        require(m_error.isWhole(), "the error text is whole");
        require(m_output.isWhole(), "the output is whole");
    }

private:
    std::int32_t call(char operation) {
        const char* key = m_key.c_str();
        switch (operation) {
            case 's':
                return set();
            case 'x':
                return m_channel.ExecuteCommand(m_error.data(), key);
            case 'n':
                return m_channel.GetPropertyName(m_error.data(), m_number, m_output.data());
            case 'c':
                return m_channel.GetPropertyChoice(m_error.data(), key, m_number, m_output.data());
            case 'a':
                return m_channel.GetPropertyAttribute(
                    m_error.data(), key, static_cast<std::uint32_t>(m_number), m_output.data());
            case 't':
                return type();
            case 'l':
                return m_channel.StartAcquisition(m_error.data());
            case 'e':
                return m_channel.StopAcquisition(m_error.data());
            default:
                return get();
        }
    }

    std::int32_t get() {
        const std::int32_t result =
            m_channel.GetPropertyValue(m_error.data(), m_key.c_str(), m_output.data());
        if (result == HOST_RESULT_SUCCESS) {
            require(m_error.isUntouched(), "a success writes no message");
            require(!m_output.isUntouched(), "a read value is written");
        } else if (m_output.isUntouched()) {
            const std::string expected = "Unknown property \"" + std::string(m_key.c_str()) + "\"";
            const bool isUnknown = m_error.text() == std::string_view(expected).substr(0, 255);
            require(isUnknown || m_error.text().ends_with("!"), "a failed read says why");
        }
        return result;
    }

    std::int32_t set() {
        const std::int32_t result =
            m_channel.SetPropertyValue(m_error.data(), m_key.c_str(), m_value.c_str());
        require(m_error.isUntouched() == (result == HOST_RESULT_SUCCESS),
                "a set writes a message exactly when it fails");
        return result;
    }

    std::int32_t type() {
        std::uint32_t kind = 0;
        const std::int32_t result = m_channel.GetPropertyType(m_error.data(), m_key.c_str(), &kind);
        require(result == HOST_RESULT_SUCCESS, "every key has a type");
        require(kind == 1 || kind == 2 || kind == 4, "which is one of three");
        return result;
    }

    CVideoChannel& m_channel;
    std::string m_key;
    std::string m_value;
    std::int32_t m_number;
    CFuzzBuffer m_error;
    CFuzzBuffer m_output;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Never destroyed: nothing of the library may be gone before it.
    static const Channels& channels = *new Channels(makeChannels());
    CFuzzInput input(data, size);
    CVideoChannel& channel = *channels[input.take<std::uint8_t>() % channels.size()];
    while (!input.isEmpty()) {
        const char operation = input.take<char>();
        std::string value = input.takeLine();
        const std::size_t equals = std::min(value.find('='), value.size());
        std::string key = value.substr(0, equals);
        value.erase(0, std::min(equals + 1, value.size()));
        const auto number = static_cast<std::int32_t>(std::atoll(value.c_str()));
        CCall(channel, std::move(key), std::move(value), number).run(operation);
    }
    CCall(channel, "", "", 0).run('e');
    require(virtualCamerasMisuses(nullptr, 0) == 0, "the library's rules are kept");
    return 0;
}
