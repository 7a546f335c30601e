// SPDX-License-Identifier: MIT
// From a delivered frame to the bytes in the host's memory.
#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint8_t none = CHostMemory::filler;

class FrameDelivery : public CChannelTest {
protected:
    // A live channel of the rig.
    CVideoChannel& live(const std::string& rig) {
        loadRig(rig);
        CVideoChannel& channel = makeChannel();
        start(channel);
        return channel;
    }
};

TEST_F(FrameDelivery, CopiesAGreyFrameTopRowFirst) {
    CVideoChannel& channel = live(rigs::grey());
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_THAT(frame.bytes(), ElementsAre(0xC0, 0xC0, 0xC0, 0xC0, 0xC1, 0xC0, 0xC0, 0xC0,  //
                                           0xC1, 0xC0, 0xC0, 0xC0, 0xC1, 0xC0, 0xC0, 0xC0,  //
                                           0xC2, 0xC0, 0xC0, 0xC0, 0xC1, 0xC0, 0xC0, 0xC0,  //
                                           0xC3, 0xC0, 0xC0, 0xC0, 0xC1, 0xC0, 0xC0, 0xC0));
}

TEST_F(FrameDelivery, CopiesAColorFrameAsTheLibraryStoresIt) {
    loadRig(rigs::color());
    CVideoChannel& channel = makeChannel();
    ASSERT_EQ(setProperty(channel, "pixelformat", "RGB24"), "");
    start(channel);
    ASSERT_EQ(waitForDelivery(channel, "3C4D").status, 0U);
    CHostMemory frame(96);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    // Blue, green, red; the bottom row of the picture first.
    EXPECT_THAT(frame.bytes(0, 24), ElementsAre(0x03, 0x43, 0x83, 0x00, 0x40, 0x80, 0x00, 0x40,
                                                0x80, 0x00, 0x40, 0x80, 0x01, 0x41, 0x81, 0x00,
                                                0x40, 0x80, 0x00, 0x40, 0x80, 0x00, 0x40, 0x80));
    EXPECT_EQ(frame[24], 0x02);
    EXPECT_EQ(frame[48], 0x01);
    EXPECT_EQ(frame[72], 0x00);
    EXPECT_EQ(frame[95], 0x80);
}

TEST_F(FrameDelivery, CopiesExactlyTheReportedBytesOfAColorFrame) {
    loadRig(rigs::color());
    CVideoChannel& channel = makeChannel();
    ASSERT_EQ(setProperty(channel, "pixelformat", "RGB24"), "");
    start(channel);
    ASSERT_EQ(waitForDelivery(channel, "3C4D").status, 0U);
    CHostMemory frame(200);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_FALSE(frame.isUntouched(0, 96));
    EXPECT_TRUE(frame.isUntouched(96, 104));
}

TEST_F(FrameDelivery, CopiesNothingOfAColorFrameWhoseSizeIsNotReported) {
    loadRig(rigs::color());
    CVideoChannel& channel = makeChannel();
    ASSERT_EQ(setProperty(channel, "pixelformat", "RGB24"), "");
    start(channel);
    ASSERT_EQ(waitForDelivery(channel, "3C4D").status, 0U);
    virtualCamerasFailCall("FrameHandlerSink::getOutputFrameType", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE,
                           0, "");
    CHostMemory frame(96);
    EXPECT_EQ(copyFrame(channel, frame), 4096U);
    EXPECT_TRUE(frame.isUntouched());
}

TEST_F(FrameDelivery, MovesARawFrameByOneRowAndOneColumn) {
    CVideoChannel& channel = live(rigs::raw());
    ASSERT_EQ(waitForDelivery(channel, "5E6F").status, 0U);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_THAT(frame.bytes(), ElementsAre(0x40, 0x80, 0x40, 0x81, 0x40, 0x80, 0x40, none,  //
                                           0x00, 0x40, 0x00, 0x41, 0x00, 0x40, 0x00, none,  //
                                           0x40, 0x80, 0x40, 0x81, 0x40, 0x80, 0x40, none,  //
                                           none, none, none, none, none, none, none, none));
}

