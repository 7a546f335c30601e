// SPDX-License-Identifier: MIT
// What the copy kernels ask of the processor. Its source is the only one that knows
// how a compiler spells these questions.
#pragma once

#include <cstddef>
#include <cstdint>

struct ProcessorFeatures {
    bool ssse3 = false;
    bool avx2 = false;
    // A string move of a large block is as fast as memory.
    bool fastStringMoves = false;
};

// The words in which a processor and its system describe themselves.
struct ProcessorWords {
    std::uint32_t leaf1Ecx = 0;
    std::uint32_t leaf7Ebx = 0;
    std::uint64_t savedRegisters = 0;  // by the system, at a switch of threads
};

// Registers that the system does not save count as missing.
ProcessorFeatures featuresFrom(const ProcessorWords& words) noexcept;

// Those of the processor that runs this.
ProcessorFeatures processorFeatures() noexcept;

// Copies with the processor's string move. Where the C library makes that choice by
// itself, this is its copy.
void moveString(std::uint8_t* destination, const std::uint8_t* source, std::size_t size) noexcept;
