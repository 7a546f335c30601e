// SPDX-License-Identifier: MIT
// The ground of the tests of starting, stopping and waiting.
#pragma once

#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

class CAcquisitionTest : public CChannelTest {
protected:
    CVideoChannel& stopped() {
        loadRig(rigs::grey());
        return makeChannel();
    }
    CVideoChannel& live() {
        CVideoChannel& channel = stopped();
        start(channel);
        return channel;
    }
    static std::vector<std::string> comCalls() {
        return win32Calls({"CoInitializeEx", "CoUninitialize", "OleInitialize"});
    }
    // The balance that `work` leaves on a thread that had `starts` starts before.
    static std::int32_t comChange(int starts, const std::function<void()>& work) {
        std::int32_t change = -99;
        CHostThread host([&] {
            for (int i = 0; i < starts; ++i) {
                CoInitializeEx(nullptr, COINIT_MULTITHREADED);
            }
            const std::int32_t before = win32::comBalance();
            work();
            change = win32::comBalance() - before;
        });
        host.join();
        return change;
    }
    static std::int32_t lockedBuffers() {
        std::int32_t locked = 0;
        for (std::uint32_t buffer = 0; buffer < 5; ++buffer) {
            locked += virtualCamerasBufferLocks("1A2B", buffer);
        }
        return locked;
    }
};
