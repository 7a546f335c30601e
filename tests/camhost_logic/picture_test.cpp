// SPDX-License-Identifier: MIT
// From frame bytes to picture files: layouts, mosaics, PNG texts, PNM.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "camhost/base/failure.h"
#include "camhost/pictures/bayer.h"
#include "camhost/pictures/frame_buffer.h"
#include "camhost/pictures/frame_image.h"
#include "camhost/pictures/picture_file.h"
#include "camhost/pictures/png_encode.h"
#include "camhost/pictures/png_text.h"
#include "velmora/host_blocks.h"

namespace camhost {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Pair;
using Bytes = std::vector<std::uint8_t>;

TEST(FrameLayout, BytesFollowFromThePixelType) {
    EXPECT_EQ(frameBytes({640, 480, HOST_PIXEL_MONO8}), 307200U);
    EXPECT_EQ(frameBytes({640, 480, HOST_PIXEL_RAW8}), 307200U);
    EXPECT_EQ(frameBytes({640, 480, HOST_PIXEL_RGB24}), 921600U);
    EXPECT_EQ(frameBytes({0, 480, HOST_PIXEL_MONO8}), 0U);
    EXPECT_EQ(frameBytes({-640, -480, HOST_PIXEL_MONO8}), 0U);
    EXPECT_EQ(frameBytes({2000000000, 2000000000, HOST_PIXEL_MONO8}), 0U);
}

TEST(FrameLayout, RowsOfAMosaicMadeFromColoursComeInPairs) {
    EXPECT_EQ(rowBytes({5, 4, HOST_PIXEL_RAW8, true}), 6U);
    EXPECT_EQ(rowBytes({5, 4, HOST_PIXEL_RAW8, false}), 5U);
    EXPECT_EQ(rowBytes({5, 4, HOST_PIXEL_MONO8, true}), 5U);
    EXPECT_EQ(frameBytes({5, 4, HOST_PIXEL_RAW8, true}), 24U);
    const Bytes frame{1, 2, 3, 99, 4, 5, 6, 99};
    EXPECT_THAT(makeImage({3, 2, HOST_PIXEL_RAW8, true}, frame, std::nullopt).pixels,
                ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST(FrameLayout, CopiesMayTouchOneByteMorePerOddRow) {
    EXPECT_EQ(copyBytes({5, 4, HOST_PIXEL_RAW8}), 24U);
    EXPECT_EQ(copyBytes({4, 4, HOST_PIXEL_RAW8}), 16U);
    EXPECT_EQ(copyBytes({5, 4, HOST_PIXEL_RGB24}), 64U);
    EXPECT_EQ(copyBytes({0, 0, HOST_PIXEL_RAW8}), 0U);
}

TEST(FrameBuffer, AByteBehindTheCopyIsNoticed) {
    CFrameBuffer buffer({3, 2, HOST_PIXEL_RAW8});
    EXPECT_EQ(buffer.frame().size(), 6U);
    auto* bytes = static_cast<std::uint8_t*>(buffer.data());
    bytes[7] = 1;
    EXPECT_TRUE(buffer.intact());
    bytes[8] = 1;
    EXPECT_FALSE(buffer.intact());
}

TEST(FrameImage, Rgb24IsTurnedTopRowFirstAndRedFirst) {
    const Bytes frame{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    const Image image = makeImage({2, 2, HOST_PIXEL_RGB24}, frame, std::nullopt);
    EXPECT_EQ(image.channels, 3U);
    EXPECT_THAT(image.pixels, ElementsAre(9, 8, 7, 12, 11, 10, 3, 2, 1, 6, 5, 4));
}

TEST(FrameImage, RawIsGreyUnlessColoursAreAskedFor) {
    const Bytes frame{10, 20, 30, 40};
    EXPECT_THAT(makeImage({2, 2, HOST_PIXEL_RAW8}, frame, std::nullopt).pixels,
                ElementsAreArray(frame));
    const Image colours = makeImage({2, 2, HOST_PIXEL_RAW8}, frame, BayerOrder::Rggb);
    EXPECT_EQ(colours.channels, 3U);
    EXPECT_THAT(Bytes(colours.pixels.begin(), colours.pixels.begin() + 3), ElementsAre(10, 25, 40));
}

TEST(FrameImage, AFrameThatIsTooShortMakesNoPicture) {
    EXPECT_THAT(makeImage({2, 2, HOST_PIXEL_MONO8}, Bytes{1, 2, 3}, std::nullopt).pixels,
                IsEmpty());
}

TEST(Bayer, NamesAreReadInAnyCase) {
    EXPECT_EQ(parseBayer("bggr"), BayerOrder::Bggr);
    EXPECT_EQ(parseBayer("GRBG"), BayerOrder::Grbg);
    EXPECT_EQ(parseBayer("auto"), std::nullopt);
    EXPECT_EQ(bayerName(BayerOrder::Gbrg), "GBRG");
}

TEST(Bayer, OrderFollowsFromFormatAndHeight) {
    EXPECT_EQ(assumedBayer("Y800 (640x480)", 480), BayerOrder::Grbg);
    EXPECT_EQ(assumedBayer("Y800 (641x479)", 479), BayerOrder::Grbg);
    EXPECT_EQ(assumedBayer("BY8 (640x480)", 480), BayerOrder::Grbg);
    EXPECT_EQ(assumedBayer("RGB32 (640x481)", 481), BayerOrder::Bggr);
}

// Red 200, green 100, blue 50 everywhere must come out so for each order.
TEST(Bayer, PlainColoursComeOutOfEveryOrder) {
    const auto letter = [](std::string_view order, std::size_t y, std::size_t x) {
        const char c = order[(y % 2) * 2 + x % 2];
        return static_cast<std::uint8_t>(c == 'R' ? 200 : c == 'G' ? 100 : 50);
    };
    for (const BayerOrder order :
         {BayerOrder::Rggb, BayerOrder::Grbg, BayerOrder::Gbrg, BayerOrder::Bggr}) {
        Bytes mosaic;
        for (std::size_t y = 0; y < 3; ++y) {
            for (std::size_t x = 0; x < 5; ++x) {
                mosaic.push_back(letter(bayerName(order), y, x));
            }
        }
        const Bytes colours = demosaicFast(mosaic, 5, 3, order);
        ASSERT_EQ(colours.size(), 45U);
        for (std::size_t i = 0; i < colours.size(); i += 3) {
            EXPECT_THAT(Bytes(colours.begin() + static_cast<std::ptrdiff_t>(i),
                              colours.begin() + static_cast<std::ptrdiff_t>(i + 3)),
                        ElementsAre(200, 100, 50))
                << bayerName(order) << " byte " << i;
        }
    }
}

TEST(Bayer, APictureOfOneRowStaysBlack) {
    EXPECT_THAT(demosaicFast(Bytes{1, 2}, 2, 1, BayerOrder::Rggb), ElementsAre(0, 0, 0, 0, 0, 0));
}

TEST(PngText, TextsStandBehindTheHeaderAndReadBack) {
    Bytes png = encodePng({2, 1, 1, {7, 8}});
    ASSERT_GT(png.size(), 33U);
    insertPngTexts(png, {{"PixelType", "Mono8"}, {"Empty", ""}});
    EXPECT_EQ(std::string(png.begin() + 37, png.begin() + 41), "tEXt");
    EXPECT_THAT(readPngTexts(png), ElementsAre(Pair("PixelType", "Mono8"), Pair("Empty", "")));
}

// The bytes of a chunk that other programs made: keyword "Title", text "x".
TEST(PngText, ChecksumIsTheOneOfTheFormat) {
    Bytes png = encodePng({1, 1, 1, {0}});
    insertPngTexts(png, {{"Title", "x"}});
    const Bytes chunk(png.begin() + 33, png.begin() + 33 + 19);
    EXPECT_THAT(chunk, ElementsAre(0, 0, 0, 7, 't', 'E', 'X', 't', 'T', 'i', 't', 'l', 'e', 0, 'x',
                                   0x29, 0x7E, 0x4D, 0x3A));
}

// Of so many bytes that the library's own counts would run over.
TEST(PngText, APictureThatIsTooLargeIsRefusedUnread) {
    EXPECT_THROW(encodePng({65536, 65536, 1, {0}}), Failure);
    EXPECT_THROW(encodePng({1048576, 1048576, 3, {0}}), Failure);
}

TEST(PngText, DamagedFilesAreLeftAlone) {
    Bytes other{1, 2, 3};
    insertPngTexts(other, {{"A", "b"}});
    EXPECT_THAT(other, ElementsAre(1, 2, 3));
    Bytes png = encodePng({1, 1, 1, {0}});
    insertPngTexts(png, {{"A", "b"}});
    png[33 + 8] ^= 1U;
    EXPECT_THAT(readPngTexts(png), IsEmpty());
    png.resize(40);
    EXPECT_THAT(readPngTexts(png), IsEmpty());
}

TEST(PictureFile, PnmIsGreyOrColour) {
    const FrameLayout mono{2, 1, HOST_PIXEL_MONO8};
    const Bytes grey = encodePicture(PictureFormat::Pnm, mono, Bytes{65, 66}, std::nullopt, {});
    EXPECT_EQ(std::string(grey.begin(), grey.end()), "P5\n2 1\n255\nAB");
    const FrameLayout rgb{1, 1, HOST_PIXEL_RGB24};
    const Bytes colour =
        encodePicture(PictureFormat::Pnm, rgb, Bytes{67, 66, 65}, std::nullopt, {});
    EXPECT_EQ(std::string(colour.begin(), colour.end()), "P6\n1 1\n255\nABC");
}

TEST(PictureFile, RawIsTheFrameAsItCame) {
    const Bytes frame{1, 2, 3};
    EXPECT_EQ(encodePicture(PictureFormat::Raw, {1, 1, HOST_PIXEL_RGB24}, frame, std::nullopt, {}),
              frame);
}

TEST(PictureFile, FormatsAreKnownByNameAndByFileName) {
    EXPECT_EQ(parsePictureFormat("none"), PictureFormat::None);
    EXPECT_EQ(parsePictureFormat("jpeg"), std::nullopt);
    EXPECT_EQ(pictureFormatOfName("A.PPM"), PictureFormat::Pnm);
    EXPECT_EQ(pictureFormatOfName("png"), std::nullopt);
}

}  // namespace
}  // namespace camhost
