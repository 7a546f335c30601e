// SPDX-License-Identifier: MIT
// The ground of the tests of the start-up: a host's record, and the adapter loaded
// with both logs empty.
#pragma once

#include <cstring>
#include <string>

#include "adapter/channel_registry.h"
#include "tests/channel/trace_recorder.h"
#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

inline constexpr std::uint8_t hostByte = 0xA5;

// A host's record with recognisable contents.
struct HostRecord {
    HostRecord() { std::memset(&record, hostByte, sizeof(record)); }
    bool isUntouched() const {
        HostRecord fresh;
        return std::memcmp(&record, &fresh.record, sizeof(record)) == 0;
    }
    VideoChannelRecord record;
};

class CStartUpTest : public CChannelTest {
protected:
    void SetUp() override {
        CChannelTest::SetUp();
        trace_recorder::clear();
        load(L"C:\\adapter\\velmora_adapter.dll");
        recordAll();
    }

    static void load(const std::wstring& path) {
        win32::setModulePath(path);
        EXPECT_EQ(DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr), TRUE);
    }
    static std::string searchDirectory() {
        win32::reset();
        GetVideoChannel(nullptr, 0, nullptr);
        return win32::callsOf("SetDllDirectoryW").at(0).arguments;
    }
    static std::int32_t channelCount() {
        std::int32_t count = 0;
        HostRecord host;
        while (GetVideoChannel(nullptr, count, &host.record) == 0) {
            ++count;
        }
        return count;
    }
};
