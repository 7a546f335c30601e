// SPDX-License-Identifier: MIT
// Frames of any size from sources of any length, by every set of kernels, against
// the meaning of each copy byte by byte.
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "acquisition/frame_copy.h"
#include "fuzz/fuzz_input.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t untouched = 0xEE;
constexpr std::size_t mostPixels = 1 << 14;

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

// Runs the copy into memory of exactly `size` bytes, with the same bytes each time.
template <class Copy>
Bytes result(const Frame& frame, std::size_t size, const Copy& copy) {
    const auto source = std::make_unique<std::uint8_t[]>(frame.sourceOffset + frame.source.size());
    std::copy(frame.source.begin(), frame.source.end(), source.get() + frame.sourceOffset);
    const std::size_t all = frame.offset + size;
    const auto destination = std::make_unique<std::uint8_t[]>(all);
    std::fill_n(destination.get(), all, untouched);
    copy(destination.get() + frame.offset,
         std::span(source.get() + frame.sourceOffset, frame.source.size()));
    require(std::all_of(destination.get(), destination.get() + frame.offset,
                        [](std::uint8_t byte) { return byte == untouched; }),
            "nothing is written before the destination");
    return Bytes(destination.get() + frame.offset, destination.get() + all);
}

void checkBlock(const FrameCopyKernels& kernels, const Frame& frame, std::size_t size) {
    const Bytes copied =
        result(frame, size, [&](std::uint8_t* to, auto from) { kernels.block(to, from, size); });
    for (std::size_t i = 0; i < size; ++i) {
        require(copied[i] == frame.at(i, untouched), "a block is copied as it is");
    }
}

void checkShifted(const FrameCopyKernels& kernels, const Frame& frame) {
    const std::size_t columns = frame.columns();
    const Bytes copied = result(frame, columns * frame.rows(), [&](std::uint8_t* to, auto from) {
        kernels.shifted(to, from, frame.width, frame.height);
    });
    for (std::size_t i = 0; i < copied.size(); ++i) {
        const bool isLast = i % columns == columns - 1 || i / columns == frame.rows() - 1;
        require(copied[i] == (isLast ? untouched : frame.at(i + columns + 1, untouched)),
                "a shifted frame moves by one row and one column");
    }
}

void checkMosaic(const FrameCopyKernels& kernels, const Frame& frame) {
    const std::size_t pairs = (frame.columns() + 1) / 2;
    const std::size_t size = pairs * 2 * frame.rows();
    const Bytes copied = result(frame, size, [&](std::uint8_t* to, auto from) {
        kernels.mosaic(to, from, frame.width, frame.height);
    });
    std::size_t written = 0;
    for (std::size_t i = 0; i < size; i += 2) {
        const std::size_t row = frame.rows() - 1 - i / (pairs * 2);
        const std::size_t odd = row % 2;
        const std::size_t pixel = (row * frame.columns() + i % (pairs * 2)) * 4;
        if (pixel + odd < frame.source.size()) {
            require(copied[written] == frame.source[pixel + odd], "an even column of the mosaic");
            const std::size_t next = pixel + 5 + odd;
            const bool follows = next < frame.columns() * frame.rows() * 4;
            require(copied[written + 1] == (follows ? frame.at(next, 0) : 0),
                    "an odd column of it");
            written += 2;
        }
    }
    require(std::all_of(copied.begin() + static_cast<std::ptrdiff_t>(written), copied.end(),
                        [](std::uint8_t byte) { return byte == untouched; }),
            "nothing is written behind the last pair of the mosaic");
}

void checkCopies(const FrameCopyKernels& kernels, const Frame& frame, std::size_t blockSize) {
    checkBlock(kernels, frame, blockSize);
    checkShifted(kernels, frame);
    checkMosaic(kernels, frame);
}

// The set that needs just these features, where the processor has them.
void checkSetFor(const ProcessorFeatures& needs, const Frame& frame, std::size_t blockSize) {
    const ProcessorFeatures has = processorFeatures();
    if ((!needs.ssse3 || has.ssse3) && (!needs.avx2 || has.avx2)) {
        checkCopies(frameCopyKernelsFor(needs), frame, blockSize);
    }
}

// Mostly small, and now and then at a limit.
std::int32_t takeLength(CFuzzInput& input) {
    const auto length = input.take<std::int16_t>();
    if (length == std::numeric_limits<std::int16_t>::min()) {
        return std::numeric_limits<std::int32_t>::min();
    }
    return length;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CFuzzInput input(data, size);
    Frame frame{};
    frame.width = takeLength(input);
    frame.height = takeLength(input);
    const auto offsets = input.take<std::uint8_t>();
    frame.offset = offsets % 65;
    frame.sourceOffset = offsets % 33;
    const auto length = input.take<std::uint16_t>();
    const std::string seed = input.takeRest();
    if (frame.columns() * frame.rows() > mostPixels) {
        return 0;
    }
    // As long as the input asks for, but no longer than the frame.
    const std::size_t most = frame.columns() * frame.rows() * 4;
    frame.source.resize(std::min<std::size_t>(most, length));
    for (std::size_t i = 0; i < frame.source.size(); ++i) {
        const auto varied = static_cast<std::uint8_t>(i * 151 + i / 256 * 29);
        frame.source[i] =
            seed.empty() ? varied : static_cast<std::uint8_t>(seed[i % seed.size()] + varied);
    }
    const std::size_t blockSize = std::min<std::size_t>(length, mostPixels);
    checkSetFor({}, frame, blockSize);
    checkSetFor({.ssse3 = true}, frame, blockSize);
    checkSetFor({.ssse3 = true, .avx2 = true}, frame, blockSize);
    checkCopies(frameCopyKernels(), frame, blockSize);
    return 0;
}
