// SPDX-License-Identifier: MIT
// The fuzzer's input as the library and the host take it: bytes in their order, and for
// each call of the host the few calls of the library that do not answer as usual.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace any_library {

// How one call of the library answers.
enum class Manner : std::uint8_t {
    ordinary,
    refused,  // false, or a failing code
    empty,    // an empty list, text or handle, with success
    null,     // no list, text or handle at all, with success
    longer,   // more, longer or larger than there is
    strange,  // another value than before
    throwsText,
    throwsConstantText,
    throwsInteger,
    throwsStandard,
    delivers,  // a frame first, then as usual
    vanishes,  // the camera first goes or comes back
};

// Zero past the end of the input: zeros stand for what is usual.
class CAnswers {
public:
    void begin(std::span<const std::uint8_t> input);
    bool isEmpty() const noexcept { return m_rest.empty(); }
    std::uint8_t take() noexcept;

    // The manner of the next call; its detail is for the call's own use.
    Manner next() noexcept;
    std::uint8_t detail() const noexcept { return m_detail; }

private:
    friend class CDeviations;

    struct Deviation {
        std::uint8_t callsBefore;
        Manner manner;
        std::uint8_t detail;
    };
    struct Schedule {
        std::array<Deviation, 7> deviations{};
        std::size_t count = 0;
        std::size_t used = 0;
    };

    std::span<const std::uint8_t> m_rest;
    Schedule m_schedule;
    std::uint8_t m_detail = 0;
};

CAnswers& answers() noexcept;

// What deviates during one call of the host, taken from the input; calls inside calls
// have deviations of their own.
class CDeviations {
public:
    CDeviations();
    CDeviations(const CDeviations&) = delete;
    CDeviations& operator=(const CDeviations&) = delete;
    ~CDeviations();

private:
    CAnswers::Schedule m_outer;
};

}  // namespace any_library
