// SPDX-License-Identifier: MIT
// From a delivered frame to the bytes in the host's memory.
#include "tests/support/one_channel.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint8_t none = CHostMemory::filler;

class FrameDelivery : public CGreyCamera {};

TEST_F(FrameDelivery, CopiesAGreyFrameTopRowFirst) {
    openLive();
    const CHostMemory& frame = receiveFrame();
    EXPECT_THAT(frame.bytes(), ElementsAre(0xC0, 0xC0, 0xC0, 0xC0, 0xC1, 0xC0, 0xC0, 0xC0,  //
                                           0xC1, 0xC0, 0xC0, 0xC0, 0xC1, 0xC0, 0xC0, 0xC0,  //
                                           0xC2, 0xC0, 0xC0, 0xC0, 0xC1, 0xC0, 0xC0, 0xC0,  //
                                           0xC3, 0xC0, 0xC0, 0xC0, 0xC1, 0xC0, 0xC0, 0xC0));
}

TEST_F(FrameDelivery, CopiesAColorFrameAsTheLibraryStoresIt) {
    openLiveInRgb24();
    const CHostMemory& frame = receiveFrame(96);
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
    openLiveInRgb24();
    const CHostMemory& frame = receiveFrame(200);
    EXPECT_FALSE(frame.isUntouched(0, 96));
    EXPECT_TRUE(frame.isUntouched(96, 104));
}

TEST_F(FrameDelivery, CopiesNothingOfAColorFrameWhoseSizeIsNotReported) {
    openLiveInRgb24();
    ASSERT_EQ(waitForDelivery(), done());
    refuseCall("FrameHandlerSink::getOutputFrameType");
    expectNoFrame(96);
}

TEST_F(FrameDelivery, MovesARawFrameByOneRowAndOneColumn) {
    openLive(rigs::raw());
    const CHostMemory& frame = receiveFrame();
    EXPECT_THAT(frame.bytes(), ElementsAre(0x40, 0x80, 0x40, 0x81, 0x40, 0x80, 0x40, none,  //
                                           0x00, 0x40, 0x00, 0x41, 0x00, 0x40, 0x00, none,  //
                                           0x40, 0x80, 0x40, 0x81, 0x40, 0x80, 0x40, none,  //
                                           none, none, none, none, none, none, none, none));
}

TEST_F(FrameDelivery, CopiesNothingOfARawFrameOfOneRow) {
    openLive(rigs::camera("SIM", "1", "\"BY8 (8x1)\", \"Y800 (8x1)\""));
    EXPECT_TRUE(receiveFrame(8).isUntouched());
}

TEST_F(FrameDelivery, CopiesARawFrameOfTheTwoAlignedModelsAsItIs) {
    for (const char* model : {"QRM 52XAV07", "QRM 52XBV07"}) {
        openLive(rigs::raw("model = \"" + std::string(model) + "\""));
        const CHostMemory& frame = receiveFrame();
        EXPECT_THAT(frame.bytes(), ElementsAre(0x40, 0x00, 0x40, 0x00, 0x41, 0x00, 0x40, 0x00,  //
                                               0x81, 0x40, 0x80, 0x40, 0x81, 0x40, 0x80, 0x40,  //
                                               0x42, 0x00, 0x40, 0x00, 0x41, 0x00, 0x40, 0x00,  //
                                               0x83, 0x40, 0x80, 0x40, 0x81, 0x40, 0x80, 0x40))
            << model;
        close();
    }
}

TEST_F(FrameDelivery, KnowsTheAlignedModelsByTheirWholeName) {
    for (const char* model : {"QRM 52XAV07 ", "qrm 52xav07", "QRM 52XAV071", "QRM 52XCV07",
                              " QRM 52XBV07", "QRM 52XBV0", "QRM 52xBV07"}) {
        openLive(rigs::raw("model = \"" + std::string(model) + "\""));
        const CHostMemory& frame = receiveFrame();
        EXPECT_EQ(frame[0], 0x40) << model;
        EXPECT_EQ(frame[1], 0x80) << model;
        EXPECT_TRUE(frame.isUntouched(24, 8)) << model;
        close();
    }
}

TEST_F(FrameDelivery, GoesByTheModelAndNotByTheDeviceName) {
    openLive(rigs::camera("QRM 52XAV07", "5E6F", "\"BY8 (8x4)\", \"Y800 (8x4)\"",
                          "model = \"SIM Raw 23\""));
    EXPECT_TRUE(receiveFrame().isUntouched(24, 8));
}

TEST_F(FrameDelivery, RebuildsTheMosaicOfAColorFrame) {
    openLive(rigs::color());
    const CHostMemory& frame = receiveFrame();
    EXPECT_THAT(frame.bytes(), ElementsAre(0x40, 0x80, 0x40, 0x80, 0x41, 0x80, 0x40, 0x80,  //
                                           0x01, 0x40, 0x00, 0x40, 0x01, 0x40, 0x00, 0x40,  //
                                           0x42, 0x80, 0x40, 0x80, 0x41, 0x80, 0x40, 0x80,  //
                                           0x03, 0x40, 0x00, 0x40, 0x01, 0x40, 0x00, 0x40));
}

TEST_F(FrameDelivery, RebuildsTheMosaicAlsoWhenAnotherPixelTypeWasSetBefore) {
    open(rigs::color());
    EXPECT_EQ(set("pixelformat", "Mono8"), accepted());
    EXPECT_EQ(set("pixelformat", "Raw8"), accepted());
    EXPECT_EQ(start(), accepted());
    const CHostMemory& frame = receiveFrame();
    EXPECT_EQ(frame[1], 0x80);
    EXPECT_EQ(frame[2], 0x40);
    EXPECT_FALSE(frame.isUntouched(24, 8)) << "a shifted copy leaves the last row out";
}

