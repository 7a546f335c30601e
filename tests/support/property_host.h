// SPDX-License-Identifier: MIT
// A host that reads, writes and runs the settings of one virtual camera, always
// with guarded buffers, and checks at every call that no memory of COM is left.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "adapter/video_channel.h"
#include "tests/support/channel_fixture.h"
#include "tests/support/host_calls.h"

namespace property_tests {

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

// The fixture of every test here. Its parts are open to the hosts and grabbers below.
class CPropertyTest : public CChannelTest {
public:
    using CChannelTest::chooseRig;
    using CChannelTest::device;
    using CChannelTest::loadRig;

protected:
    void SetUp() override {
        CChannelTest::SetUp();
        startLibrary();
    }
};

// A rig of one camera with the serial text "1A2B".
inline std::string camera(const std::string& description) {
    return "[[camera]]\nname = \"Bench\"\nmodel = \"Bench Model\"\nserial = \"1A2B\"\n" +
           description;
}
inline constexpr const char* cameraId = "1A2B";

// Everything that a setting can do to a device.
inline const library_log::Filters& changingOperations() {
    static const library_log::Filters operations = {"Grabber::openDev",
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

class CPropertyHost : public CHostCalls<CPropertyHost, CVideoChannel, CMemoryBalance> {
public:
    // Opens a camera of the rig in use. The call log covers the construction.
    explicit CPropertyHost(std::uint32_t index = 0) { open(index); }
    // Opens the only camera of a new rig.
    explicit CPropertyHost(const std::string& toml) {
        CPropertyTest::loadRig(toml);
        open(0);
    }

    CVideoChannel& channel() const { return *m_channel; }
    void close() { m_channel.reset(); }

    // For a set after which the library holds another number of sinks than before.
    Answer setWithSinks(const char* key, const char* value) const {
        return answerOf<CNoCheck>([&](char* message, std::uint32_t*, char*) {
            return m_channel->SetPropertyValue(message, key, value);
        });
    }
    // The kind of a key, which no key is refused.
    std::uint32_t type(const char* key) const {
        Answer answer = CHostCalls::type(key);
        const std::uint32_t type = std::exchange(answer.word, 0);
        EXPECT_EQ(answer, done()) << key;
        return type;
    }

    // The values of prefix1, prefix2, ... up to the first empty one.
    std::vector<std::string> list(const std::string& prefix) const {
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
    // Calls from here on.
    void forgetCalls() { m_from = virtualCamerasCallCount(); }
    std::vector<std::string> calls(const library_log::Filters& operations) const {
        return library_log::invocations(operations, m_from);
    }
    std::vector<std::string> changes() const { return calls(changingOperations()); }
    std::uint64_t callCount() const { return virtualCamerasCallCount() - m_from; }

private:
    void open(std::uint32_t index) {
        const DShowLib::VideoCaptureDeviceItem item = CPropertyTest::device(index);
        library_log::record();
        m_channel = std::make_unique<CVideoChannel>(item);
    }

    std::unique_ptr<CVideoChannel> m_channel;
    std::uint64_t m_from = 0;
};

// A device opened without a channel, for settings made by the test itself.
class COpenGrabber {
public:
    explicit COpenGrabber(const std::string& rig) {
        CPropertyTest::loadRig(rig);
        EXPECT_TRUE(m_grabber.openDev(CPropertyTest::device()));
    }
    DShowLib::Grabber& get() { return m_grabber; }

private:
    DShowLib::Grabber m_grabber;
};

}  // namespace property_tests
