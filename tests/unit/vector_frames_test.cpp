// SPDX-License-Identifier: MIT
// Which rows of a frame go to the vectors, seen by rows that only take kernelNotes.
#include "acquisition/kernels/vector_frames.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::string kernelNotes;

void noteMosaic(std::uint8_t*, const std::uint8_t*, std::size_t width, std::size_t pairs,
                std::size_t rows) noexcept {
    kernelNotes = std::to_string(rows) + " rows of " + std::to_string(pairs) + " pairs, " +
                  std::to_string(width) + " pixels apart";
}

void noteShift(std::uint8_t*, const std::uint8_t*, std::size_t width, std::size_t rows) noexcept {
    kernelNotes = std::to_string(rows) + " rows, " + std::to_string(width) + " bytes apart";
}

constexpr VectorRows noted = {32, &noteMosaic, &noteShift};

std::string mosaicNotes(std::int32_t width, std::int32_t height, std::size_t sourceSize) {
    const std::vector<std::uint8_t> source(sourceSize);
    std::vector<std::uint8_t> destination(static_cast<std::size_t>(width + 1) *
                                          static_cast<std::size_t>(height));
    kernelNotes = "nothing";
    copyMosaicBy<noted>(destination.data(), source, width, height);
    return kernelNotes;
}

std::string shiftNotes(std::int32_t width, std::int32_t height, std::size_t sourceSize) {
    const std::vector<std::uint8_t> source(sourceSize);
    std::vector<std::uint8_t> destination(static_cast<std::size_t>(width) *
                                          static_cast<std::size_t>(height));
    kernelNotes = "nothing";
    copyShiftedBy<noted>(destination.data(), source, width, height);
    return kernelNotes;
}

TEST(VectorFrames, MosaicOfAWholeFrameIsAllTheirs) {
    EXPECT_EQ("48 rows of 32 pairs, 64 pixels apart", mosaicNotes(64, 48, 64 * 48 * 4));
    EXPECT_EQ("1 rows of 32 pairs, 64 pixels apart", mosaicNotes(64, 1, 64 * 4));
    EXPECT_EQ("48 rows of 32 pairs, 64 pixels apart", mosaicNotes(64, 48, 64 * 48 * 4 + 999));
}

TEST(VectorFrames, MosaicOfAnOddWidthIsTheirsButForTheLastRow) {
    EXPECT_EQ("47 rows of 33 pairs, 65 pixels apart", mosaicNotes(65, 48, 65 * 48 * 4));
    EXPECT_EQ("47 rows of 33 pairs, 65 pixels apart", mosaicNotes(65, 48, 65 * 48 * 4 + 999));
    EXPECT_EQ("nothing", mosaicNotes(65, 1, 65 * 4));
}

TEST(VectorFrames, MosaicRowsThatTheSourceCutsAreNotTheirs) {
    EXPECT_EQ("47 rows of 32 pairs, 64 pixels apart", mosaicNotes(64, 48, 64 * 48 * 4 - 1));
    EXPECT_EQ("2 rows of 32 pairs, 64 pixels apart", mosaicNotes(64, 48, 64 * 2 * 4));
    EXPECT_EQ("1 rows of 33 pairs, 65 pixels apart", mosaicNotes(65, 48, 65 * 2 * 4 + 3));
    EXPECT_EQ("2 rows of 33 pairs, 65 pixels apart", mosaicNotes(65, 48, 65 * 2 * 4 + 4));
    EXPECT_EQ("nothing", mosaicNotes(64, 48, 64 * 4 - 1));
    EXPECT_EQ("nothing", mosaicNotes(64, 48, 0));
}

TEST(VectorFrames, MosaicRowsThatDoNotFillARegisterAreNotTheirs) {
    EXPECT_EQ("nothing", mosaicNotes(30, 4, 30 * 4 * 4));
    EXPECT_EQ("3 rows of 16 pairs, 31 pixels apart", mosaicNotes(31, 4, 31 * 4 * 4));
    EXPECT_EQ("4 rows of 16 pairs, 32 pixels apart", mosaicNotes(32, 4, 32 * 4 * 4));
}

TEST(VectorFrames, ShiftedRowsOfAWholeFrameAreTheirs) {
    EXPECT_EQ("47 rows, 64 bytes apart", shiftNotes(64, 48, 64 * 48));
    EXPECT_EQ("1 rows, 64 bytes apart", shiftNotes(64, 2, 64 * 2));
    EXPECT_EQ("47 rows, 64 bytes apart", shiftNotes(64, 48, 64 * 48 + 999));
    EXPECT_EQ("nothing", shiftNotes(64, 1, 64));
}

TEST(VectorFrames, ShiftedRowsThatTheSourceCutsAreNotTheirs) {
    EXPECT_EQ("46 rows, 64 bytes apart", shiftNotes(64, 48, 64 * 48 - 1));
    EXPECT_EQ("1 rows, 64 bytes apart", shiftNotes(64, 48, 64 * 2));
    EXPECT_EQ("nothing", shiftNotes(64, 48, 64 * 2 - 1));
    EXPECT_EQ("nothing", shiftNotes(64, 48, 0));
}

TEST(VectorFrames, ShiftedRowsThatDoNotFillARegisterAreNotTheirs) {
    EXPECT_EQ("nothing", shiftNotes(32, 4, 32 * 4));
    EXPECT_EQ("3 rows, 33 bytes apart", shiftNotes(33, 4, 33 * 4));
}

}  // namespace
