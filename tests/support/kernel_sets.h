// SPDX-License-Identifier: MIT
// Every set of copy kernels, by the features that it takes.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "acquisition/kernels/frame_copy_kernels.h"

struct KernelSet {
    const char* name;
    ProcessorFeatures needs;

    bool runsHere() const {
        const ProcessorFeatures has = processorFeatures();
        return (!needs.ssse3 || has.ssse3) && (!needs.avx2 || has.avx2) &&
               (!needs.fastStringMoves || has.fastStringMoves);
    }
};

// A new set of kernels takes one line here and is then held to all tests of copies.
inline std::vector<KernelSet> kernelSets() {
    return {{"Scalar", {}},
            {"Ssse3", {.ssse3 = true}},
            {"Avx2", {.ssse3 = true, .avx2 = true}},
            {"StringMoves", {.fastStringMoves = true}},
            {"Best", processorFeatures()}};
}

inline std::string nameOfKernelSet(const testing::TestParamInfo<KernelSet>& set) {
    return set.param.name;
}

// Runs a test on one set, or reports it as skipped where the processor cannot. A test
// that called no kernel of the set it is for has shown nothing, and fails.
class KernelSetTest : public testing::TestWithParam<KernelSet> {
protected:
    void SetUp() override {
        if (!GetParam().runsHere()) {
            GTEST_SKIP() << "this processor has no " << GetParam().name;
        }
    }
    void TearDown() override {
        EXPECT_TRUE(IsSkipped() || m_calls > 0) << GetParam().name << " never ran";
    }
    const FrameCopyKernels& kernels() {
        ++m_calls;
        return m_kernels;
    }

private:
    const FrameCopyKernels m_kernels = frameCopyKernelsFor(GetParam().needs);
    int m_calls = 0;
};
