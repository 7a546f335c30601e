// SPDX-License-Identifier: MIT
// The ground of every test of the channel: virtual cameras and Win32 log set back,
// frames that come only when the test says so, and channels made either straight
// from a device of the library or through the adapter's export.
//
// The native build has no loader, so the fixture calls the adapter's library entry.
// What the export keeps (the registry, and that the devices have been listed) lives
// as long as the process: CTest gives each test a process of its own, and a test
// through the export counts on it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "adapter/video_channel.h"
#include "capture/conversions.h"
#include "capture/library/library.h"
#include "tests/support/host_memory.h"
#include "tests/support/library_log.h"
#include "tests/win32/win32_log.h"
#include "velmora/video_channel_record.h"
#include "virtual_cameras/control.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

// Runs one stretch of host code on a thread of its own; joined at the end of the
// scope at the latest.
class CHostThread {
public:
    explicit CHostThread(std::function<void()> work) : m_thread(std::move(work)) {}
    CHostThread(const CHostThread&) = delete;
    CHostThread& operator=(const CHostThread&) = delete;
    ~CHostThread() { join(); }

    void join() {
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }

private:
    std::thread m_thread;
};

// What a call of WaitFrame gave.
struct WaitOutcome {
    std::int32_t result = -1;
    std::uint32_t status = CHostStatus::unwritten;
    bool statusWritten = false;
    bool textUntouched = false;
    std::string text;  // empty where the buffer is untouched
};

class CChannelTest : public ::testing::Test {
protected:
    // Longer than any step takes; reached only by a test that fails.
    static constexpr std::chrono::milliseconds deadline{20000};

