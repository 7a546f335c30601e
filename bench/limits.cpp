// SPDX-License-Identifier: MIT
#include "bench/limits.h"

#include <emmintrin.h>
#if defined(_WIN32)
#include <intrin.h>
#endif

namespace bench {

void trafficFloor(std::uint8_t* destination, const std::uint8_t* source, std::size_t size) {
    const auto load = [source](std::size_t at) {
        return _mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(source + at)));
    };
    for (std::size_t i = 0; i + 16 <= size; i += 16) {
        const __m128i low = _mm_or_si128(load(4 * i), load(4 * i + 16));
        const __m128i high = _mm_or_si128(load(4 * i + 32), load(4 * i + 48));
        _mm_storeu_si128(static_cast<__m128i*>(static_cast<void*>(destination + i)),
                         _mm_or_si128(low, high));
    }
}

void stringMove(std::uint8_t* destination, const std::uint8_t* source, std::size_t size) {
#if defined(_WIN32)
    __movsb(destination, source, size);
#else
    __asm__ volatile("rep movsb" : "+D"(destination), "+S"(source), "+c"(size) : : "memory");
#endif
}

}  // namespace bench
