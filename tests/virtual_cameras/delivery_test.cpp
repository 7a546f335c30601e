// SPDX-License-Identifier: MIT
#include <optional>
#include <thread>

#include "tests/virtual_cameras/camera_rig.h"

namespace camera_tests {
namespace {

constexpr std::uint64_t sixtieth = 16'666'667;  // nanoseconds, rounded up

class Delivery : public CRigTest {
protected:
    void SetUp() override {
        CRigTest::SetUp();
        ASSERT_TRUE(m_grabber.emplace().addListener(&m_listener, 0xFFFFFFFF));
        ASSERT_TRUE(open(*m_grabber, 0));
        ASSERT_TRUE(m_grabber->setSinkType(sinkFor(subtypeY800)));
    }
    void TearDown() override {
        m_listener.last = {};
        m_grabber.reset();
        EXPECT_EQ(0U, alive().buffers);
        EXPECT_EQ(0U, alive().sinks);
        EXPECT_EQ(0U, alive().listeners);
        CRigTest::TearDown();
    }

    CMemory m_listener;
    std::optional<DShowLib::Grabber> m_grabber;
};

TEST_F(Delivery, SteppedClockDeliversWhatFallsDue) {
    ASSERT_TRUE(m_grabber->startLive(false));
    EXPECT_EQ(0U, virtualCamerasStepClock(sixtieth / 2));
    EXPECT_EQ(1U, virtualCamerasStepClock(sixtieth / 2 + 1));
    EXPECT_EQ(3U, virtualCamerasStepClock(3 * sixtieth));
    EXPECT_EQ((std::vector<std::uint32_t>{1, 2, 3, 4}), m_listener.frames);
    EXPECT_TRUE(m_grabber->stopLive());
    EXPECT_EQ(0U, virtualCamerasStepClock(3 * sixtieth));
    EXPECT_EQ("", misuse());
}

TEST_F(Delivery, SeveralCamerasAreSteppedInTheOrderOfTime) {
    CMemory slower;
    DShowLib::Grabber second;
    ASSERT_TRUE(second.addListener(&slower, 0xFFFFFFFF));
    ASSERT_TRUE(open(second, 4));  // 25 frames per second
    ASSERT_TRUE(second.setSinkType(sinkFor(subtypeRGB24)));
    ASSERT_TRUE(second.startLive(false));
    ASSERT_TRUE(m_grabber->startLive(false));
    virtualCamerasRecordCalls(1);
    EXPECT_EQ(8U, virtualCamerasStepClock(100'000'000));
    std::string order;
    for (std::uint64_t i = 0; i < virtualCamerasCallCount(); ++i) {
        VirtualCamerasCall call;
        ASSERT_EQ(1, virtualCamerasGetCall(i, &call));
        if (std::string(call.operation) == "GrabberListener::frameReady") {
            order += std::string(call.camera) == "1A2B" ? "M" : "A";
        }
    }
    EXPECT_EQ("MMAMMAMM", order.substr(0, 8)) << order;
    slower.last = {};
}

TEST_F(Delivery, FastClockRunsByItself) {
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    virtualCamerasRecordCalls(1);
    ASSERT_TRUE(m_grabber->startLive(false));
    std::uint64_t sequence = 0;
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(1, virtualCamerasWaitForCall("GrabberListener::frameReady", sequence, deadline,
                                               &sequence));
        ++sequence;
    }
    EXPECT_TRUE(m_grabber->stopLive());
    EXPECT_GE(m_listener.frames.size(), 20U);
}

TEST_F(Delivery, RealClockRunsByItself) {
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_REAL);
    virtualCamerasRecordCalls(1);
    ASSERT_TRUE(m_grabber->startLive(false));
    EXPECT_EQ(1, virtualCamerasWaitForCall("GrabberListener::frameReady", 0, deadline, nullptr));
    EXPECT_TRUE(m_grabber->stopLive());
}

TEST_F(Delivery, ListenersRunOnAThreadOfTheLibrary) {
    const std::thread::id own = std::this_thread::get_id();
    bool elsewhere = false;
    m_listener.onFrame = [&](DShowLib::Grabber&) { elsewhere = std::this_thread::get_id() != own; };
    ASSERT_TRUE(m_grabber->startLive(false));
    ASSERT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_TRUE(elsewhere);
}

