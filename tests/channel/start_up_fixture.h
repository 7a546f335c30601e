// SPDX-License-Identifier: MIT
// The ground of the tests of the start-up: a host's record, and the adapter loaded
// with both logs empty and a grey camera plugged in.
#pragma once

#include <cstring>
#include <string>

#include "adapter/channel_registry.h"
#include "tests/channel/trace_recorder.h"
#include "tests/support/channel_fixture.h"

class CStartUpTest : public CChannelTest {
protected:
    void SetUp() override {
        CChannelTest::SetUp();
        std::memset(&m_record, hostByte, sizeof(m_record));
        loadRig(rigs::grey());
        trace_recorder::clear();
        load(L"C:\\adapter\\velmora_adapter.dll");
        recordAll();
    }

    static void load(const std::wstring& path) {
        win32::setModulePath(path);
        EXPECT_EQ(DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr), TRUE);
    }
    // The host asks for a camera, with a record of recognisable contents.
    std::int32_t ask(std::int32_t index = 0) { return GetVideoChannel(nullptr, index, &m_record); }
    bool isRecordUntouched() const {
        VideoChannelRecord fresh;
        std::memset(&fresh, hostByte, sizeof(fresh));
        return std::memcmp(&m_record, &fresh, sizeof(fresh)) == 0;
    }
    static std::string searchDirectory() {
        win32::reset();
        GetVideoChannel(nullptr, 0, nullptr);
        return win32::callsOf("SetDllDirectoryW").at(0).arguments;
    }
    static std::int32_t channelCount() {
        VideoChannelRecord record{};
        std::int32_t count = 0;
        while (GetVideoChannel(nullptr, count, &record) == 0) {
            ++count;
        }
        return count;
    }

    VideoChannelRecord m_record;

private:
    static constexpr int hostByte = 0xA5;
};
