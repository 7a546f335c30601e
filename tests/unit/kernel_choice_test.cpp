// SPDX-License-Identifier: MIT
// Which set of copy kernels a processor gets.
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "acquisition/frame_copy.h"
#include "acquisition/kernels/processor.h"
#include "acquisition/kernels/vector_frames.h"

namespace {

constexpr std::uint32_t ssse3 = 0x00000200;
constexpr std::uint32_t osSaves = 0x08000000;
constexpr std::uint32_t avx = 0x10000000;
constexpr std::uint32_t avx2 = 0x00000020;
constexpr std::uint32_t fastStrings = 0x00000200;

TEST(ProcessorFeatures, OfNoWordsAreNone) {
    const ProcessorFeatures features = featuresFrom({});
    EXPECT_FALSE(features.ssse3);
    EXPECT_FALSE(features.avx2);
    EXPECT_FALSE(features.fastStringMoves);
}

TEST(ProcessorFeatures, OfAllWordsAreAll) {
    const ProcessorFeatures features =
        featuresFrom({ssse3 | osSaves | avx, avx2 | fastStrings, 0x7});
    EXPECT_TRUE(features.ssse3);
    EXPECT_TRUE(features.avx2);
    EXPECT_TRUE(features.fastStringMoves);
}

TEST(ProcessorFeatures, AreReadOneByOne) {
    EXPECT_TRUE(featuresFrom({ssse3, 0, 0}).ssse3);
    EXPECT_FALSE(featuresFrom({~ssse3, 0xFFFFFFFF, 0x7}).ssse3);
    EXPECT_TRUE(featuresFrom({0, fastStrings, 0}).fastStringMoves);
    EXPECT_FALSE(featuresFrom({0xFFFFFFFF, ~fastStrings, 0x7}).fastStringMoves);
    EXPECT_TRUE(featuresFrom({osSaves | avx, avx2, 0x6}).avx2);
}

TEST(ProcessorFeatures, HaveNoAvx2WhereTheSystemDoesNotSaveItsRegisters) {
    EXPECT_FALSE(featuresFrom({avx, avx2, 0x7}).avx2) << "the system saves no such registers";
    EXPECT_FALSE(featuresFrom({osSaves | avx, avx2, 0x0}).avx2);
    EXPECT_FALSE(featuresFrom({osSaves | avx, avx2, 0x2}).avx2) << "low halves alone";
    EXPECT_FALSE(featuresFrom({osSaves | avx, avx2, 0x4}).avx2) << "high halves alone";
    EXPECT_FALSE(featuresFrom({osSaves, avx2, 0x7}).avx2) << "no AVX";
    EXPECT_FALSE(featuresFrom({osSaves | avx, 0, 0x7}).avx2) << "AVX without AVX2";
}

// The flags that the kernel of the build machine reports, under Wine too.
TEST(ProcessorFeatures, AreThoseThatTheSystemReports) {
    std::ifstream file("/proc/cpuinfo");
    std::string line;
    while (std::getline(file, line) && line.rfind("flags", 0) != 0) {
    }
    if (line.empty()) {
        GTEST_SKIP() << "no /proc/cpuinfo on this system";
    }
    std::istringstream words(line);
    std::set<std::string> flags;
    for (std::string word; words >> word;) {
        flags.insert(word);
    }
    const ProcessorFeatures features = processorFeatures();
    EXPECT_EQ(flags.count("ssse3") == 1, features.ssse3);
    EXPECT_EQ(flags.count("avx2") == 1, features.avx2);
    EXPECT_EQ(flags.count("erms") == 1, features.fastStringMoves);
}

TEST(KernelChoice, WithoutFeaturesIsTheScalarSet) {
    const FrameCopyKernels set = frameCopyKernelsFor({});
    EXPECT_EQ(scalarFrameCopyKernels().block, set.block);
    EXPECT_EQ(scalarFrameCopyKernels().shifted, set.shifted);
    EXPECT_EQ(scalarFrameCopyKernels().mosaic, set.mosaic);
}

TEST(KernelChoice, TakesTheRowsOfTheWidestInstructionSet) {
    const FrameCopyKernels narrow = frameCopyKernelsFor({.ssse3 = true});
    EXPECT_EQ(&copyMosaicBy<ssse3Rows>, narrow.mosaic);
    EXPECT_EQ(&copyShiftedBy<ssse3Rows>, narrow.shifted);
    EXPECT_EQ(scalarFrameCopyKernels().block, narrow.block);
    const FrameCopyKernels wide = frameCopyKernelsFor({.ssse3 = true, .avx2 = true});
    EXPECT_EQ(&copyMosaicBy<avx2Rows>, wide.mosaic);
    EXPECT_EQ(&copyShiftedBy<avx2Rows>, wide.shifted);
    EXPECT_EQ(scalarFrameCopyKernels().block, wide.block);
}

TEST(KernelChoice, TellsTheRowsOfEachInstructionSetApart) {
    EXPECT_EQ(&mosaicRowsSsse3, ssse3Rows.mosaic);
    EXPECT_EQ(&shiftRowsSsse3, ssse3Rows.shift);
    EXPECT_EQ(16U, ssse3Rows.leastBytes);
    EXPECT_EQ(&mosaicRowsAvx2, avx2Rows.mosaic);
    EXPECT_EQ(&shiftRowsAvx2, avx2Rows.shift);
    EXPECT_EQ(32U, avx2Rows.leastBytes);
}

TEST(KernelChoice, OfTheBlockGoesByStringMovesAlone) {
    const FrameCopyKernels set = frameCopyKernelsFor({.fastStringMoves = true});
    EXPECT_NE(scalarFrameCopyKernels().block, set.block);
    EXPECT_EQ(scalarFrameCopyKernels().shifted, set.shifted);
    EXPECT_EQ(scalarFrameCopyKernels().mosaic, set.mosaic);
}

TEST(KernelChoice, OfTheProductIsThatForThisProcessor) {
    const FrameCopyKernels set = frameCopyKernelsFor(processorFeatures());
    EXPECT_EQ(set.block, frameCopyKernels().block);
    EXPECT_EQ(set.shifted, frameCopyKernels().shifted);
    EXPECT_EQ(set.mosaic, frameCopyKernels().mosaic);
    EXPECT_EQ(&frameCopyKernels(), &frameCopyKernels()) << "chosen once";
}

}  // namespace
