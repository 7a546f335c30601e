// SPDX-License-Identifier: MIT
#include "acquisition/kernels/processor.h"

#include <immintrin.h>
#if defined(_WIN32)
#include <intrin.h>
#else
#include <cpuid.h>

#include <cstring>
#endif

namespace {

struct Registers {
    std::uint32_t ebx = 0;
    std::uint32_t ecx = 0;
};

constexpr bool hasBit(std::uint64_t word, unsigned bit) noexcept {
    return ((word >> bit) & 1U) != 0;
}

constexpr unsigned systemSavesRegisters = 27;  // leaf 1, ecx

#if defined(_WIN32)
// Nothing, where the processor does not know the leaf.
Registers askProcessor(int leaf) noexcept {
    int words[4] = {};
    __cpuidex(words, 0, 0);
    if (words[0] < leaf) {
        return {};
    }
    __cpuidex(words, leaf, 0);
    return {static_cast<std::uint32_t>(words[1]), static_cast<std::uint32_t>(words[2])};
}
#else
Registers askProcessor(unsigned leaf) noexcept {
    unsigned eax = 0;
    unsigned edx = 0;
    Registers registers;
    __get_cpuid_count(leaf, 0, &eax, &registers.ebx, &registers.ecx, &edx);
    return registers;
}
#endif

}  // namespace

ProcessorFeatures featuresFrom(const ProcessorWords& words) noexcept {
    constexpr std::uint64_t vectorState = 0b110;  // the low and the high halves
    const bool savesVectors = hasBit(words.leaf1Ecx, systemSavesRegisters) &&
                              (words.savedRegisters & vectorState) == vectorState;
    constexpr unsigned ssse3 = 9;
    constexpr unsigned avx = 28;
    constexpr unsigned avx2 = 5;
    constexpr unsigned fastStringMoves = 9;
    return {.ssse3 = hasBit(words.leaf1Ecx, ssse3),
            .avx2 = savesVectors && hasBit(words.leaf1Ecx, avx) && hasBit(words.leaf7Ebx, avx2),
            .fastStringMoves = hasBit(words.leaf7Ebx, fastStringMoves)};
}

ProcessorFeatures processorFeatures() noexcept {
    ProcessorWords words;
    words.leaf1Ecx = askProcessor(1).ecx;
    words.leaf7Ebx = askProcessor(7).ebx;
    if (hasBit(words.leaf1Ecx, systemSavesRegisters)) {
        words.savedRegisters = static_cast<std::uint64_t>(_xgetbv(0));
    }
    return featuresFrom(words);
}

void moveString(std::uint8_t* destination, const std::uint8_t* source, std::size_t size) noexcept {
#if defined(_WIN32)
    __movsb(destination, source, size);
#else
    std::memcpy(destination, source, size);
#endif
}
