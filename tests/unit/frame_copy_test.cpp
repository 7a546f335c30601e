// SPDX-License-Identifier: MIT
// The ways in which a frame reaches the host's memory, for every set of kernels.
#include "acquisition/frame_copy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "tests/support/kernel_sets.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t untouched = 0xEE;

// A source in memory of exactly its size, so that tools see a byte read too many.
class Source {
public:
    explicit Source(const Bytes& bytes)
        : m_size(bytes.size()), m_bytes(std::make_unique<std::uint8_t[]>(bytes.size())) {
        std::copy(bytes.begin(), bytes.end(), m_bytes.get());
    }
    std::span<const std::uint8_t> span() const { return {m_bytes.get(), m_size}; }

private:
    std::size_t m_size;
    std::unique_ptr<std::uint8_t[]> m_bytes;
};

// A destination between bytes that nobody may write; the first byte that a kernel
// may write can be moved off any alignment.
class Destination {
public:
    explicit Destination(std::size_t size, std::size_t offset = 0)
        : m_start(margin + offset), m_size(size), m_bytes(margin + offset + size + margin, guard) {
        std::fill_n(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_start), size, untouched);
    }
    std::uint8_t* data() { return m_bytes.data() + m_start; }
    Bytes content() const {
        const auto start = m_bytes.begin() + static_cast<std::ptrdiff_t>(m_start);
        return Bytes(start, start + static_cast<std::ptrdiff_t>(m_size));
    }
    bool guardsStand() const {
        const auto start = m_bytes.begin() + static_cast<std::ptrdiff_t>(m_start);
        const auto isGuard = [](std::uint8_t byte) { return byte == guard; };
        return std::all_of(m_bytes.begin(), start, isGuard) &&
               std::all_of(start + static_cast<std::ptrdiff_t>(m_size), m_bytes.end(), isGuard);
    }

private:
    static constexpr std::size_t margin = 128;
    static constexpr std::uint8_t guard = 0xA5;
    std::size_t m_start;
    std::size_t m_size;
    Bytes m_bytes;
};

// Bytes that differ from their neighbours and from those of other rows.
Bytes pattern(std::size_t size) {
    Bytes bytes(size);
    std::uint32_t state = 12345;
    for (std::uint8_t& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<std::uint8_t>(state >> 24U);
    }
    return bytes;
}

std::size_t sizeOf(std::int32_t width, std::int32_t height) {
    return static_cast<std::size_t>(std::max(width, 0)) *
           static_cast<std::size_t>(std::max(height, 0));
}

// What the shifted copy leaves in a destination of width x height bytes.
Bytes shiftedByHand(const Bytes& source, std::int32_t width, std::int32_t height) {
    Bytes result(sizeOf(width, height), untouched);
    for (std::int32_t row = 0; row + 1 < height; ++row) {
        for (std::int32_t column = 0; column + 1 < width; ++column) {
            const std::size_t from = sizeOf(width, row + 1) + static_cast<std::size_t>(column) + 1;
            if (from < source.size()) {
                result[sizeOf(width, row) + static_cast<std::size_t>(column)] = source[from];
            }
        }
    }
    return result;
}

// What the mosaic leaves in a destination with whole pairs in every row: filled
// without gaps, however many pairs lie outside the source.
Bytes mosaicByHand(const Bytes& source, std::int32_t width, std::int32_t height) {
    Bytes result;
    for (std::int32_t row = height - 1; row >= 0; --row) {
        const bool odd = row % 2 == 1;
        for (std::int32_t x = 0; x < width; x += 2) {
            const std::size_t pixel = (sizeOf(width, row) + static_cast<std::size_t>(x)) * 4;
            const std::size_t left = pixel + (odd ? 1 : 0);
            const std::size_t right = pixel + 4 + (odd ? 2 : 1);
            if (left < source.size()) {
                result.push_back(source[left]);
                result.push_back(right < source.size() ? source[right] : std::uint8_t{0});
            }
        }
    }
    result.resize(sizeOf(width + width % 2, height), untouched);
    return result;
}

