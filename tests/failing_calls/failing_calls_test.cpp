// SPDX-License-Identifier: MIT
// A whole visit of a host, in which one call into the capture library fails: each in turn.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/failing_calls/ways_to_fail.h"
#include "tests/visits/visit_ground.h"
#include "virtual_cameras/control.h"

namespace {

using visits::CVisitGround;
using visits::Outcome;
using visits::RecordedCall;
using visits::VisitedCamera;

class FailingCalls : public ::testing::TestWithParam<VisitedCamera> {
protected:
    void SetUp() override { m_ground.expectAsReference(m_ground.reference()); }
    void TearDown() override { m_ground.tell("calls", m_calls, m_failed); }

    // Whether every way to fail is tried at every call, or one after the other at a few calls
    // of each operation.
    static bool isLongForm() { return std::getenv("VELMORA_LONG_VISITS") != nullptr; }

    bool isTried(const RecordedCall& call) const {
        constexpr std::uint32_t mostOfAnOperation = 2;
        const auto all =
            std::count_if(m_ground.calls().begin(), m_ground.calls().end(),
                          [&](const auto& each) { return each.operation == call.operation; });
        const std::uint32_t step = static_cast<std::uint32_t>(all) / mostOfAnOperation + 1;
        return isLongForm() || (call.nth - 1) % step == 0;
    }

    // From the call on, as often as `count` says (0: to the end).
    void failAndVisit(const RecordedCall& call, const WayToFail& way, std::uint32_t count) {
        SCOPED_TRACE(call.operation + ", call " + std::to_string(call.nth) + ": " + way.name);
        ++m_failed;
        const Outcome outcome = m_ground.visit([&] {
            virtualCamerasFailCall(call.operation.c_str(), call.nth, count, way.kind, failingCode,
                                   failingText);
        });
        m_ground.expectNothingLeft(outcome);
        EXPECT_TRUE(outcome.misuses == 0 || explainsMisuse(call.operation, outcome.misuse) ||
                    outcome.misuse == m_ground.reference().misuse)
            << outcome.misuse;
        EXPECT_TRUE(!outcome.gotForeignFrames ||
                    explainsForeignFrames(call.operation, way, count == 0));
        EXPECT_TRUE(outcome.locksAfterStop == 0 || explainsLocks(call.operation, count == 0))
            << outcome.locksAfterStop << " after a stop";
        expectThrown(outcome, way);
        m_ground.expectAsReference(m_ground.visit());
    }

    // Nothing leaves a call but what the library threw or failed with, the failures of a
    // clean visit, and what the camera itself throws, which a neighbour's search meets when
    // that could not be opened.
    void expectThrown(const Outcome& outcome, const WayToFail& way) {
        for (const std::string& what : outcome.thrown) {
            EXPECT_TRUE(m_ground.reference().thrown.contains(what) || what == way.thrown ||
                        what == GetParam().throws)
                << what;
        }
    }

    void failInTurn(const std::vector<RecordedCall>& calls, std::uint32_t count) {
        m_calls = calls.size();
        std::size_t turn = 0;
        for (const RecordedCall& call : calls) {
            if (!isTried(call)) {
                continue;
            }
            const std::vector<WayToFail> ways = waysToFail(call);
            for (std::size_t i = 0; i < ways.size() && !HasFailure(); ++i) {
                if (isLongForm() || i == turn % ways.size()) {
                    failAndVisit(call, ways[i], count);
                }
            }
            ++turn;
        }
    }

    std::vector<RecordedCall> firstCalls() const {
        std::vector<RecordedCall> calls = m_ground.calls();
        std::erase_if(calls, [](const RecordedCall& call) { return call.nth != 1; });
        return calls;
    }

    CVisitGround m_ground{GetParam()};
    std::uint64_t m_calls = 0;
    std::uint64_t m_failed = 0;
};

TEST_P(FailingCalls, LeaveNothingBehind) {
    failInTurn(m_ground.calls(), 1);
}

TEST_P(FailingCalls, LeaveNothingBehindWhereAnOperationNeverWorks) {
    failInTurn(firstCalls(), 0);
}

std::string nameOf(const ::testing::TestParamInfo<VisitedCamera>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Camera, FailingCalls, ::testing::ValuesIn(visits::visitedCameras()),
                         nameOf);

}  // namespace
