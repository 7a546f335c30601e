// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "acquisition/kernels/vector_rows.h"

namespace {

// Far enough for memory to answer in time.
constexpr std::size_t bytesAhead = 4096;
constexpr std::size_t cacheLine = 64;

__m256i load(const std::uint8_t* from) noexcept {
    return _mm256_loadu_si256(static_cast<const __m256i*>(static_cast<const void*>(from)));
}

void store(std::uint8_t* to, __m256i bytes) noexcept {
    _mm256_storeu_si256(static_cast<__m256i*>(static_cast<void*>(to)), bytes);
}

// `lines` lines that come later than `offset`, or the last ones of `size` bytes.
template <std::size_t lines>
void prefetch(const std::uint8_t* base, std::size_t offset, std::size_t size) noexcept {
    const std::size_t ahead = offset + bytesAhead;
    const std::size_t last = size - lines * cacheLine;
    const void* first = base + (ahead < last ? ahead : last);
    for (std::size_t line = 0; line < lines; ++line) {
        _mm_prefetch(static_cast<const char*>(first) + line * cacheLine, _MM_HINT_T0);
    }
}

// Sixteen pairs to 32 bytes: of each pair the first byte and the sixth.
//
// Loaded two bytes early, the wanted bytes of a vector fall between those of its
// neighbour, so that one shuffle serves both; no load leaves its pairs, for any start.
__m256i mosaicOf16(const std::uint8_t* pairs) noexcept {
    const __m256i toEvenWords = _mm256_setr_epi8(                   //
        0, 5, 8, 13, -1, -1, -1, -1, 2, 7, 10, 15, -1, -1, -1, -1,  //
        0, 5, 8, 13, -1, -1, -1, -1, 2, 7, 10, 15, -1, -1, -1, -1);
    const __m256i toOddWords = _mm256_setr_epi8(                    //
        -1, -1, -1, -1, 0, 5, 8, 13, -1, -1, -1, -1, 2, 7, 10, 15,  //
        -1, -1, -1, -1, 0, 5, 8, 13, -1, -1, -1, -1, 2, 7, 10, 15);
    const __m256i inOrder = _mm256_setr_epi32(0, 4, 2, 6, 1, 5, 3, 7);
    constexpr int everySecondWord = 0xAA;
    const __m256i low = _mm256_blend_epi16(load(pairs), load(pairs + 30), everySecondWord);
    const __m256i high = _mm256_blend_epi16(load(pairs + 64), load(pairs + 94), everySecondWord);
    const __m256i bytes = _mm256_or_si256(_mm256_shuffle_epi8(low, toEvenWords),
                                          _mm256_shuffle_epi8(high, toOddWords));
    return _mm256_permutevar8x32_epi32(bytes, inOrder);
}

}  // namespace

void mosaicRowsAvx2(std::uint8_t* destination, const std::uint8_t* source, std::size_t width,
                    std::size_t pairs, std::size_t rows) noexcept {
    const std::size_t bytes = 2 * pairs;
    const std::size_t sourceBytes = 4 * (width * (rows - 1) + bytes);
    for (std::size_t row = 0; row < rows; ++row) {
        const std::size_t start = 4 * width * row;
        // One byte on, the channels of an odd row lie where those of an even row do.
        const std::uint8_t* pixels = source + start + (row & 1U);
        std::uint8_t* out = destination + bytes * (rows - 1 - row);
        std::size_t x = 0;
        for (; x + 64 <= bytes; x += 64) {
            prefetch<4>(source, start + 4 * x, sourceBytes);
            store(out + x, mosaicOf16(pixels + 4 * x));
            store(out + x + 32, mosaicOf16(pixels + 4 * x + 128));
        }
        if (x + 32 <= bytes) {
            store(out + x, mosaicOf16(pixels + 4 * x));
            x += 32;
        }
        if (x < bytes) {
            store(out + bytes - 32, mosaicOf16(pixels + 4 * (bytes - 32)));
        }
    }
}

void shiftRowsAvx2(std::uint8_t* destination, const std::uint8_t* source, std::size_t width,
                   std::size_t rows) noexcept {
    const std::size_t bytes = width - 1;
    const std::size_t sourceBytes = width * rows - 1;
    for (std::size_t row = 0; row < rows; ++row) {
        const std::uint8_t* from = source + width * row;
        std::uint8_t* to = destination + width * row;
        std::size_t x = 0;
        for (; x + 64 <= bytes; x += 64) {
            prefetch<1>(source, width * row + x, sourceBytes);
            const __m256i first = load(from + x);
            const __m256i second = load(from + x + 32);
            store(to + x, first);
            store(to + x + 32, second);
        }
        if (x + 32 <= bytes) {
            store(to + x, load(from + x));
            x += 32;
        }
        if (x < bytes) {
            store(to + bytes - 32, load(from + bytes - 32));
        }
    }
}