TEST_F(FrameDelivery, CopiesNothingOfARawFrameOfOneRow) {
    CVideoChannel& channel = live(rigs::camera("SIM", "1", "\"BY8 (8x1)\", \"Y800 (8x1)\""));
    ASSERT_EQ(waitForDelivery(channel, "1").status, 0U);
    CHostMemory frame(8);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_TRUE(frame.isUntouched());
}

TEST_F(FrameDelivery, CopiesARawFrameOfTheTwoAlignedModelsAsItIs) {
    for (const char* model : {"QRM 52XAV07", "QRM 52XBV07"}) {
        CVideoChannel& channel = live(rigs::raw("model = \"" + std::string(model) + "\""));
        ASSERT_EQ(waitForDelivery(channel, "5E6F").status, 0U);
        CHostMemory frame(32);
        EXPECT_EQ(copyFrame(channel, frame), 0U);
        EXPECT_THAT(frame.bytes(), ElementsAre(0x40, 0x00, 0x40, 0x00, 0x41, 0x00, 0x40, 0x00,  //
                                               0x81, 0x40, 0x80, 0x40, 0x81, 0x40, 0x80, 0x40,  //
                                               0x42, 0x00, 0x40, 0x00, 0x41, 0x00, 0x40, 0x00,  //
                                               0x83, 0x40, 0x80, 0x40, 0x81, 0x40, 0x80, 0x40))
            << model;
        closeChannel(channel);
    }
}

TEST_F(FrameDelivery, KnowsTheAlignedModelsByTheirWholeName) {
    for (const char* model : {"QRM 52XAV07 ", "qrm 52xav07", "QRM 52XAV071", "QRM 52XCV07",
                              " QRM 52XBV07", "QRM 52XBV0", "QRM 52xBV07"}) {
        CVideoChannel& channel = live(rigs::raw("model = \"" + std::string(model) + "\""));
        ASSERT_EQ(waitForDelivery(channel, "5E6F").status, 0U);
        CHostMemory frame(32);
        EXPECT_EQ(copyFrame(channel, frame), 0U);
        EXPECT_EQ(frame[0], 0x40) << model;
        EXPECT_EQ(frame[1], 0x80) << model;
        EXPECT_TRUE(frame.isUntouched(24, 8)) << model;
        closeChannel(channel);
    }
}

TEST_F(FrameDelivery, GoesByTheModelAndNotByTheDeviceName) {
    CVideoChannel& channel = live(rigs::camera(
        "QRM 52XAV07", "5E6F", "\"BY8 (8x4)\", \"Y800 (8x4)\"", "model = \"SIM Raw 23\""));
    ASSERT_EQ(waitForDelivery(channel, "5E6F").status, 0U);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_TRUE(frame.isUntouched(24, 8));
}

TEST_F(FrameDelivery, RebuildsTheMosaicOfAColorFrame) {
    CVideoChannel& channel = live(rigs::color());
    ASSERT_EQ(waitForDelivery(channel, "3C4D").status, 0U);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_THAT(frame.bytes(), ElementsAre(0x40, 0x80, 0x40, 0x80, 0x41, 0x80, 0x40, 0x80,  //
                                           0x01, 0x40, 0x00, 0x40, 0x01, 0x40, 0x00, 0x40,  //
                                           0x42, 0x80, 0x40, 0x80, 0x41, 0x80, 0x40, 0x80,  //
                                           0x03, 0x40, 0x00, 0x40, 0x01, 0x40, 0x00, 0x40));
}