TEST_F(Delivery, BuffersAreFilledInTurnAndLockedOnesSkipped) {
    ASSERT_TRUE(m_grabber->startLive(false));
    ASSERT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    const auto first = m_listener.last;
    first->lock();
    EXPECT_EQ(1, virtualCamerasBufferLocks("1A2B", 0));
    for (int i = 0; i < 4; ++i) {
        ASSERT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
        EXPECT_NE(first.get(), m_listener.last.get());
    }
    ASSERT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_NE(first.get(), m_listener.last.get());
    first->unlock();
    first->unlock();
    EXPECT_EQ(0, virtualCamerasBufferLocks("1A2B", 0));
    for (int i = 0; i < 4; ++i) {
        ASSERT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    }
    EXPECT_EQ(first.get(), m_listener.last.get());
    EXPECT_EQ(-1, virtualCamerasBufferLocks("1A2B", 5));
}

TEST_F(Delivery, WithAllBuffersLockedTheFrameIsDropped) {
    m_listener.onFrame = [&](DShowLib::Grabber&) { m_listener.last->lock(); };
    ASSERT_TRUE(m_grabber->startLive(false));
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    }
    EXPECT_EQ(0, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_EQ(1, m_listener.dropped);
    EXPECT_EQ(0, m_listener.droppedWithBuffer);
    m_listener.last->unlock();
    EXPECT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_EQ(7U, m_listener.frames.back());
}

TEST_F(Delivery, TriggerModeReleasesOneFramePerPulse) {
    ASSERT_TRUE(m_grabber->startLive(false));
    EXPECT_EQ(0, virtualCamerasFireTrigger("1A2B"));
    const auto items = m_grabber->getAvailableVCDProperties();
    DShowLib::smart_com<DShowLib::IVCDPropertyItem> trigger;
    ASSERT_EQ(S_OK, items->getItem(5, trigger.put()));
    DShowLib::smart_com<DShowLib::IVCDPropertyElement> enable;
    ASSERT_EQ(S_OK, trigger->getItem(1, enable.put()));
    DShowLib::smart_com<DShowLib::IVCDPropertyInterface> any;
    ASSERT_EQ(S_OK, enable->getItem(1, any.put()));
    auto* toggle = static_cast<DShowLib::IVCDSwitchProperty*>(any.get());
    ASSERT_EQ(S_OK, toggle->setSwitch(VARIANT_TRUE));
    EXPECT_EQ("true", property("1A2B", "Trigger", "Enable", "IVCDSwitchProperty"));
    EXPECT_EQ(0U, virtualCamerasStepClock(10 * sixtieth));
    EXPECT_EQ(1, virtualCamerasFireTrigger("1A2B"));
    EXPECT_EQ(1U, m_listener.frames.size());
    ASSERT_EQ(S_OK, toggle->setSwitch(VARIANT_FALSE));
    EXPECT_EQ(1U, virtualCamerasStepClock(sixtieth));
}

TEST_F(Delivery, StopFromAListenerEndsLiveVideoWithoutADeadlock) {
    bool stopped = false;
    m_listener.onFrame = [&](DShowLib::Grabber& grabber) { stopped = grabber.stopLive(); };
    ASSERT_TRUE(m_grabber->startLive(false));
    EXPECT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_TRUE(stopped);
    EXPECT_FALSE(m_grabber->isLive());
    m_listener.onFrame = nullptr;
    EXPECT_TRUE(m_grabber->startLive(false));
    EXPECT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
}

TEST_F(Delivery, AListenerCannotWaitForItself) {
    std::uint32_t stepped = 1;
    std::int32_t delivered = 1;
    bool started = true;
    m_listener.onFrame = [&](DShowLib::Grabber& grabber) {
        stepped = virtualCamerasStepClock(sixtieth);
        delivered = virtualCamerasDeliverFrame("1A2B");
        started = grabber.startLive(false);
    };
    ASSERT_TRUE(m_grabber->startLive(false));
    EXPECT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_EQ(0U, stepped);
    EXPECT_EQ(0, delivered);
    EXPECT_FALSE(started);
    EXPECT_EQ(3U, misuses());
}