    void SetUp() override {
        virtualCamerasReset();
        virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_STEPPED);
        win32::reset();
        DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr);
        win32::reset();
    }

    void TearDown() override {
        m_channels.clear();
        char misuse[256] = {};
        EXPECT_EQ(virtualCamerasMisuses(misuse, sizeof(misuse)), 0U) << misuse;
        EXPECT_EQ(win32::lostCalls(), 0U);
        virtualCamerasReset();
        s_libraryStarted = false;
        win32::reset();
    }

    // The rig, as text of the rig language or by the name of a built-in one.
    static void loadRig(const std::string& toml) {
        char message[512] = {};
        ASSERT_EQ(virtualCamerasLoadRig(toml.c_str(), message, sizeof(message)), 0) << message;
    }
    static void chooseRig(const char* name) {
        char message[512] = {};
        ASSERT_EQ(virtualCamerasChooseRig(name, message, sizeof(message)), 0) << message;
    }

    // Where no call of the export does it.
    static void startLibrary() {
        if (!s_libraryStarted) {
            EXPECT_TRUE(DShowLib::InitLibrary());
            s_libraryStarted = true;
        }
    }

    // The device at a position of the library's own list.
    static DShowLib::VideoCaptureDeviceItem device(std::uint32_t position = 0) {
        startLibrary();
        const DShowLib::Grabber grabber;
        const auto devices = grabber.getAvailableVideoCaptureDevices_();
        if (!devices || position >= devices->size()) {
            throw std::logic_error("the rig has no camera at this position");
        }
        return (*devices)[position];
    }

    // A channel of the device, kept (unless closed) to the end of the test.
    CVideoChannel& makeChannel(std::uint32_t position = 0) {
        m_channels.push_back(std::make_unique<CVideoChannel>(device(position)));
        return *m_channels.back();
    }
    // As above; the library's log and the Win32 log hold the construction alone.
    CVideoChannel& makeRecordedChannel(std::uint32_t position = 0) {
        const DShowLib::VideoCaptureDeviceItem item = device(position);
        recordAll();
        m_channels.push_back(std::make_unique<CVideoChannel>(item));
        return *m_channels.back();
    }
    void closeChannel(CVideoChannel& channel) {
        std::erase_if(m_channels, [&](const auto& each) { return each.get() == &channel; });
    }

    // The record of a camera index, through the export.
    static VideoChannelRecord openRecord(std::int32_t index = 0) {
        VideoChannelRecord record{};
        EXPECT_EQ(GetVideoChannel(nullptr, index, &record), 0);
        return record;
    }

    // Empties both logs; from here on the library's calls are in its log.
    static void recordAll() {
        library_log::record();
        win32::reset();
    }

    static void start(CVideoChannel& channel) {
        CHostText text;
        ASSERT_EQ(channel.StartAcquisition(text), 0) << text.text();
        EXPECT_TRUE(text.isUntouched());
    }
    static void stop(CVideoChannel& channel) {
        CHostText text;
        ASSERT_EQ(channel.StopAcquisition(text), 0) << text.text();
        EXPECT_TRUE(text.isUntouched());
    }
    // The status of a copy; its result and its text buffer are always the same.
    static std::uint32_t copyFrame(CVideoChannel& channel, CHostMemory& frame) {
        CHostText text;
        CHostStatus status;
        EXPECT_EQ(channel.CopyFrame(text, frame.data(), status), 0);
        EXPECT_TRUE(text.isUntouched());
        return status.value();
    }

    // One wait of the host on a thread of its own, with `meanwhile` run while it
    // blocks.
    static WaitOutcome waitWhile(CVideoChannel& channel, const std::function<void()>& meanwhile) {
        const std::uint64_t from = win32::callCount();
        WaitOutcome outcome;
        CHostThread host([&] { outcome = waitFrame(channel); });
        EXPECT_TRUE(win32::waitForCall("WaitForSingleObject", from, deadline));
        meanwhile();
        host.join();
        return outcome;
    }
    // One wait that a delivered frame ends.
    static WaitOutcome waitForDelivery(CVideoChannel& channel, const char* camera) {
        return waitWhile(channel, [&] { EXPECT_EQ(virtualCamerasDeliverFrame(camera), 1); });
    }
    // One wait that times out at once.
    static WaitOutcome waitInVain(CVideoChannel& channel) {
        win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
        return waitFrame(channel);
    }
    static WaitOutcome waitFrame(CVideoChannel& channel) {
        CHostText text;
        CHostStatus status;
        WaitOutcome outcome;
        outcome.result = channel.WaitFrame(text, status);
        outcome.status = status.value();
        outcome.statusWritten = !status.isUntouched();
        outcome.textUntouched = text.isUntouched();
        outcome.text = outcome.textUntouched ? std::string() : text.text();
        return outcome;
    }

    // A setting as the host reads it; the failure's message in brackets.
    static std::string property(CVideoChannel& channel, const char* key) {
        CHostText message;
        CHostText value;
        return channel.GetPropertyValue(message, key, value) == HOST_RESULT_SUCCESS
                   ? value.text()
                   : "[" + message.text() + "]";
    }
    // Empty on success, else the message.
    static std::string setProperty(CVideoChannel& channel, const char* key, const char* value) {
        CHostText message;
        if (channel.SetPropertyValue(message, key, value) == HOST_RESULT_SUCCESS) {
            EXPECT_TRUE(message.isUntouched()) << message.text();
            return {};
        }
        return message.isUntouched() ? "[failure without a text]" : message.text();
    }

    // Names of the Win32 calls in the log, in order, that are among those asked for.
    static std::vector<std::string> win32Calls(std::initializer_list<std::string_view> names) {
        std::vector<std::string> found;
        for (const win32::Call& call : win32::calls()) {
            if (library_log::matches(call.name, names)) {
                found.push_back(call.name + "(" + call.arguments + ")");
            }
        }
        return found;
    }

    static VirtualCamerasAlive alive() {
        VirtualCamerasAlive counts{};
        virtualCamerasGetAlive(&counts);
        return counts;
    }

private:
    static inline bool s_libraryStarted = false;

    std::vector<std::unique_ptr<CVideoChannel>> m_channels;
};