TEST_F(FrameDelivery, StartsTheMosaicWithBlueAtAnOddHeight) {
    CVideoChannel& channel = live(rigs::camera("SIM", "1", "\"RGB24 (4x3)\""));
    ASSERT_EQ(waitForDelivery(channel, "1").status, 0U);
    CHostMemory frame(12);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_THAT(frame.bytes(), ElementsAre(0x00, 0x40, 0x00, 0x40,  //
                                           0x41, 0x80, 0x40, 0x80,  //
                                           0x02, 0x40, 0x00, 0x40));
}

TEST_F(FrameDelivery, WritesOneByteMorePerRowOfAMosaicOfOddWidth) {
    CVideoChannel& channel = live(rigs::camera("SIM", "1", "\"RGB24 (5x2)\""));
    ASSERT_EQ(waitForDelivery(channel, "1").status, 0U);
    CHostMemory frame(12);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    // The last row in memory has no next row: 0. The first has the last's first pixel.
    EXPECT_THAT(frame.bytes(), ElementsAre(0x40, 0x80, 0x40, 0x80, 0x41, 0x00,  //
                                           0x01, 0x40, 0x00, 0x40, 0x01, 0x40));
}

TEST_F(FrameDelivery, IgnoresTheAlignedModelsForAMosaic) {
    CVideoChannel& channel = live(rigs::color("model = \"QRM 52XAV07\""));
    ASSERT_EQ(waitForDelivery(channel, "3C4D").status, 0U);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_EQ(frame[0], 0x40);
    EXPECT_EQ(frame[8], 0x01);
}

TEST_F(FrameDelivery, CopiesEachFrameOnce) {
    CVideoChannel& channel = live(rigs::grey());
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    CHostMemory second(32);
    EXPECT_EQ(copyFrame(channel, second), 4096U);
    EXPECT_TRUE(second.isUntouched());
}

TEST_F(FrameDelivery, HasNothingToCopyBeforeTheFirstWait) {
    CVideoChannel& channel = live(rigs::grey());
    EXPECT_EQ(virtualCamerasDeliverFrame("1A2B"), 1);
    recordAll();
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 4096U);
    EXPECT_TRUE(frame.isUntouched());
    EXPECT_THAT(library_log::lines(), IsEmpty());
}

TEST_F(FrameDelivery, WritesOnlyADebuggerTextForFramesThatNobodyWaitsFor) {
    CVideoChannel& channel = live(rigs::grey());
    recordAll();
    EXPECT_EQ(virtualCamerasDeliverFrame("1A2B"), 1);
    EXPECT_EQ(virtualCamerasDeliverFrame("1A2B"), 1);
    EXPECT_THAT(win32Calls({}), ElementsAre("OutputDebugStringW(FrameReady:\n)",
                                            "OutputDebugStringW(FrameReady:\n)"));
    EXPECT_THAT(library_log::operations({"MemBuffer::"}), IsEmpty());
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 4096U);
}

TEST_F(FrameDelivery, KeepsAnUncopiedFrameWhileFramesPassUnwaited) {
    CVideoChannel& channel = live(rigs::grey());
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    for (int passing = 0; passing < 7; ++passing) {
        EXPECT_EQ(virtualCamerasDeliverFrame("1A2B"), 1);
    }
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_EQ(frame[4], 0xC1) << "the first frame, still locked";
}

TEST_F(FrameDelivery, LocksAtTheHandOverAndUnlocksAfterTheCopy) {
    CVideoChannel& channel = live(rigs::grey());
    recordAll();
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    EXPECT_EQ(virtualCamerasBufferLocks("1A2B", 0), 1);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_EQ(virtualCamerasBufferLocks("1A2B", 0), 0);
    EXPECT_THAT(library_log::operations({"MemBuffer::"}),
                ElementsAre("MemBuffer::lock", "MemBuffer::getData", "MemBuffer::getSize",
                            "MemBuffer::unlock"));
}

