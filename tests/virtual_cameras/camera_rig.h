// SPDX-License-Identifier: MIT
// What the tests of the virtual cameras share: a fresh library per test, a
// listener that remembers, and short ways to what is in a rig.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "capture/conversions.h"
#include "capture/library/grabber.h"
#include "capture/library/library.h"
#include "capture/library/property_ids.h"
#include "virtual_cameras/control.h"

namespace camera_tests {

inline constexpr std::uint64_t oneSecond = 1'000'000'000;  // nanoseconds

inline constexpr GUID subtypeY800 = {
    0x30303859, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};
inline constexpr GUID subtypeRGB24 = {
    0xE436EB7D, 0x524F, 0x11CE, {0x9F, 0x53, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
inline constexpr GUID subtypeRGB32 = {
    0xE436EB7E, 0x524F, 0x11CE, {0x9F, 0x53, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
inline constexpr GUID subtypeUYVY = {
    0x59565955, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};
inline constexpr std::uint32_t deadline = 10'000;  // milliseconds; only failures wait that long

// Keeps a copy of the last frame. What runs on the delivery thread is read after
// the control interface has returned.
class CMemory : public DShowLib::GrabberListener {
public:
    void frameReady(DShowLib::Grabber& grabber, DShowLib::smart_ptr<DShowLib::MemBuffer> buffer,
                    ULONG frameNumber) override {
        pixels.assign(buffer->getData(), buffer->getData() + buffer->getSize());
        last = buffer;
        frames.push_back(static_cast<std::uint32_t>(frameNumber));
        if (onFrame) {
            onFrame(grabber);
        }
    }
    void frameDropped(DShowLib::Grabber&, DShowLib::smart_ptr<DShowLib::MemBuffer> buffer,
                      ULONG) override {
        ++dropped;
        droppedWithBuffer += buffer ? 1 : 0;
    }
    void overlayCallback(DShowLib::Grabber&, DShowLib::smart_ptr<DShowLib::MemBuffer>&) override {
        ++overlays;
    }
    void deviceLost(DShowLib::Grabber&) override { ++losses; }

    std::vector<std::uint8_t> pixels;
    DShowLib::smart_ptr<DShowLib::MemBuffer> last;
    std::vector<std::uint32_t> frames;
    int dropped = 0;
    int droppedWithBuffer = 0;
    int overlays = 0;
    int losses = 0;
    std::function<void(DShowLib::Grabber&)> onFrame;
};

class CRigTest : public ::testing::Test {
protected:
    void SetUp() override {
        virtualCamerasReset();
        choose("standard:counter");
        virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_STEPPED);
        ASSERT_TRUE(DShowLib::InitLibrary());
    }
    void TearDown() override {
        virtualCamerasClearFailures();
        DShowLib::ExitLibrary();
        virtualCamerasReset();
    }

    static void choose(const char* rig) {
        char message[256] = "";
        ASSERT_EQ(0, virtualCamerasChooseRig(rig, message, sizeof(message))) << message;
    }
    static void load(const std::string& toml) {
        char message[256] = "";
        ASSERT_EQ(0, virtualCamerasLoadRig(toml.c_str(), message, sizeof(message))) << message;
    }
    static bool open(DShowLib::Grabber& grabber, std::size_t index) {
        const auto devices = toStandard(grabber.getAvailableVideoCaptureDevices_());
        return index < devices.size() && grabber.openDev(devices[index]);
    }
    static DShowLib::smart_ptr<DShowLib::FrameHandlerSink> sinkFor(const GUID& subtype) {
        DShowLib::FrameHandlerSink::tCreateData data;
        data.bufferCount = 5;
        data.frameTypes.push_back({subtype, 0, 0, 0});
        return DShowLib::FrameHandlerSink::create(data);
    }
    static bool setFormat(DShowLib::Grabber& grabber, const std::string& name) {
        for (const auto& format :
             toStandard(grabber.getAvailableVideoFormats_(grabber.getVideoNorm()))) {
            if (name == format.c_str()) {
                return grabber.setVideoFormat(format);
            }
        }
        return false;
    }
    static std::string misuse() {
        char text[128] = "";
        return virtualCamerasMisuses(text, sizeof(text)) == 0 ? std::string() : std::string(text);
    }
    static std::uint32_t misuses() { return virtualCamerasMisuses(nullptr, 0); }
    static std::string errorOf(const DShowLib::Grabber& grabber) {
        return grabber.getLastError().c_str();
    }
    static VirtualCamerasAlive alive() {
        VirtualCamerasAlive counts;
        virtualCamerasGetAlive(&counts);
        return counts;
    }
    static std::string property(const char* camera, const char* item, const char* element,
                                const char* interfaceName) {
        char text[64] = "";
        EXPECT_EQ(1, virtualCamerasReadProperty(camera, item, element, interfaceName, text,
                                                sizeof(text)));
        return text;
    }
};

}  // namespace camera_tests
