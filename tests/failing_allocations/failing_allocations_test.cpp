// SPDX-License-Identifier: MIT
// A whole visit of a host, in which one allocation fails: each in turn, of every kind that
// the adapter makes.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "tests/failing_allocations/failing_new.h"
#include "tests/visits/visit_ground.h"
#include "tests/win32/win32_log.h"

namespace {

using visits::CVisitGround;
using visits::Outcome;
using visits::VisitedCamera;

class FailingAllocations : public ::testing::TestWithParam<VisitedCamera> {
protected:
    // Every allocation, or one in a few.
    static std::uint64_t step(std::uint64_t count) {
        constexpr std::uint64_t visitsOfShortForm = 40;
        return std::getenv("VELMORA_LONG_VISITS") != nullptr ? 1 : count / visitsOfShortForm + 1;
    }

    void expectSound(const Outcome& outcome) {
        ++m_failed;
        m_ground.expectNothingLeft(outcome);
        EXPECT_TRUE(outcome.misuses == 0 || outcome.misuse == m_ground.reference().misuse)
            << outcome.misuse;
        EXPECT_FALSE(outcome.gotForeignFrames);
        EXPECT_EQ(outcome.locksAfterStop, 0);
        m_ground.expectAsReference(m_ground.visit());
    }

    // As long as the system function's nth call is made at all.
    void failEachOf(const char* function) {
        std::uint64_t count = 0;
        const auto failingAt = [&](std::uint64_t nth) {
            SCOPED_TRACE(std::string(function) + ", the " + std::to_string(nth) + ". call");
            std::size_t unused = 0;
            const Outcome outcome = m_ground.visit(
                [&] {
                    for (std::uint64_t i = 1; i < nth; ++i) {
                        win32::injectResults(function, {1});
                    }
                    win32::injectResults(function, {0});
                },
                [&] { unused = win32::unusedResults(function); });
            count = nth - unused;
            if (unused == 0) {
                expectSound(outcome);
            }
            return unused == 0;
        };
        constexpr std::uint64_t tooMany = 100'000;
        EXPECT_FALSE(failingAt(tooMany));
        const std::uint64_t all = count;
        for (std::uint64_t nth = 1; nth <= all; nth += step(all)) {
            failingAt(nth);
        }
        m_ground.tell("allocations", all, m_failed);
    }

    CVisitGround m_ground{GetParam()};
    std::uint64_t m_failed = 0;
};

TEST_P(FailingAllocations, OfNewLeaveNothingBehind) {
    std::uint64_t all = 0;
    m_ground.visit([] { failing_new::failAt(0); }, [&] { all = failing_new::stop(); });
    EXPECT_GT(all, 0U);
    for (std::uint64_t nth = 1; nth <= all; nth += step(all)) {
        SCOPED_TRACE("allocation " + std::to_string(nth));
        expectSound(
            m_ground.visit([nth] { failing_new::failAt(nth); }, [] { failing_new::stop(); }));
    }
    m_ground.tell("allocations", all, m_failed);
}

TEST_P(FailingAllocations, OfTaskMemoryLeaveNothingBehind) {
    failEachOf("CoTaskMemAlloc");
}

TEST_P(FailingAllocations, OfCountedTextsLeaveNothingBehind) {
    failEachOf("SysAllocString");
}

std::string nameOf(const ::testing::TestParamInfo<VisitedCamera>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Camera, FailingAllocations, ::testing::ValuesIn(visits::visitedCameras()),
                         nameOf);

}  // namespace
