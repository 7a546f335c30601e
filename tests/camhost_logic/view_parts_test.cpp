// SPDX-License-Identifier: MIT
// The smaller parts of the view: heads, tokens, reduced frames, zip files, recordings.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "camhost/base/checksum.h"
#include "camhost/settings/key_kinds.h"
#include "camhost/view/frame_bytes.h"
#include "camhost/view/guards.h"
#include "camhost/view/recording.h"
#include "camhost/view/zip.h"
#include "velmora/host_blocks.h"

namespace camhost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

ViewFrame numberedFrame(const FrameLayout& layout) {
    ViewFrame frame(layout);
    auto* bytes = static_cast<std::uint8_t*>(frame.buffer.data());
    for (std::size_t i = 0; i < frame.buffer.frame().size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i);
    }
    frame.number = 7;
    frame.serial = "1A2B";
    return frame;
}

TEST(ViewHead, CarriesWhatKeepsOtherPagesOut) {
    const std::string head = responseHead(emptyResponse(404), true);
    EXPECT_THAT(head, testing::StartsWith("HTTP/1.1 404 Not Found\r\n"));
    for (const char* line :
         {"Content-Security-Policy: default-src 'none'; script-src 'self'; style-src 'self'; "
          "img-src 'self' blob: data:; connect-src 'self'; form-action 'none'; "
          "frame-ancestors 'none'; base-uri 'none'\r\n",
          "X-Content-Type-Options: nosniff\r\n", "X-Frame-Options: DENY\r\n",
          "Referrer-Policy: no-referrer\r\n", "Cache-Control: no-store\r\n",
          "Cross-Origin-Resource-Policy: same-origin\r\n",
          "Cross-Origin-Opener-Policy: same-origin\r\n", "Content-Length: 0\r\n",
          "Connection: keep-alive\r\n\r\n"}) {
        EXPECT_THAT(head, HasSubstr(line));
    }
    EXPECT_THAT(responseHead(emptyResponse(204), false), testing::Not(HasSubstr("Content-Length")));
}

TEST(ViewToken, IsThirtyTwoDigits) {
    const std::uint8_t random[tokenBytes] = {0x00, 0x1F, 0xA0, 0xFF};
    EXPECT_EQ(tokenOf(random), "001fa0ff000000000000000000000000");
}

TEST(ViewFrames, ReducedGreyKeepsEverySecondPixel) {
    const ReducedFrame sent = reducedFrame(numberedFrame({5, 3, HOST_PIXEL_MONO8}), 2);
    EXPECT_EQ(sent.width, 3U);
    EXPECT_EQ(sent.height, 2U);
    EXPECT_THAT(sent.bytes, ElementsAre(0, 2, 4, 10, 12, 14));
}

TEST(ViewFrames, ReducedColoursCountRowsFromTheTopOfThePicture) {
    // Two pixels a row, three rows from the bottom: 12 is the top row.
    const ReducedFrame sent = reducedFrame(numberedFrame({2, 3, HOST_PIXEL_RGB24}), 2);
    EXPECT_EQ(sent.width, 1U);
    EXPECT_EQ(sent.rowBytes, 3U);
    EXPECT_THAT(sent.bytes, ElementsAre(0, 1, 2, 12, 13, 14));
    const ReducedFrame even = reducedFrame(numberedFrame({1, 4, HOST_PIXEL_RGB24}), 2);
    EXPECT_THAT(even.bytes, ElementsAre(3, 4, 5, 9, 10, 11)) << "the top row and the third";
}

TEST(ViewFrames, ReducedMosaicsKeepWholeCells) {
    const ReducedFrame sent = reducedFrame(numberedFrame({6, 4, HOST_PIXEL_RAW8}), 2);
    EXPECT_EQ(sent.width, 4U);
    EXPECT_EQ(sent.height, 2U);
    EXPECT_THAT(sent.bytes, ElementsAre(0, 1, 4, 5, 6, 7, 10, 11));
}

TEST(ViewFrames, MemoryIsUsedAgain) {
    CFrameStore store;
    const FrameLayout layout{4, 2, HOST_PIXEL_MONO8};
    std::set<const void*> places;
    for (std::uint64_t number = 1; number <= 100; ++number) {
        std::unique_ptr<ViewFrame> frame = store.take(layout);
        places.insert(frame->buffer.data());
        frame->number = number;
        store.add(std::move(frame));
    }
    EXPECT_EQ(places.size(), 17U) << "the sixteen that are kept, and the next";
}

TEST(ViewZip, IsReadByItsDirectory) {
    const auto bytes = std::make_shared<const std::vector<std::uint8_t>>(
        std::initializer_list<std::uint8_t>{'1', '2', '3', '4', '5', '6', '7', '8', '9'});
    EXPECT_EQ(crc32(*bytes), 0xCBF43926U);
    const ZipEntry entry{"a.png", crc32(*bytes), bytes};
    const std::string head = zipEntryHead(entry);
    EXPECT_EQ(head.size(), 35U);
    EXPECT_EQ(head.substr(14, 4), std::string("\x26\x39\xF4\xCB", 4));
    const std::string directory = zipDirectory({entry});
    EXPECT_EQ(directory.size(), 46U + 5U + 22U);
    EXPECT_EQ(directory.substr(42, 9), std::string("\0\0\0\0a.png", 9));
    // Where the directory begins: behind the head and its nine bytes.
    EXPECT_EQ(directory.substr(directory.size() - 6, 4), std::string("\x2C\0\0\0", 4));
}

TEST(ViewRecording, EndsEarlyWhenItsMemoryIsFull) {
    constexpr std::size_t room = std::size_t{1} << 20U;
    CRecording recording(
        5, {}, [] {}, room);
    const ViewFrame frame = numberedFrame({1024, 600, HOST_PIXEL_MONO8});
    recording.add(frame);
    ViewFrame larger = numberedFrame({1024, 1025, HOST_PIXEL_MONO8});
    larger.number = 8;
    recording.add(larger);
    recording.waitForPictures();
    const CRecording::Progress progress = recording.progress();
    EXPECT_EQ(progress.problem, "1 MiB are full after 1 frames");
    EXPECT_EQ(progress.done, 1U);
    EXPECT_TRUE(progress.isReady);
}

TEST(KeyItem, IsWhatStandsBeforeTheElement) {
    EXPECT_EQ(itemOfKey("exposure value abs"), "exposure");
    EXPECT_EQ(itemOfKey("exposure value abs max"), "exposure");
    EXPECT_EQ(itemOfKey("exposure auto switch"), "exposure");
    EXPECT_EQ(itemOfKey("exposure one push"), "exposure");
    EXPECT_EQ(itemOfKey("white balance red range"), "white balance");
    EXPECT_EQ(itemOfKey("saturation value range2"), "saturation");
    EXPECT_EQ(itemOfKey("partial scan x offset range"), "partial scan");
    EXPECT_EQ(itemOfKey("framerate"), "");
    EXPECT_EQ(itemOfKey("feature_1"), "");
    EXPECT_EQ(itemOfKey("propertydialog"), "");
}

}  // namespace
}  // namespace camhost
