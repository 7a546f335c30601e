// SPDX-License-Identifier: MIT
// A host that reads, writes and runs the settings of one virtual camera, always
// with guarded buffers, and checks at every call that no memory of COM is left.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "adapter/video_channel.h"
#include "tests/support/channel_fixture.h"
#include "tests/win32/win32_log.h"
#include "velmora/host_blocks.h"
#include "virtual_cameras/control.h"

namespace property_tests {

// What a buffer reads as long as nobody has written it.
inline constexpr const char* untouched = "(untouched)";

inline std::string read(const CHostText& text) {
    return text.isUntouched() ? untouched : text.text();
}

// What one call of the host brought.
struct Answer {
    std::int32_t result;
    std::string message;
    std::string value;

    bool operator==(const Answer&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Answer& answer) {
        return out << answer.result << ", message \"" << answer.message << "\", value \""
                   << answer.value << '"';
    }
};

inline Answer accepted(std::string value = untouched) {
    return {0, untouched, std::move(value)};
}
inline Answer refused(std::string message) {
    return {1, std::move(message), untouched};
}

// Task memory and counted texts at the end of the scope are as at its start.
class CMemoryBalance {
public:
    CMemoryBalance() = default;
    CMemoryBalance(const CMemoryBalance&) = delete;
    CMemoryBalance& operator=(const CMemoryBalance&) = delete;
    ~CMemoryBalance() {
        EXPECT_EQ(win32::taskMemoryBlocks(), m_blocks) << "task memory";
        EXPECT_EQ(win32::bstrs(), m_texts) << "counted texts";
    }

private:
    std::int64_t m_blocks = win32::taskMemoryBlocks();
    std::int64_t m_texts = win32::bstrs();
};

// The fixture of every test here. Its parts are open to CPropertyHost.
class CPropertyTest : public CChannelTest {
public:
    using CChannelTest::chooseRig;
    using CChannelTest::loadRig;

    static DShowLib::VideoCaptureDeviceItem device(std::uint32_t index) {
        const DShowLib::Grabber grabber;
        const auto devices = grabber.getAvailableVideoCaptureDevices_();
        return (*devices)[index];
    }

protected:
    void SetUp() override {
        CChannelTest::SetUp();
        DShowLib::InitLibrary();
    }
};

// A rig of one camera with the serial text "1A2B".
inline std::string camera(const std::string& description) {
    return "[[camera]]\nname = \"Bench\"\nmodel = \"Bench Model\"\nserial = \"1A2B\"\n" +
           description;
}
inline constexpr const char* cameraId = "1A2B";

// "Class::member(arguments)" of the library's calls with these names, in order.
inline std::vector<std::string> libraryCalls(const std::vector<std::string_view>& operations,
                                             std::uint64_t from = 0) {
    std::vector<std::string> calls;
    VirtualCamerasCall call{};
    for (std::uint64_t i = from; virtualCamerasGetCall(i, &call) != 0; ++i) {
        if (std::find(operations.begin(), operations.end(), call.operation) != operations.end()) {
            calls.push_back(std::string(call.operation) + "(" + call.arguments + ")");
        }
    }
    return calls;
}

// Everything that a setting can do to a device.
inline const std::vector<std::string_view>& changingOperations() {
    static const std::vector<std::string_view> operations = {"Grabber::openDev",
                                                             "Grabber::closeDev",
                                                             "Grabber::startLive",
                                                             "Grabber::stopLive",
                                                             "Grabber::setVideoFormat",
                                                             "Grabber::setVideoNorm",
                                                             "Grabber::setInputChannel",
                                                             "Grabber::setFPS",
                                                             "Grabber::showVCDPropertyPage",
                                                             "IVCDRangeProperty::setValue",
                                                             "IVCDAbsoluteValueProperty::setValue",
                                                             "IVCDSwitchProperty::setSwitch",
                                                             "IVCDButtonProperty::push",
                                                             "IVCDMapStringsProperty::setString"};
    return operations;
}

class CPropertyHost {
public:
    // Opens a camera of the rig in use. The call log covers the construction.
    explicit CPropertyHost(std::uint32_t index = 0) { open(index); }
    // Opens the only camera of a new rig.
    explicit CPropertyHost(const std::string& toml) {
        CPropertyTest::loadRig(toml);
        open(0);
    }

    CVideoChannel& channel() { return *m_channel; }
    void close() { m_channel.reset(); }

