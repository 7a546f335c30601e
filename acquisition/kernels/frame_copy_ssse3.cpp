// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "acquisition/kernels/vector_rows.h"

namespace {

// Far enough for memory to answer in time.
constexpr std::size_t bytesAhead = 4096;
constexpr std::size_t cacheLine = 64;

__m128i load(const std::uint8_t* from) noexcept {
    return _mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(from)));
}

void store(std::uint8_t* to, __m128i bytes) noexcept {
    _mm_storeu_si128(static_cast<__m128i*>(static_cast<void*>(to)), bytes);
}

// The line that comes later than `offset`, or the last one of `size` bytes.
void prefetch(const std::uint8_t* base, std::size_t offset, std::size_t size) noexcept {
    const std::size_t ahead = offset + bytesAhead;
    const std::size_t last = size - cacheLine;
    const void* line = base + (ahead < last ? ahead : last);
    _mm_prefetch(static_cast<const char*>(line), _MM_HINT_T0);
}

// Eight pairs to sixteen bytes: of each pair the first byte and the sixth. The last
// load lies two bytes early, so that it ends inside the last pair for any start.
__m128i mosaicOf8(const std::uint8_t* pairs) noexcept {
    const __m128i to0 = _mm_setr_epi8(0, 5, 8, 13, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1);
    const __m128i to4 = _mm_setr_epi8(-1, -1, -1, -1, 0, 5, 8, 13, -1, -1, -1, -1, -1, -1, -1, -1);
    const __m128i to8 = _mm_setr_epi8(-1, -1, -1, -1, -1, -1, -1, -1, 0, 5, 8, 13, -1, -1, -1, -1);
    const __m128i to12 =
        _mm_setr_epi8(-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 2, 7, 10, 15);
    const __m128i low =
        _mm_or_si128(_mm_shuffle_epi8(load(pairs), to0), _mm_shuffle_epi8(load(pairs + 16), to4));
    const __m128i high = _mm_or_si128(_mm_shuffle_epi8(load(pairs + 32), to8),
                                      _mm_shuffle_epi8(load(pairs + 46), to12));
    return _mm_or_si128(low, high);
}

}  // namespace

void mosaicRowsSsse3(std::uint8_t* destination, const std::uint8_t* source, std::size_t width,
                     std::size_t pairs, std::size_t rows) noexcept {
    const std::size_t bytes = 2 * pairs;
    const std::size_t sourceBytes = 4 * (width * (rows - 1) + bytes);
    for (std::size_t row = 0; row < rows; ++row) {
        const std::size_t start = 4 * width * row;
        // One byte on, the channels of an odd row lie where those of an even row do.
        const std::uint8_t* pixels = source + start + (row & 1U);
        std::uint8_t* out = destination + bytes * (rows - 1 - row);
        std::size_t x = 0;
        for (; x + 16 <= bytes; x += 16) {
            prefetch(source, start + 4 * x, sourceBytes);
            store(out + x, mosaicOf8(pixels + 4 * x));
        }
        if (x < bytes) {
            store(out + bytes - 16, mosaicOf8(pixels + 4 * (bytes - 16)));
        }
    }
}

void shiftRowsSsse3(std::uint8_t* destination, const std::uint8_t* source, std::size_t width,
                    std::size_t rows) noexcept {
    const std::size_t bytes = width - 1;
    const std::size_t sourceBytes = width * rows - 1;
    for (std::size_t row = 0; row < rows; ++row) {
        const std::uint8_t* from = source + width * row;
        std::uint8_t* to = destination + width * row;
        std::size_t x = 0;
        for (; x + 64 <= bytes; x += 64) {
            prefetch(source, width * row + x, sourceBytes);
            const __m128i first = load(from + x);
            const __m128i second = load(from + x + 16);
            const __m128i third = load(from + x + 32);
            const __m128i fourth = load(from + x + 48);
            store(to + x, first);
            store(to + x + 16, second);
            store(to + x + 32, third);
            store(to + x + 48, fourth);
        }
        for (; x + 16 <= bytes; x += 16) {
            store(to + x, load(from + x));
        }
        if (x < bytes) {
            store(to + bytes - 16, load(from + bytes - 16));
        }
    }
}