TEST_F(FrameDelivery, StartsTheMosaicWithBlueAtAnOddHeight) {
    openLive(rigs::camera("SIM", "1", "\"RGB24 (4x3)\""));
    const CHostMemory& frame = receiveFrame(12);
    EXPECT_THAT(frame.bytes(), ElementsAre(0x00, 0x40, 0x00, 0x40,  //
                                           0x41, 0x80, 0x40, 0x80,  //
                                           0x02, 0x40, 0x00, 0x40));
}

TEST_F(FrameDelivery, WritesOneByteMorePerRowOfAMosaicOfOddWidth) {
    openLive(rigs::camera("SIM", "1", "\"RGB24 (5x2)\""));
    const CHostMemory& frame = receiveFrame(12);
    // The last row in memory has no next row: 0. The first has the last's first pixel.
    EXPECT_THAT(frame.bytes(), ElementsAre(0x40, 0x80, 0x40, 0x80, 0x41, 0x00,  //
                                           0x01, 0x40, 0x00, 0x40, 0x01, 0x40));
}

TEST_F(FrameDelivery, IgnoresTheAlignedModelsForAMosaic) {
    openLive(rigs::color("model = \"QRM 52XAV07\""));
    const CHostMemory& frame = receiveFrame();
    EXPECT_EQ(frame[0], 0x40);
    EXPECT_EQ(frame[8], 0x01);
}

TEST_F(FrameDelivery, CopiesEachFrameOnce) {
    openLive();
    receiveFrame();
    expectNoFrame();
}

TEST_F(FrameDelivery, HasNothingToCopyBeforeTheFirstWait) {
    openLive();
    deliver();
    recordAll();
    expectNoFrame();
    EXPECT_THAT(library_log::lines(), IsEmpty());
}

TEST_F(FrameDelivery, WritesOnlyADebuggerTextForFramesThatNobodyWaitsFor) {
    openLive();
    recordAll();
    deliver();
    deliver();
    EXPECT_THAT(win32Calls({}), ElementsAre("OutputDebugStringW(FrameReady:\n)",
                                            "OutputDebugStringW(FrameReady:\n)"));
    EXPECT_THAT(library_log::operations({"MemBuffer::"}), IsEmpty());
    expectNoFrame();
}

TEST_F(FrameDelivery, KeepsAnUncopiedFrameWhileFramesPassUnwaited) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    for (int passing = 0; passing < 7; ++passing) {
        deliver();
    }
    EXPECT_EQ(copiedFrame()[4], 0xC1) << "the first frame, still locked";
}

TEST_F(FrameDelivery, LocksAtTheHandOverAndUnlocksAfterTheCopy) {
    openLive();
    recordAll();
    ASSERT_EQ(waitForDelivery(), done());
    EXPECT_EQ(lockedBuffers(), 1);
    copiedFrame();
    EXPECT_EQ(lockedBuffers(), 0);
    EXPECT_THAT(library_log::operations({"MemBuffer::"}),
                ElementsAre("MemBuffer::lock", "MemBuffer::getData", "MemBuffer::getSize",
                            "MemBuffer::unlock"));
}

TEST_F(FrameDelivery, RunsTheHandOverOnTheThreadOfTheLibrary) {
    openLive();
    recordAll();
    ASSERT_EQ(waitForDelivery(), done());
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
    openLive();
    for (int round = 1; round <= 23; ++round) {
        ASSERT_EQ(waitForDelivery(), done());
        EXPECT_EQ(lockedBuffers(), 1) << round;
        // Every third frame is left uncopied: the next wait supersedes it.
        if (round % 3 != 0) {
            EXPECT_EQ(copiedFrame()[4], 0xC0 + round);
        }
    }
}

TEST_F(FrameDelivery, SupersedesAFrameThatWasNeverCopied) {
    openLive();
    recordAll();
    ASSERT_EQ(waitForDelivery(), done());
    ASSERT_EQ(waitForDelivery(), done());
    EXPECT_THAT(library_log::lines({"MemBuffer::lock", "MemBuffer::unlock"}),
                ElementsAre("MemBuffer::lock(0)", "MemBuffer::unlock(0)", "MemBuffer::lock(1)"));
    EXPECT_EQ(copiedFrame()[4], 0xC2);
}

TEST_F(FrameDelivery, ReportsANullDestinationInABoxAndDropsTheFrame) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    recordAll();
    EXPECT_EQ(copy(nullptr), noFrame());
    EXPECT_THAT(win32::messageBoxes(), ElementsAre(isBox("rawMemory == NULL", "Eror", 0)));
    EXPECT_THAT(library_log::lines(), IsEmpty());
    expectNoFrame();
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
}

TEST_F(FrameDelivery, ReportsANullDestinationWithoutAFrameToo) {
    openLive();
    EXPECT_EQ(channel().CopyFrame(nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
}

TEST_F(FrameDelivery, CopiesWithoutAStatusOrAText) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    CHostMemory frame(32);
    EXPECT_EQ(channel().CopyFrame(nullptr, frame.data(), nullptr), 0);
    EXPECT_EQ(frame[4], 0xC1);
    EXPECT_EQ(channel().CopyFrame(nullptr, frame.data(), nullptr), 0);
}

TEST_F(FrameDelivery, HasNothingToCopyAfterAStop) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    EXPECT_EQ(stop(), accepted());
    expectNoFrame();
}

TEST_F(FrameDelivery, CopiesNothingOfABufferWithoutMemory) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    refuseCall("MemBuffer::getData");
    EXPECT_TRUE(copiedFrame().isUntouched());
}

}  // namespace
