// SPDX-License-Identifier: MIT
// The copy kernels against the limits of the machine and against other people's.
#include "acquisition/frame_copy.h"

#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench/harness.h"
#include "bench/limits.h"
#include "bench/peers/mosaic_peer.h"
#include "bench/results.h"

namespace {

using bench::Candidate;
using bench::Series;

struct Size {
    std::int32_t width;
    std::int32_t height;

    std::size_t bytes() const {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
    // A row of an odd width ends in a whole pair of the mosaic, one byte past its width.
    std::size_t mosaicBytes() const {
        return static_cast<std::size_t>(width + width % 2) * static_cast<std::size_t>(height);
    }
    std::string text() const { return std::to_string(width) + "x" + std::to_string(height); }
};

// On a page of its own, and written: memory that nobody has written reads from one
// page of zeros.
class CFrame {
public:
    CFrame(std::size_t size, std::uint8_t seed)
        : m_bytes(static_cast<std::uint8_t*>(::operator new(size, page))) {
        for (std::size_t i = 0; i < size; ++i) {
            m_bytes[i] = static_cast<std::uint8_t>(i * 31 + i / 4096 + seed);
        }
    }
    CFrame(CFrame&& other) noexcept : m_bytes(std::exchange(other.m_bytes, nullptr)) {}
    CFrame& operator=(CFrame&&) = delete;
    ~CFrame() { ::operator delete(m_bytes, page); }

    std::uint8_t* data() const { return m_bytes; }

private:
    static constexpr std::align_val_t page{4096};
    std::uint8_t* m_bytes;
};

// The frames that a camera would fill in turn, and the host's one.
class CBuffers {
public:
    CBuffers(std::size_t ring, std::size_t sourceSize, std::size_t destinationSize)
        : m_destination(destinationSize, 7), m_sourceSize(sourceSize) {
        for (std::size_t i = 0; i < ring; ++i) {
            m_sources.emplace_back(sourceSize, static_cast<std::uint8_t>(i));
        }
    }
    std::size_t nextIndex() { return m_turn++ % m_sources.size(); }
    std::span<const std::uint8_t> next() { return {m_sources[nextIndex()].data(), m_sourceSize}; }
    std::uint8_t* destination() const { return m_destination.data(); }
    std::vector<std::uint8_t*> sources() const {
        std::vector<std::uint8_t*> all;
        for (const CFrame& frame : m_sources) {
            all.push_back(frame.data());
        }
        return all;
    }

private:
    std::vector<CFrame> m_sources;
    CFrame m_destination;
    std::size_t m_sourceSize;
    std::size_t m_turn = 0;
};

struct NamedSet {
    const char* name;
    FrameCopyKernels kernels;
};

// The product's first, then all that this processor runs.
std::vector<NamedSet> kernelSets() {
    const ProcessorFeatures has = processorFeatures();
    std::vector<NamedSet> sets = {{"product", frameCopyKernels()},
                                  {"scalar", scalarFrameCopyKernels()}};
    if (has.ssse3) {
        sets.push_back({"SSSE3", frameCopyKernelsFor({.ssse3 = true})});
    }
    if (has.avx2) {
        sets.push_back({"AVX2", frameCopyKernelsFor({.ssse3 = true, .avx2 = true})});
    }
    return sets;
}

// Fails where a set differs from the scalar one in a single byte of this frame.
void check(const char* what, const std::vector<NamedSet>& sets, std::size_t size,
           const std::function<void(const FrameCopyKernels&, std::uint8_t*)>& copy) {
    const CFrame expected(size, 1);
    copy(scalarFrameCopyKernels(), expected.data());
    for (const NamedSet& set : sets) {
        const CFrame copied(size, 1);
        copy(set.kernels, copied.data());
        if (std::memcmp(expected.data(), copied.data(), size) != 0) {
            throw std::runtime_error(std::string(what) + ": the set " + set.name +
                                     " copies other bytes");
        }
    }
}

class CFrameCopyBench {
public:
    explicit CFrameCopyBench(const bench::Options& options)
        : m_results("frame_copy", !options.smoke), m_effort(options.effort()) {
        std::string whyNot;
        m_libyuv = bench::makeLibyuvPeer(whyNot);
        if (!m_libyuv) {
            m_results.addAbsent(libyuvName, whyNot);
        }
        m_rgb2bayer = bench::makeRgb2bayerPeer(whyNot);
        if (!m_rgb2bayer) {
            m_results.addAbsent(rgb2bayerName, whyNot);
        }
    }

    void run(const Size& size, std::size_t ring) {
        const std::string name = size.text() + (ring == 1 ? " warm" : " ring");
        mosaic(size, ring, name);
        block("Mono8 copy", size.bytes(), ring, name);
        block("RGB24 copy", size.bytes() * 3, ring, name);
        shifted(size, ring, name);
    }
    void finish(const std::string& file) { m_results.finish(file); }

private:
    static constexpr const char* libyuvName = "libyuv ARGBExtractAlpha";
    static constexpr const char* rgb2bayerName = "GStreamer rgb2bayer";

