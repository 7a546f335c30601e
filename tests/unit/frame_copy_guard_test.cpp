// SPDX-License-Identifier: MIT
// Every set of kernels against the scalar one, in memory whose neighbours no kernel may
// touch: neither before nor behind, on neither side.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "tests/support/guarded_pages.h"
#include "tests/support/kernel_sets.h"

namespace {

using ByteSpan = std::span<std::uint8_t>;

constexpr std::uint8_t untouchedByte = 0xEE;

constexpr std::size_t mostBytes = std::size_t{5} << 20U;

// What is copied. Filled once for all tests: none may write to it.
class CPattern : public CGuardedPages {
public:
    CPattern() : CGuardedPages(mostBytes) {
        std::uint32_t state = 4711;
        for (std::uint8_t& byte : first(mostBytes)) {
            state = state * 1664525U + 1013904223U;
            byte = static_cast<std::uint8_t>(state >> 24U);
        }
    }
};

class GuardedFrameCopy : public KernelSetTest {
protected:
    // Runs `copy` with the set and with the scalar one, at either end of the memory.
    template <class Copy>
    void compare(std::size_t sourceSize, std::size_t destinationSize, const Copy& copy) {
        static const CPattern from;
        const CGuardedPages& to = m_destination;
        compareAt(from.first(sourceSize), to.first(destinationSize), copy);
        compareAt(from.last(sourceSize), to.last(destinationSize), copy);
    }
    // The source is `cut` bytes shorter than the frame, or longer where that is negative.
    void compareMosaic(std::int32_t width, std::int32_t height, std::ptrdiff_t cut) {
        const auto columns = static_cast<std::size_t>(width);
        const auto rows = static_cast<std::size_t>(height);
        const std::size_t size = columns * rows * 4;
        compare(bytesLeft(size, cut), (columns + columns % 2) * rows,
                [&](const FrameCopyKernels& set, std::uint8_t* to, auto from) {
                    set.mosaic(to, from, width, height);
                });
    }
    void compareShifted(std::int32_t width, std::int32_t height, std::ptrdiff_t cut) {
        const std::size_t size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        // The last row, and the last column before it, are not the kernel's.
        const std::size_t written =
            height > 1 && width > 1 ? size - static_cast<std::size_t>(width) - 1 : 0;
        compare(bytesLeft(size, cut), written,
                [&](const FrameCopyKernels& set, std::uint8_t* to, auto from) {
                    set.shifted(to, from, width, height);
                });
    }

private:
    static std::size_t bytesLeft(std::size_t frame, std::ptrdiff_t cut) {
        return cut < 0 ? frame + static_cast<std::size_t>(-cut)
                       : frame - std::min(frame, static_cast<std::size_t>(cut));
    }
    template <class Copy>
    void compareAt(ByteSpan source, ByteSpan destination, const Copy& copy) {
        std::ranges::fill(destination, untouchedByte);
        copy(scalarFrameCopyKernels(), destination.data(), std::span<const std::uint8_t>(source));
        const std::vector<std::uint8_t> expected(destination.begin(), destination.end());
        std::ranges::fill(destination, untouchedByte);
        copy(kernels(), destination.data(), std::span<const std::uint8_t>(source));
        // Not that of std::ranges, which compares byte by byte.
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), destination.begin()));
    }

    const CGuardedPages m_destination{mostBytes};
};

INSTANTIATE_TEST_SUITE_P(Kernels, GuardedFrameCopy, testing::ValuesIn(kernelSets()),
                         nameOfKernelSet);

TEST_P(GuardedFrameCopy, MosaicOfEveryWidthTo200TouchesNothingElse) {
    for (std::int32_t width = 1; width <= 200; ++width) {
        for (std::int32_t height = 1; height <= 4; ++height) {
            SCOPED_TRACE(testing::Message() << width << " x " << height);
            ASSERT_NO_FATAL_FAILURE(compareMosaic(width, height, 0));
        }
    }
}

TEST_P(GuardedFrameCopy, MosaicOfACutSourceTouchesNothingElse) {
    for (const std::int32_t width : {15, 16, 17, 31, 32, 33, 63, 64, 65, 97}) {
        for (std::ptrdiff_t cut = 1; cut <= width * 4 + 5; ++cut) {
            SCOPED_TRACE(testing::Message() << width << " x 3, " << cut << " bytes short");
            ASSERT_NO_FATAL_FAILURE(compareMosaic(width, 3, cut));
        }
    }
}

TEST_P(GuardedFrameCopy, MosaicOfALongerSourceTouchesNothingElse) {
    for (const std::int32_t width : {17, 33, 34, 64, 65, 97}) {
        SCOPED_TRACE(testing::Message() << width << " x 3");
        ASSERT_NO_FATAL_FAILURE(compareMosaic(width, 3, -40 * width));
    }
}

TEST_P(GuardedFrameCopy, MosaicOfCameraFramesTouchesNothingElse) {
    ASSERT_NO_FATAL_FAILURE(compareMosaic(640, 480, 0));
    ASSERT_NO_FATAL_FAILURE(compareMosaic(639, 479, 0));
    ASSERT_NO_FATAL_FAILURE(compareMosaic(1281, 963, 0));
    ASSERT_NO_FATAL_FAILURE(compareMosaic(1281, 963, 12345));
}

TEST_P(GuardedFrameCopy, ShiftedRawOfEveryWidthTo200TouchesNothingElse) {
    for (std::int32_t width = 1; width <= 200; ++width) {
        for (std::int32_t height = 1; height <= 4; ++height) {
            SCOPED_TRACE(testing::Message() << width << " x " << height);
            ASSERT_NO_FATAL_FAILURE(compareShifted(width, height, 0));
        }
    }
}

TEST_P(GuardedFrameCopy, ShiftedRawOfACutSourceTouchesNothingElse) {
    for (const std::int32_t width : {16, 17, 18, 32, 33, 34, 64, 65, 66, 97}) {
        for (std::ptrdiff_t cut = 1; cut <= width + 5; ++cut) {
            SCOPED_TRACE(testing::Message() << width << " x 3, " << cut << " bytes short");
            ASSERT_NO_FATAL_FAILURE(compareShifted(width, 3, cut));
        }
    }
}

TEST_P(GuardedFrameCopy, ShiftedRawOfALongerSourceTouchesNothingElse) {
    for (const std::int32_t width : {17, 33, 34, 64, 65, 97}) {
        SCOPED_TRACE(testing::Message() << width << " x 3");
        ASSERT_NO_FATAL_FAILURE(compareShifted(width, 3, -10 * width));
    }
}

TEST_P(GuardedFrameCopy, ShiftedRawOfCameraFramesTouchesNothingElse) {
    ASSERT_NO_FATAL_FAILURE(compareShifted(640, 480, 0));
    ASSERT_NO_FATAL_FAILURE(compareShifted(639, 479, 0));
    ASSERT_NO_FATAL_FAILURE(compareShifted(1281, 963, 0));
    ASSERT_NO_FATAL_FAILURE(compareShifted(1281, 963, 12345));
}

TEST_P(GuardedFrameCopy, BlockTouchesNothingElse) {
    for (const std::size_t size : {0U, 1U, 31U, 4096U, 262144U, 307200U, 1228801U}) {
        SCOPED_TRACE(size);
        ASSERT_NO_FATAL_FAILURE(
            compare(size, size, [size](const FrameCopyKernels& set, std::uint8_t* to, auto from) {
                set.block(to, from, size + 100);
            }));
    }
}

}  // namespace