class FrameCopy : public KernelSetTest {
protected:
    Bytes block(const Bytes& bytes, std::size_t size) {
        const Source source(bytes);
        Destination destination(size);
        kernels().block(destination.data(), source.span(), size);
        EXPECT_TRUE(destination.guardsStand());
        return destination.content();
    }
    Bytes shifted(const Bytes& bytes, std::int32_t width, std::int32_t height) {
        const Source source(bytes);
        Destination destination(sizeOf(width, height));
        kernels().shifted(destination.data(), source.span(), width, height);
        EXPECT_TRUE(destination.guardsStand());
        return destination.content();
    }
    // With exactly the slack of an odd width: one byte per row.
    Bytes mosaic(const Bytes& bytes, std::int32_t width, std::int32_t height,
                 std::size_t offset = 0) {
        const Source source(bytes);
        const std::int32_t rowBytes = width > 0 ? width + width % 2 : 0;
        Destination destination(sizeOf(rowBytes, height), offset);
        kernels().mosaic(destination.data(), source.span(), width, height);
        EXPECT_TRUE(destination.guardsStand());
        return destination.content();
    }
};

INSTANTIATE_TEST_SUITE_P(Kernels, FrameCopy, testing::ValuesIn(kernelSets()), nameOfKernelSet);

TEST_P(FrameCopy, BlockCopiesTheBytesAsTheyAre) {
    EXPECT_EQ((Bytes{1, 2, 3, 4, 5}), block({1, 2, 3, 4, 5}, 5));
    EXPECT_EQ((Bytes{1, 2, 3}), block({1, 2, 3, 4, 5}, 3));
    EXPECT_EQ(Bytes{}, block({1, 2, 3}, 0));
    const Bytes large = pattern(100003);
    EXPECT_EQ(large, block(large, large.size()));
}

TEST_P(FrameCopy, BlockOfAQuarterOfAMegabyteAndMoreIsCopiedAsItIs) {
    for (const std::size_t size : {262143U, 262144U, 262145U, 3000001U}) {
        const Bytes source = pattern(size);
        // Not by value: a failure would print it all.
        EXPECT_TRUE(source == block(source, size)) << size;
        Bytes expected = source;
        expected.resize(size + 5, untouched);
        EXPECT_TRUE(expected == block(source, size + 5)) << size << ", five asked for too many";
        expected.resize(size - 5);
        EXPECT_TRUE(expected == block(source, size - 5)) << size << ", five asked for too few";
    }
}

TEST_P(FrameCopy, BlockIsCutToTheSource) {
    EXPECT_EQ((Bytes{1, 2, untouched, untouched}), block({1, 2}, 4));
    EXPECT_EQ((Bytes{untouched, untouched}), block({}, 2));
    for (std::size_t available = 0; available <= 300; ++available) {
        Bytes expected(300, untouched);
        const Bytes source = pattern(available);
        std::copy(source.begin(), source.end(), expected.begin());
        ASSERT_EQ(expected, block(source, 300)) << available;
    }
}

TEST_P(FrameCopy, EmptySourceWithoutMemoryIsFine) {
    Destination destination(4);
    kernels().block(destination.data(), {}, 4);
    kernels().shifted(destination.data(), {}, 2, 2);
    kernels().mosaic(destination.data(), {}, 2, 2);
    EXPECT_EQ(Bytes(4, untouched), destination.content());
}

TEST_P(FrameCopy, ShiftedRawMovesByOneRowAndOneColumn) {
    const Bytes source = {10, 11, 12, 13,  //
                          20, 21, 22, 23,  //
                          30, 31, 32, 33};
    const Bytes expected = {21,        22,        23,        untouched,  //
                            31,        32,        33,        untouched,  //
                            untouched, untouched, untouched, untouched};
    EXPECT_EQ(expected, shifted(source, 4, 3));
}

TEST_P(FrameCopy, ShiftedRawLeavesLastColumnAndLastRowUntouched) {
    const std::int32_t width = 37;
    const std::int32_t height = 11;
    const Bytes result = shifted(Bytes(37 * 11, 0x55), width, height);
    for (std::int32_t row = 0; row < height; ++row) {
        for (std::int32_t column = 0; column < width; ++column) {
            const bool last = row == height - 1 || column == width - 1;
            ASSERT_EQ(last ? untouched : 0x55,
                      result[static_cast<std::size_t>(row * width + column)])
                << row << ", " << column;
        }
    }
}

