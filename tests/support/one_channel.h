// SPDX-License-Identifier: MIT
// Fixtures with one channel, made straight from a device of the library, whose calls a
// test makes as the host: get(), set(), start(), wait() and the others of CHostCalls.
#pragma once

#include <deque>
#include <memory>

#include "adapter/video_channel.h"
#include "tests/support/channel_fixture.h"
#include "tests/support/host_calls.h"

// No camera yet. The channel is the one opened last, and lives (unless closed) to the end
// of the test.
class COneChannel : public CChannelTest, public CHostCalls<COneChannel, CVideoChannel> {
public:
    CVideoChannel& channel() const { return *m_channels.back(); }

protected:
    void TearDown() override {
        m_channels.clear();
        CChannelTest::TearDown();
    }

    // The camera at a position of the rig in use, or of a new rig.
    CVideoChannel& open(std::uint32_t position = 0) {
        m_channels.push_back(std::make_unique<CVideoChannel>(device(position)));
        return channel();
    }
    CVideoChannel& open(const std::string& rig, std::uint32_t position = 0) {
        loadRig(rig);
        return open(position);
    }
    CVideoChannel& openLive(std::uint32_t position = 0) {
        open(position);
        EXPECT_EQ(start(), accepted());
        return channel();
    }
    CVideoChannel& openLive(const std::string& rig, std::uint32_t position = 0) {
        loadRig(rig);
        return openLive(position);
    }
    // A colour camera with the serial number 3C4D, whose frames come as RGB24.
    CVideoChannel& openLiveInRgb24() {
        open(rigs::color());
        EXPECT_EQ(set("pixelformat", "RGB24"), accepted());
        EXPECT_EQ(start(), accepted());
        return channel();
    }
    // The logs hold the construction alone, without the listing of the devices.
    CVideoChannel& openRecorded() {
        const DShowLib::VideoCaptureDeviceItem item = device();
        recordAll();
        m_channels.push_back(std::make_unique<CVideoChannel>(item));
        return channel();
    }
    CVideoChannel& openRecorded(const std::string& rig) {
        loadRig(rig);
        return openRecorded();
    }
    void close() { m_channels.pop_back(); }

    // The channel's own camera.
    void deliver() const { EXPECT_EQ(virtualCamerasDeliverFrame(channel().serialText()), 1); }
    void unplug() const { EXPECT_EQ(virtualCamerasUnplug(channel().serialText()), 1); }
    void plug() const { EXPECT_EQ(virtualCamerasPlug(channel().serialText()), 1); }

    // One wait of the host on a thread of its own, with `meanwhile` run while it
    // blocks.
    Answer waitWhile(const std::function<void()>& meanwhile) const {
        const std::uint64_t from = win32::callCount();
        Answer answer;
        CHostThread host([&] { answer = wait(); });
        EXPECT_TRUE(win32::waitForCall("WaitForSingleObject", from, deadline));
        meanwhile();
        host.join();
        return answer;
    }
    // One wait that a delivered frame ends.
    Answer waitForDelivery() const {
        return waitWhile([this] { deliver(); });
    }
    // One wait that times out at once.
    Answer waitInVain() const {
        win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
        return wait();
    }
    // The next frame, delivered, waited for and copied into memory of this size.
    const CHostMemory& receiveFrame(std::size_t size = 32) {
        EXPECT_EQ(waitForDelivery(), done());
        return copiedFrame(size);
    }
    // The frame that has been waited for.
    const CHostMemory& copiedFrame(std::size_t size = 32) {
        CHostMemory& frame = m_frames.emplace_back(size);
        EXPECT_EQ(copy(frame), done());
        return frame;
    }
    // There is none to copy, and the host's memory stays as it is.
    void expectNoFrame(std::size_t size = 32) const {
        CHostMemory frame(size);
        EXPECT_EQ(copy(frame), noFrame());
        EXPECT_TRUE(frame.isUntouched());
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

private:
    std::deque<CHostMemory> m_frames;
    std::vector<std::unique_ptr<CVideoChannel>> m_channels;
};

using CGreyCamera = CWithGreyCamera<COneChannel>;

// A block that asks for the trigger, and for nothing else.
inline CameraParameterBlock triggerOn() {
    CameraParameterBlock block{};
    block.triggerEnable = 1;
    return block;
}