TEST_F(Delivery, DestructionStopsLiveVideo) {
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    ASSERT_TRUE(m_grabber->startLive(false));
    m_grabber.reset();
    const std::size_t frames = m_listener.frames.size();
    EXPECT_EQ(0, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_EQ(frames, m_listener.frames.size());
    EXPECT_EQ(0U, alive().grabbers);
}

// The unplugging thread waits for the delivery thread, on which the grabber goes.
TEST_F(Delivery, AListenerMayDestroyTheGrabberWhoseDeviceIsBeingUnplugged) {
    std::thread unplugging;
    m_listener.onFrame = [&](DShowLib::Grabber&) {
        unplugging = std::thread([] { virtualCamerasUnplug("1A2B"); });
        while (alive().liveDevices != 0) {
            std::this_thread::yield();
        }
        m_grabber.reset();
    };
    ASSERT_TRUE(m_grabber->startLive(false));
    EXPECT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    unplugging.join();
    EXPECT_EQ(0, m_listener.losses);
    EXPECT_EQ(0U, alive().grabbers);
}

TEST_F(Delivery, OverlayIsCalledUntilItIsSwitchedOff) {
    ASSERT_TRUE(m_grabber->startLive(false));
    ASSERT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_EQ(1, m_listener.overlays);
    ASSERT_TRUE(m_grabber->setOverlayBitmapPathPosition(0));
    ASSERT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_EQ(1, m_listener.overlays);
}

TEST_F(Delivery, ListenersGetOnlyTheEventsTheyAskedFor) {
    CMemory frameless;
    ASSERT_TRUE(m_grabber->addListener(&frameless, 0xFFFFFFFE));
    ASSERT_TRUE(m_grabber->startLive(false));
    ASSERT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_TRUE(frameless.frames.empty());
    EXPECT_EQ(1U, m_listener.frames.size());
}

TEST_F(Delivery, AFailedDeliveryDropsTheFilledFrame) {
    virtualCamerasFailCall("GrabberListener::frameReady", 2, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0,
                           nullptr);
    ASSERT_TRUE(m_grabber->startLive(false));
    EXPECT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_EQ(0, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_EQ((std::vector<std::uint32_t>{1, 3}), m_listener.frames);
    EXPECT_EQ(1, m_listener.droppedWithBuffer);
}

TEST_F(Delivery, AListenerThatThrowsIsReportedAndAskedAgain) {
    m_listener.onFrame = [](DShowLib::Grabber&) { throw 1; };
    ASSERT_TRUE(m_grabber->startLive(false));
    EXPECT_EQ(0U, virtualCamerasStepClock(sixtieth));
    EXPECT_EQ("a listener threw", misuse());
    m_listener.onFrame = {};
    EXPECT_EQ(1U, virtualCamerasStepClock(sixtieth));
}

TEST_F(Delivery, FramesMatchTheSinkTypeReported) {
    const auto sink = sinkFor(subtypeRGB32);
    DShowLib::FrameTypeInfo type{};
    EXPECT_FALSE(sink->getOutputFrameType(type));
    EXPECT_FALSE(sink->getMemBufferCollection());
    ASSERT_TRUE(m_grabber->setSinkType(sink));
    ASSERT_TRUE(sink->getOutputFrameType(type));
    EXPECT_EQ(640, type.width);
    EXPECT_EQ(480, type.height);
    EXPECT_EQ(1228800U, type.bufferSize);
    ASSERT_TRUE(setFormat(*m_grabber, "Y800 (1280x960)"));
    ASSERT_TRUE(sink->getOutputFrameType(type));
    EXPECT_EQ(4915200U, type.bufferSize);
    EXPECT_EQ(5U, sink->getMemBufferCollection()->getBufferCount());
    ASSERT_TRUE(m_grabber->startLive(false));
    ASSERT_EQ(1, virtualCamerasDeliverFrame("1A2B"));
    EXPECT_EQ(4915200U, m_listener.pixels.size());
}

}  // namespace
}  // namespace camera_tests