    Answer get(const char* key) {
        const CMemoryBalance balance;
        CHostText message;
        CHostText value;
        const std::int32_t result = m_channel->GetPropertyValue(message, key, value);
        return {result, read(message), read(value)};
    }
    Answer get(const std::string& key) { return get(key.c_str()); }
    Answer set(const char* key, const char* value) {
        const CMemoryBalance balance;
        CHostText message;
        const std::int32_t result = m_channel->SetPropertyValue(message, key, value);
        return {result, read(message), untouched};
    }
    Answer set(const std::string& key, const std::string& value) {
        return set(key.c_str(), value.c_str());
    }
    // For a set after which the library holds another number of sinks than before.
    Answer setWithSinks(const char* key, const char* value) {
        CHostText message;
        const std::int32_t result = m_channel->SetPropertyValue(message, key, value);
        return {result, read(message), untouched};
    }
    Answer execute(const char* command) {
        const CMemoryBalance balance;
        CHostText message;
        const std::int32_t result = m_channel->ExecuteCommand(message, command);
        return {result, read(message), untouched};
    }
    Answer execute(const std::string& command) { return execute(command.c_str()); }
    Answer name(std::int32_t index) {
        const CMemoryBalance balance;
        CHostText message;
        CHostText name;
        const std::int32_t result = m_channel->GetPropertyName(message, index, name);
        return {result, read(message), read(name)};
    }
    Answer choice(const char* key, std::int32_t index) {
        const CMemoryBalance balance;
        CHostText message;
        CHostText text;
        const std::int32_t result = m_channel->GetPropertyChoice(message, key, index, text);
        return {result, read(message), read(text)};
    }
    Answer attribute(const char* key, std::uint32_t attribute) {
        const CMemoryBalance balance;
        CHostText message;
        CHostText text;
        const std::int32_t result = m_channel->GetPropertyAttribute(message, key, attribute, text);
        return {result, read(message), read(text)};
    }
    std::uint32_t type(const char* key) {
        const CMemoryBalance balance;
        CHostText message;
        std::uint32_t type = 0xDEADBEEF;
        EXPECT_EQ(m_channel->GetPropertyType(message, key, &type), 0);
        EXPECT_EQ(read(message), untouched);
        return type;
    }
    Answer apply(const CameraParameterBlock& parameters) {
        const CMemoryBalance balance;
        CHostText message;
        const std::int32_t result = m_channel->SetCameraParameters(message, &parameters);
        return {result, read(message), untouched};
    }
    Answer start() {
        CHostText message;
        const std::int32_t result = m_channel->StartAcquisition(message);
        return {result, read(message), untouched};
    }
    Answer stop() {
        CHostText message;
        const std::int32_t result = m_channel->StopAcquisition(message);
        return {result, read(message), untouched};
    }

    // The values of prefix1, prefix2, ... up to the first empty one.
    std::vector<std::string> list(const std::string& prefix) {
        std::vector<std::string> values;
        for (int i = 1;; ++i) {
            const Answer answer = get(prefix + std::to_string(i));
            if (answer.result != 0 || answer.value.empty()) {
                EXPECT_EQ(answer.result, 0) << prefix << i << " ends without a terminator";
                return values;
            }
            values.push_back(answer.value);
        }
    }
    // What the host lists by index.
    std::vector<std::string> names() {
        std::vector<std::string> values;
        for (std::int32_t i = 0;; ++i) {
            const Answer answer = name(i);
            if (answer.result != 0) {
                return values;
            }
            values.push_back(answer.value);
        }
    }

    // Calls from here on.
    void forgetCalls() { m_from = virtualCamerasCallCount(); }
    std::vector<std::string> calls(const std::vector<std::string_view>& operations) const {
        return libraryCalls(operations, m_from);
    }
    std::vector<std::string> changes() const { return calls(changingOperations()); }
    std::uint64_t callCount() const { return virtualCamerasCallCount() - m_from; }

private:
    void open(std::uint32_t index) {
        const DShowLib::VideoCaptureDeviceItem item = CPropertyTest::device(index);
        virtualCamerasRecordCalls(1);
        m_channel = std::make_unique<CVideoChannel>(item);
    }

    std::unique_ptr<CVideoChannel> m_channel;
    std::uint64_t m_from = 0;
};

// How a device's property stands behind the library's back.
inline std::string deviceValue(const char* item, const char* element, const char* interfaceName) {
    std::array<char, 512> text{};
    EXPECT_EQ(virtualCamerasReadProperty(cameraId, item, element, interfaceName, text.data(),
                                         text.size()),
              1);
    return text.data();
}

inline std::int32_t references(const char* item, const char* element, const char* interfaceName) {
    return virtualCamerasInterfaceReferences(cameraId, item, element, interfaceName);
}

inline constexpr std::int32_t accessDenied = -2147024891;  // 0x80070005

inline void failCall(const char* operation, std::uint32_t nth = 1, std::uint32_t count = 1) {
    virtualCamerasFailCall(operation, nth, count, VIRTUAL_CAMERAS_FAIL_CODE, accessDenied, "");
}
inline void refuseCall(const char* operation, std::uint32_t nth = 1, std::uint32_t count = 1) {
    virtualCamerasFailCall(operation, nth, count, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
}
inline void emptyCall(const char* operation, std::uint32_t nth = 1, std::uint32_t count = 1) {
    virtualCamerasFailCall(operation, nth, count, VIRTUAL_CAMERAS_FAIL_EMPTY, 0, "");
}
inline void throwFromCall(const char* operation, const char* text, std::uint32_t nth = 1,
                          std::uint32_t count = 1) {
    virtualCamerasFailCall(operation, nth, count, VIRTUAL_CAMERAS_FAIL_THROW, 0, text);
}

// The result code that leaves the operation as a thrown integer; 0 for none.
template <class Operation>
std::int32_t thrownCode(Operation&& operation) {
    try {
        operation();
    } catch (std::int32_t code) {
        return code;
    }
    return 0;
}

// The text of a std::out_of_range that leaves the operation; empty for none.
template <class Operation>
std::string outOfRangeText(Operation&& operation) {
    try {
        operation();
    } catch (const std::out_of_range& failure) {
        return failure.what();
    }
    return {};
}

}  // namespace property_tests
