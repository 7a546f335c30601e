// SPDX-License-Identifier: MIT
// Frames of any size from sources of any length, by every set of kernels, against
// the meaning of each copy byte by byte.
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "acquisition/frame_copy.h"
#include "fuzz/input/fuzz_input.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t untouched = 0xEE;
// As raw pixels twice as much as the kernels look ahead.
constexpr std::size_t mostPixels = 1 << 11;

struct Frame {
    std::int32_t width;
    std::int32_t height;
    // Off the alignment of memory.
    std::size_t sourceOffset;
    std::size_t offset;
    Bytes source;

    std::size_t columns() const { return static_cast<std::size_t>(std::max(width, 0)); }
    std::size_t rows() const { return static_cast<std::size_t>(std::max(height, 0)); }
    // Nothing, where a byte lies outside the source.
    std::uint8_t at(std::size_t place, std::uint8_t otherwise) const {
        return place < source.size() ? source[place] : otherwise;
    }
};

// What each copy leaves in memory that was untouched before.
struct Copies {
    Bytes block;
    Bytes shifted;
    Bytes mosaic;
};

Bytes blockOf(const Frame& frame, std::size_t size) {
    Bytes copied(size, untouched);
    std::copy_n(frame.source.begin(), std::min(size, frame.source.size()), copied.begin());
    return copied;
}

// Moved by one row and one column.
Bytes shiftedOf(const Frame& frame) {
    const std::size_t columns = frame.columns();
    Bytes copied(columns * frame.rows(), untouched);
    for (std::size_t row = 0; row + 1 < frame.rows(); ++row) {
        for (std::size_t column = 0; column + 1 < columns; ++column) {
            const std::size_t place = row * columns + column;
            copied[place] = frame.at(place + columns + 1, untouched);
        }
    }
    return copied;
}

// Rows from below; of a pair of columns the even one first.
Bytes mosaicOf(const Frame& frame) {
    const std::size_t pairs = (frame.columns() + 1) / 2;
    Bytes copied(pairs * 2 * frame.rows(), untouched);
    std::size_t written = 0;
    for (std::size_t i = 0; i < copied.size(); i += 2) {
        const std::size_t row = frame.rows() - 1 - i / (pairs * 2);
        const std::size_t odd = row % 2;
        const std::size_t pixel = (row * frame.columns() + i % (pairs * 2)) * 4;
        if (pixel + odd < frame.source.size()) {
            const std::size_t next = pixel + 5 + odd;
            const bool follows = next < frame.columns() * frame.rows() * 4;
            copied[written] = frame.source[pixel + odd];
            copied[written + 1] = follows ? frame.at(next, 0) : 0;
            written += 2;
        }
    }
    return copied;
}

// Runs the copy into memory of exactly as many bytes, from memory of exactly the source's.
template <class Copy>
void check(const Frame& frame, const Bytes& expected, const char* claim, const Copy& copy) {
    const auto source = std::make_unique<std::uint8_t[]>(frame.sourceOffset + frame.source.size());
    std::copy(frame.source.begin(), frame.source.end(), source.get() + frame.sourceOffset);
    const std::size_t all = frame.offset + expected.size();
    const auto destination = std::make_unique<std::uint8_t[]>(all);
    std::fill_n(destination.get(), all, untouched);
    std::uint8_t* begin = destination.get() + frame.offset;
    copy(begin, std::span(source.get() + frame.sourceOffset, frame.source.size()));
    require(
        std::all_of(destination.get(), begin, [](std::uint8_t byte) { return byte == untouched; }),
        "nothing is written before the destination");
    require(std::equal(expected.begin(), expected.end(), begin), claim);
}

void checkCopies(const FrameCopyKernels& kernels, const Frame& frame, const Copies& expected) {
    check(frame, expected.block, "a block is copied as it is",
          [&](std::uint8_t* to, auto from) { kernels.block(to, from, expected.block.size()); });
    check(
        frame, expected.shifted, "a shifted frame moves by one row and one column",
        [&](std::uint8_t* to, auto from) { kernels.shifted(to, from, frame.width, frame.height); });
    check(
        frame, expected.mosaic, "a mosaic takes a byte of each pixel, and nothing behind",
        [&](std::uint8_t* to, auto from) { kernels.mosaic(to, from, frame.width, frame.height); });
}

// The set that needs just these features, where the processor has them.
void checkSetFor(const ProcessorFeatures& needs, const Frame& frame, const Copies& expected) {
    const ProcessorFeatures has = processorFeatures();
    if ((!needs.ssse3 || has.ssse3) && (!needs.avx2 || has.avx2)) {
        checkCopies(frameCopyKernelsFor(needs), frame, expected);
    }
}

// No more than fits, and now and then the lowest number.
std::int32_t takeLength(CFuzzInput& input, std::size_t most) {
    const auto length = input.take<std::int16_t>();
    if (length == std::numeric_limits<std::int16_t>::min()) {
        return std::numeric_limits<std::int32_t>::min();
    }
    const auto limit = static_cast<std::int32_t>(most);
    return length > limit ? length % limit : length;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CFuzzInput input(data, size);
    Frame frame{};
    frame.width = takeLength(input, mostPixels);
    frame.height = takeLength(input, mostPixels / std::max<std::size_t>(frame.columns(), 1));
    const auto offsets = input.take<std::uint8_t>();
    frame.offset = offsets % 65;
    frame.sourceOffset = offsets % 33;
    const auto length = input.take<std::uint16_t>();
    const std::string seed = input.takeRest();
    // As long as the input asks for, but no longer than the frame.
    const std::size_t most = frame.columns() * frame.rows() * 4;
    frame.source.resize(std::min<std::size_t>(most, length));
    for (std::size_t i = 0; i < frame.source.size(); ++i) {
        const auto varied = static_cast<std::uint8_t>(i * 151 + i / 256 * 29);
        frame.source[i] =
            seed.empty() ? varied : static_cast<std::uint8_t>(seed[i % seed.size()] + varied);
    }
    const std::size_t blockSize = std::min<std::size_t>(length, mostPixels);
    const Copies expected{blockOf(frame, blockSize), shiftedOf(frame), mosaicOf(frame)};
    // One of them is the set that this processor runs.
    checkSetFor({}, frame, expected);
    checkSetFor({.ssse3 = true}, frame, expected);
    checkSetFor({.ssse3 = true, .avx2 = true}, frame, expected);
    return 0;
}
