// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "bench/limits.h"

void bench::trafficFloorAvx2(std::uint8_t* destination, const std::uint8_t* source,
                             std::size_t size) {
    const auto load = [source](std::size_t at) {
        return _mm256_loadu_si256(
            static_cast<const __m256i*>(static_cast<const void*>(source + at)));
    };
    for (std::size_t i = 0; i + 32 <= size; i += 32) {
        const __m256i low = _mm256_or_si256(load(4 * i), load(4 * i + 32));
        const __m256i high = _mm256_or_si256(load(4 * i + 64), load(4 * i + 96));
        _mm256_storeu_si256(static_cast<__m256i*>(static_cast<void*>(destination + i)),
                            _mm256_or_si256(low, high));
    }
}