TEST_F(FrameDelivery, RunsTheHandOverOnTheThreadOfTheLibrary) {
    CVideoChannel& channel = live(rigs::grey());
    recordAll();
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    const auto sets = win32::callsOf("SetEvent");
    const auto waits = win32::callsOf("WaitForSingleObject");
    ASSERT_EQ(sets.size(), 1U);
    ASSERT_EQ(waits.size(), 1U);
    EXPECT_NE(sets[0].threadId, waits[0].threadId);
    EXPECT_EQ(waits[0].arguments, sets[0].arguments + ", 1000");
    EXPECT_THAT(win32Calls({}), ElementsAre("WaitForSingleObject(" + waits[0].arguments + ")",
                                            "OutputDebugStringW(FrameReady:\n)",
                                            "OutputDebugStringW(FrameReady: ok\n)",
                                            "SetEvent(" + sets[0].arguments + ")",
                                            "ResetEvent(" + sets[0].arguments + ")"));
}

TEST_F(FrameDelivery, HoldsAtMostOneBufferLockedOverManyFrames) {
    CVideoChannel& channel = live(rigs::grey());
    CHostMemory frame(32);
    for (int round = 1; round <= 23; ++round) {
        ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
        std::int32_t locked = 0;
        for (std::uint32_t buffer = 0; buffer < 5; ++buffer) {
            locked += virtualCamerasBufferLocks("1A2B", buffer);
        }
        EXPECT_EQ(locked, 1) << round;
        // Every third frame is left uncopied: the next wait supersedes it.
        if (round % 3 != 0) {
            EXPECT_EQ(copyFrame(channel, frame), 0U);
            EXPECT_EQ(frame[4], 0xC0 + round);
        }
    }
}

TEST_F(FrameDelivery, SupersedesAFrameThatWasNeverCopied) {
    CVideoChannel& channel = live(rigs::grey());
    recordAll();
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    EXPECT_THAT(library_log::lines({"MemBuffer::lock", "MemBuffer::unlock"}),
                ElementsAre("MemBuffer::lock(0)", "MemBuffer::unlock(0)", "MemBuffer::lock(1)"));
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_EQ(frame[4], 0xC2);
}

TEST_F(FrameDelivery, ReportsANullDestinationInABoxAndDropsTheFrame) {
    CVideoChannel& channel = live(rigs::grey());
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    recordAll();
    CHostText text;
    CHostStatus status;
    EXPECT_EQ(channel.CopyFrame(text, nullptr, status), 0);
    EXPECT_EQ(status.value(), 4096U);
    EXPECT_TRUE(text.isUntouched());
    const auto boxes = win32::messageBoxes();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].owner, nullptr);
    EXPECT_EQ(boxes[0].text, "rawMemory == NULL");
    EXPECT_EQ(boxes[0].caption, "Eror");
    EXPECT_EQ(boxes[0].type, 0U);
    EXPECT_THAT(library_log::lines(), IsEmpty());
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 4096U);
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
}

TEST_F(FrameDelivery, ReportsANullDestinationWithoutAFrameToo) {
    CVideoChannel& channel = live(rigs::grey());
    EXPECT_EQ(channel.CopyFrame(nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
}

TEST_F(FrameDelivery, CopiesWithoutAStatusOrAText) {
    CVideoChannel& channel = live(rigs::grey());
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    CHostMemory frame(32);
    EXPECT_EQ(channel.CopyFrame(nullptr, frame.data(), nullptr), 0);
    EXPECT_EQ(frame[4], 0xC1);
    EXPECT_EQ(channel.CopyFrame(nullptr, frame.data(), nullptr), 0);
}

TEST_F(FrameDelivery, HasNothingToCopyAfterAStop) {
    CVideoChannel& channel = live(rigs::grey());
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    stop(channel);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 4096U);
    EXPECT_TRUE(frame.isUntouched());
}

TEST_F(FrameDelivery, CopiesNothingOfABufferWithoutMemory) {
    CVideoChannel& channel = live(rigs::grey());
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    virtualCamerasFailCall("MemBuffer::getData", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_TRUE(frame.isUntouched());
}

}  // namespace
