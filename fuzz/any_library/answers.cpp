// SPDX-License-Identifier: MIT
#include "fuzz/any_library/answers.h"

namespace any_library {

namespace {

CAnswers theAnswers;

// Most of what an input can say is said by four bits; the other four are the detail.
constexpr std::array<Manner, 16> manners = {
    Manner::refused,       Manner::empty,          Manner::null,     Manner::longer,
    Manner::strange,       Manner::throwsText,     Manner::refused,  Manner::throwsConstantText,
    Manner::throwsInteger, Manner::throwsStandard, Manner::delivers, Manner::vanishes,
    Manner::strange,       Manner::delivers,       Manner::null,     Manner::longer,
};

}  // namespace

void CAnswers::begin(std::span<const std::uint8_t> input) {
    m_rest = input;
    m_schedule = {};
    m_detail = 0;
}

std::uint8_t CAnswers::take() noexcept {
    if (m_rest.empty()) {
        return 0;
    }
    const std::uint8_t byte = m_rest.front();
    m_rest = m_rest.subspan(1);
    return byte;
}

Manner CAnswers::next() noexcept {
    if (m_schedule.used == m_schedule.count) {
        return Manner::ordinary;
    }
    Deviation& deviation = m_schedule.deviations[m_schedule.used];
    if (deviation.callsBefore != 0) {
        --deviation.callsBefore;
        return Manner::ordinary;
    }
    ++m_schedule.used;
    m_detail = deviation.detail;
    return deviation.manner;
}

CAnswers& answers() noexcept {
    return theAnswers;
}

CDeviations::CDeviations() : m_outer(theAnswers.m_schedule) {
    auto& schedule = theAnswers.m_schedule;
    schedule = {};
    schedule.count = theAnswers.take() % (schedule.deviations.size() + 1);
    for (std::size_t i = 0; i < schedule.count; ++i) {
        const std::uint8_t callsBefore = theAnswers.take();
        const std::uint8_t how = theAnswers.take();
        schedule.deviations[i] = {callsBefore, manners[how % manners.size()],
                                  static_cast<std::uint8_t>(how / manners.size())};
    }
}

CDeviations::~CDeviations() {
    theAnswers.m_schedule = m_outer;
}

}  // namespace any_library
