// SPDX-License-Identifier: MIT
// Everything at once, for the thread sanitizer and for deadlocks.
#include <atomic>
#include <thread>

#include "tests/virtual_cameras/camera_rig.h"

namespace camera_tests {
namespace {

// Counts, and keeps nothing that another thread reads.
class CCounter : public DShowLib::GrabberListener {
public:
    void frameReady(DShowLib::Grabber&, DShowLib::smart_ptr<DShowLib::MemBuffer> buffer,
                    ULONG) override {
        buffer->lock();
        sum += *buffer->getData();
        buffer->unlock();
        ++frames;
    }
    void deviceLost(DShowLib::Grabber& grabber) override {
        ++losses;
        grabber.isDevValid();
    }
    std::atomic<int> frames{0};
    std::atomic<int> losses{0};
    std::uint64_t sum = 0;
};

class Concurrency : public CRigTest {
protected:
    static constexpr int rounds = 60;

    void SetUp() override {
        CRigTest::SetUp();
        load(
            "[[camera]]\nname = \"A\"\nformats = [\"Y800 (16x4)\"]\nframerates = [1000.0]\n"
            "[[camera.item]]\nname = \"Gain\"\nValue.range = { min = 0, max = 9, value = 1 }\n");
        virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    }

    static void startAndStop(CCounter& listener) {
        DShowLib::Grabber grabber;
        ASSERT_TRUE(grabber.addListener(&listener, 0xFFFFFFFF));
        ASSERT_TRUE(grabber.setSinkType(sinkFor(subtypeY800)));
        for (int i = 0; i < rounds || listener.frames < rounds; ++i) {
            if (!grabber.isDevValid()) {
                open(grabber, 0);
            }
            if (!grabber.isLive()) {
                grabber.startLive(false);
            }
            virtualCamerasDeliverFrame("A");
            if (i % 3 != 0) {
                grabber.stopLive();
            }
        }
    }
};

TEST_F(Concurrency, LossPropertiesAndClockDisturbNoOneElse) {
    CCounter listener;
    std::atomic<bool> over{false};
    std::thread loss([&] {
        for (int seen = 0; !over; seen = listener.frames) {
            while (!over && listener.frames == seen) {
                std::this_thread::yield();
            }
            virtualCamerasUnplug("A");
            virtualCamerasPlug("A");
        }
    });
    std::thread properties([&] {
        DShowLib::Grabber grabber;
        while (!over) {
            open(grabber, 0);
            if (const auto items = grabber.getAvailableVCDProperties()) {
                DShowLib::smart_com<DShowLib::IVCDPropertyItem> item;
                items->getItem(1, item.put());
            }
            VirtualCamerasAlive counts;
            virtualCamerasGetAlive(&counts);
        }
    });
    std::thread clock([&] {
        for (std::int32_t mode = 0; !over; mode = (mode + 1) % 3) {
            virtualCamerasSetClock(mode);
            virtualCamerasStepClock(2'000'000);
            virtualCamerasRecordCalls(mode == 1 ? 1 : 0);
        }
    });
    startAndStop(listener);
    over = true;
    loss.join();
    properties.join();
    clock.join();
    EXPECT_GT(listener.frames, 0);
    EXPECT_EQ(0U, alive().grabbers);
    EXPECT_EQ(0U, alive().liveDevices);
    EXPECT_EQ(0U, alive().interfaces);
    EXPECT_EQ("", misuse());
}

TEST_F(Concurrency, AResetEndsLiveVideoOfOthers) {
    CCounter listener;
    DShowLib::Grabber grabber;
    ASSERT_TRUE(grabber.addListener(&listener, 0xFFFFFFFF));
    ASSERT_TRUE(open(grabber, 0));
    ASSERT_TRUE(grabber.setSinkType(sinkFor(subtypeY800)));
    ASSERT_TRUE(grabber.startLive(false));
    virtualCamerasReset();
    EXPECT_EQ(1, listener.losses);
    const int frames = listener.frames;
    EXPECT_EQ(0U, alive().liveDevices);
    EXPECT_EQ(0, virtualCamerasDeliverFrame("A"));
    EXPECT_EQ(frames, listener.frames);
}

}  // namespace
}  // namespace camera_tests