TEST_P(FrameCopy, ShiftedRawOfFewerThanTwoRowsCopiesNothing) {
    EXPECT_EQ(Bytes(4, untouched), shifted({1, 2, 3, 4}, 4, 1));
    EXPECT_EQ(Bytes{}, shifted({1, 2, 3, 4}, 4, 0));
    EXPECT_EQ(Bytes{}, shifted({1, 2, 3, 4}, 4, -1));
    EXPECT_EQ(Bytes{}, shifted({1, 2, 3, 4}, 4, -2147483647 - 1));
}

TEST_P(FrameCopy, ShiftedRawOfFewerThanTwoColumnsCopiesNothing) {
    EXPECT_EQ(Bytes(4, untouched), shifted({1, 2, 3, 4}, 1, 4));
    EXPECT_EQ(Bytes{}, shifted({1, 2, 3, 4}, 0, 4));
    EXPECT_EQ(Bytes{}, shifted({1, 2, 3, 4}, -1, 4));
    EXPECT_EQ(Bytes{}, shifted({1, 2, 3, 4}, -2147483647 - 1, 4));
}

TEST_P(FrameCopy, ShiftedRawIsCutToTheSource) {
    EXPECT_EQ((Bytes{4, untouched, untouched, untouched, untouched, untouched}),
              shifted({0, 1, 2, 3, 4}, 3, 2));
    EXPECT_EQ(Bytes(6, untouched), shifted({0, 1, 2, 3}, 3, 2));
}

TEST_P(FrameCopy, ShiftedRawOfEverySizeAndEverySourceLength) {
    for (std::int32_t width = 0; width <= 7; ++width) {
        for (std::int32_t height = 0; height <= 5; ++height) {
            for (std::size_t size = 0; size <= sizeOf(width, height) + 3; ++size) {
                const Bytes source = pattern(size);
                ASSERT_EQ(shiftedByHand(source, width, height), shifted(source, width, height))
                    << width << " x " << height << " from " << size;
            }
        }
    }
}

TEST_P(FrameCopy, ShiftedRawOfEveryWidthTo150) {
    for (std::int32_t width = 8; width <= 150; ++width) {
        const Bytes source = pattern(sizeOf(width, 3));
        ASSERT_EQ(shiftedByHand(source, width, 3), shifted(source, width, 3)) << width;
    }
}

TEST_P(FrameCopy, MosaicOfFourByTwoTakesTheLastSourceRowFirst) {
    const Bytes source = {// blue, green, red, unused of row 0, then of row 1
                          0xB0, 0x60, 0x40, 0xFF, 0xB1, 0x61, 0x41, 0xFF, 0xB2, 0x62, 0x42,
                          0xFF, 0xB3, 0x63, 0x43, 0xFF, 0xB4, 0x64, 0x44, 0xFF, 0xB5, 0x65,
                          0x45, 0xFF, 0xB6, 0x66, 0x46, 0xFF, 0xB7, 0x67, 0x47, 0xFF};
    const Bytes expected = {0x64, 0x45, 0x66, 0x47,   // row 1: green and red
                            0xB0, 0x61, 0xB2, 0x63};  // row 0: blue and green
    EXPECT_EQ(expected, mosaic(source, 4, 2));
}

TEST_P(FrameCopy, MosaicRowsGoByTheirNumberInTheSource) {
    // Three rows of two pixels: the parity counts from the start of the source.
    const Bytes source = {1,  2,  3,  0, 4,  5,  6,  0,  //
                          11, 12, 13, 0, 14, 15, 16, 0,  //
                          21, 22, 23, 0, 24, 25, 26, 0};
    EXPECT_EQ((Bytes{21, 25, 12, 16, 1, 5}), mosaic(source, 2, 3));
}

TEST_P(FrameCopy, MosaicOfOneRowIsBlueAndGreen) {
    EXPECT_EQ((Bytes{1, 5, 7, 11}),
              mosaic({1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0, 10, 11, 12, 0}, 4, 1));
}

TEST_P(FrameCopy, MosaicOfAnOddWidthTakesOneByteFromTheNextSourceRow) {
    // Three pixels per row; the fourth byte of a row comes from the next row's first pixel.
    const Bytes source = {1,  2,  3,  0, 4,  5,  6,  0, 7,  8,  9,  0,  //
                          11, 12, 13, 0, 14, 15, 16, 0, 17, 18, 19, 0,  //
                          21, 22, 23, 0, 24, 25, 26, 0, 27, 28, 29, 0};
    const Bytes expected = {21, 25, 27, 0,    // nothing follows the last row
                            12, 16, 18, 23,   // red of row 2
                            1,  5,  7,  12};  // green of row 1
    EXPECT_EQ(expected, mosaic(source, 3, 3));
}

