// SPDX-License-Identifier: MIT
// The ground of every test of the channel: virtual cameras and Win32 log set back, and
// frames that come only when the test says so. Most tests want one of the fixtures on top
// of it (one_channel.h, property_host.h, tests/channel/start_up_fixture.h).
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
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "capture/conversions.h"
#include "capture/library/library.h"
#include "tests/support/channel_rigs.h"
#include "tests/support/host_memory.h"
#include "tests/support/library_faults.h"
#include "tests/support/library_log.h"
#include "tests/support/thrown.h"
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
        char misuse[256] = {};
        EXPECT_EQ(virtualCamerasMisuses(misuse, sizeof(misuse)), 0U) << misuse;
        EXPECT_EQ(win32::lostCalls(), 0U);
        virtualCamerasReset();
        s_libraryStarted = false;
        win32::reset();
    }

    // The cameras that there are from now on: a text of the rig language, or the name of
    // a built-in rig.
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

    // The Win32 calls in the log, in order, that are among those asked for.
    static std::vector<std::string> win32Calls(const library_log::Filters& names) {
        std::vector<std::string> found;
        for (const win32::Call& call : win32::calls()) {
            if (library_log::matches(call.name, names)) {
                found.push_back(call.name + "(" + call.arguments + ")");
            }
        }
        return found;
    }

    // A message box of the adapter, which never has an owner.
    static auto isBox(const char* text, const char* caption, std::uint32_t type) {
        using ::testing::Field;
        return ::testing::AllOf(Field(&win32::MessageBox::owner, ::testing::IsNull()),
                                Field(&win32::MessageBox::text, text),
                                Field(&win32::MessageBox::caption, caption),
                                Field(&win32::MessageBox::type, type));
    }

private:
    static inline bool s_libraryStarted = false;
};

// The only camera there is delivers grey frames of 8 x 4 pixels and has the serial
// number 1A2B; a test may load another rig instead.
template <class Ground>
class CWithGreyCamera : public Ground {
protected:
    void SetUp() override {
        Ground::SetUp();
        Ground::loadRig(rigs::grey());
    }
};