    void mosaic(const Size& size, std::size_t ring, const std::string& name) {
        CBuffers buffers(ring, size.bytes() * 4, size.mosaicBytes());
        check("re-mosaic", m_sets, size.mosaicBytes(),
              [&](const FrameCopyKernels& set, std::uint8_t* to) {
                  set.mosaic(to, {buffers.sources().front(), size.bytes() * 4}, size.width,
                             size.height);
              });
        const bool wide = processorFeatures().avx2;
        const auto floor = wide ? &bench::trafficFloorAvx2 : &bench::trafficFloor;
        std::vector<Candidate> candidates = {{"traffic floor", [&buffers, floor, size] {
                                                  floor(buffers.destination(),
                                                        buffers.next().data(), size.bytes());
                                              }}};
        for (const NamedSet& set : m_sets) {
            candidates.push_back({set.name, [&buffers, &set, size] {
                                      set.kernels.mosaic(buffers.destination(), buffers.next(),
                                                         size.width, size.height);
                                  }});
        }
        std::vector<bench::Target> targets = {{"product", "traffic floor", 1.15}};
        addPeer({libyuvName, m_libyuv.get(), 1.10}, buffers, size, candidates, targets);
        addPeer({rgb2bayerName, m_rgb2bayer.get(), 0.33}, buffers, size, candidates, targets);
        m_results.addCase("Re-mosaic from RGB32", name, bench::measure(candidates, m_effort),
                          targets);
    }

    struct Peer {
        const char* name;
        bench::CMosaicPeer* peer;
        double limit;
    };

    static void addPeer(const Peer& peer, CBuffers& buffers, const Size& size,
                        std::vector<Candidate>& candidates, std::vector<bench::Target>& targets) {
        if (peer.peer == nullptr) {
            return;
        }
        peer.peer->prepare(buffers.sources(), buffers.destination(), size.width, size.height);
        candidates.push_back(
            {peer.name, [&buffers, run = peer.peer] { run->run(buffers.nextIndex()); }});
        targets.push_back({"product", peer.name, peer.limit});
    }

    void block(const char* table, std::size_t bytes, std::size_t ring, const std::string& name) {
        CBuffers buffers(ring, bytes, bytes);
        check(table, m_sets, bytes, [&](const FrameCopyKernels& set, std::uint8_t* to) {
            set.block(to, {buffers.sources().front(), bytes}, bytes);
        });
        const std::vector<Candidate> candidates = {
            {"memcpy", [&] { std::memcpy(buffers.destination(), buffers.next().data(), bytes); }},
            {"rep movsb",
             [&] { bench::stringMove(buffers.destination(), buffers.next().data(), bytes); }},
            {"product",
             [&] { frameCopyKernels().block(buffers.destination(), buffers.next(), bytes); }}};
        const std::vector<Series> series = bench::measure(candidates, m_effort);
        const bool movsIsBest = bench::pairedRatio(series[1], series[0]) < 1.0;
        m_results.addCase(table, name, series,
                          {{"product", movsIsBest ? "rep movsb" : "memcpy", 1.05,
                            "the better of memcpy and rep movsb"}});
    }

    void shifted(const Size& size, std::size_t ring, const std::string& name) {
        CBuffers buffers(ring, size.bytes(), size.bytes());
        check(
            "shift copy", m_sets, size.bytes(), [&](const FrameCopyKernels& set, std::uint8_t* to) {
                set.shifted(to, {buffers.sources().front(), size.bytes()}, size.width, size.height);
            });
        const std::size_t whole = size.bytes() - static_cast<std::size_t>(size.width);
        std::vector<Candidate> candidates = {
            {"one block",
             [&] { frameCopyKernels().block(buffers.destination(), buffers.next(), whole); }}};
        for (const NamedSet& set : m_sets) {
            candidates.push_back({set.name, [&buffers, &set, size] {
                                      set.kernels.shifted(buffers.destination(), buffers.next(),
                                                          size.width, size.height);
                                  }});
        }
        m_results.addCase("Raw8 shift copy", name, bench::measure(candidates, m_effort),
                          {{"product", "one block", 1.10}});
    }

    bench::CResults m_results;
    bench::Effort m_effort;
    const std::vector<NamedSet> m_sets = kernelSets();
    std::unique_ptr<bench::CMosaicPeer> m_libyuv;
    std::unique_ptr<bench::CMosaicPeer> m_rgb2bayer;
};

constexpr Size cameraSizes[] = {{640, 480}, {1280, 960}, {2592, 1944}, {4096, 3000}};
constexpr Size smokeSizes[] = {{160, 120}, {161, 121}};

void run(const bench::Options& options) {
    CFrameCopyBench bench(options);
    const std::span<const Size> sizes =
        options.smoke ? std::span<const Size>(smokeSizes) : cameraSizes;
    for (const Size& size : sizes) {
        bench.run(size, 1);
        bench.run(size, 5);
    }
    bench.finish(options.jsonFile);
}

}  // namespace

int main(int count, char** arguments) {
    return bench::runBenchmark("frame_copy_bench", count, arguments, &run);
}