TEST_P(FrameCopy, MosaicOfAnOddWidthHasZeroAfterTheLastSourceRow) {
    EXPECT_EQ((Bytes{1, 0}), mosaic({1, 2, 3, 0}, 1, 1));
    EXPECT_EQ((Bytes{6, 0, 1, 6}), mosaic({1, 2, 3, 0, 5, 6, 7, 0}, 1, 2));
    // Also where the buffer is larger than the frame.
    EXPECT_EQ((Bytes{1, 0}), mosaic({1, 2, 3, 0, 5, 6, 7, 0}, 1, 1));
}

TEST_P(FrameCopy, MosaicWithoutPixelsWritesNothing) {
    for (const std::int32_t height : {0, -1, -2147483647 - 1}) {
        EXPECT_EQ(Bytes{}, mosaic(Bytes(64, 7), 4, height));
    }
    for (const std::int32_t width : {0, -1, -2147483647 - 1}) {
        EXPECT_EQ(Bytes{}, mosaic(Bytes(64, 7), width, 4));
    }
}

TEST_P(FrameCopy, MosaicIsFilledWithoutGapsWhereSourceRowsAreMissing) {
    // Of three rows the source holds the first, and half of the second.
    const Bytes source = {1, 2, 3, 0, 4, 5, 6, 0, 11, 12, 13, 0};
    const Bytes expected = {12, 0, 1, 5, untouched, untouched};
    EXPECT_EQ(expected, mosaic(source, 2, 3));
}

TEST_P(FrameCopy, MosaicOfEverySizeAndEverySourceLength) {
    for (std::int32_t width = 0; width <= 7; ++width) {
        for (std::int32_t height = 0; height <= 4; ++height) {
            for (std::size_t size = 0; size <= sizeOf(width, height) * 4; ++size) {
                const Bytes source = pattern(size);
                ASSERT_EQ(mosaicByHand(source, width, height), mosaic(source, width, height))
                    << width << " x " << height << " from " << size;
            }
        }
    }
}

TEST_P(FrameCopy, MosaicOfEveryWidthTo150AndEveryAlignment) {
    for (std::int32_t width = 8; width <= 150; ++width) {
        const Bytes source = pattern(sizeOf(width, 3) * 4);
        const Bytes expected = mosaicByHand(source, width, 3);
        for (std::size_t offset = 0; offset < 33; offset += width < 70 ? 1 : 7) {
            ASSERT_EQ(expected, mosaic(source, width, 3, offset)) << width << " at " << offset;
        }
    }
}

TEST_P(FrameCopy, MosaicOfWideRowsCutAnywhere) {
    for (const std::int32_t width : {31, 32, 33, 63, 64, 65, 66, 67}) {
        for (std::size_t size = 0; size <= sizeOf(width, 2) * 4; ++size) {
            const Bytes source = pattern(size);
            ASSERT_EQ(mosaicByHand(source, width, 2), mosaic(source, width, 2))
                << width << " from " << size;
        }
    }
}

TEST(FrameBytes, AreWidthTimesHeight) {
    EXPECT_EQ(307200U, frameBytes(640, 480));
    EXPECT_EQ(1U, frameBytes(1, 1));
    EXPECT_EQ(0U, frameBytes(0, 480));
    EXPECT_EQ(0U, frameBytes(640, 0));
    EXPECT_EQ(2147483647U, frameBytes(2147483647, 1));
}

TEST(FrameBytes, OfANegativeProductAreNone) {
    EXPECT_EQ(0U, frameBytes(-1, 480));
    EXPECT_EQ(0U, frameBytes(640, -1));
    EXPECT_EQ(0U, frameBytes(-2147483647 - 1, 1));
}

TEST(FrameBytes, ProductWrapsAsA32BitSignedNumber) {
    EXPECT_EQ(0U, frameBytes(65536, 65536));
    EXPECT_EQ(131073U, frameBytes(65537, 65537));
    EXPECT_EQ(0U, frameBytes(65536, 32768));
    EXPECT_EQ(0U, frameBytes(46341, 46341));
    EXPECT_EQ(2147395600U, frameBytes(46340, 46340));
    EXPECT_EQ(6U, frameBytes(-2, -3));
}

}  // namespace
