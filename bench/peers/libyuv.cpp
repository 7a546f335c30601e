// SPDX-License-Identifier: MIT
// Loaded at run time: the library comes without headers where its package is installed.
#include <dlfcn.h>

#include <bit>
#include <cstddef>

#include "bench/peers/mosaic_peer.h"

namespace bench {

namespace {

using ExtractAlpha = int (*)(const std::uint8_t* source, int sourceStride,
                             std::uint8_t* destination, int destinationStride, int width,
                             int height);

class CLibyuvPeer : public CMosaicPeer {
public:
    explicit CLibyuvPeer(ExtractAlpha extractAlpha) : m_extractAlpha(extractAlpha) {}

    void prepare(const std::vector<std::uint8_t*>& sources, std::uint8_t* destination,
                 std::int32_t width, std::int32_t height) override {
        m_sources = sources;
        m_destination = destination;
        m_width = width;
        m_height = height;
    }
    void run(std::size_t source) override {
        m_extractAlpha(m_sources[source], m_width * 4, m_destination, m_width, m_width, m_height);
    }

private:
    ExtractAlpha m_extractAlpha;
    std::vector<std::uint8_t*> m_sources;
    std::uint8_t* m_destination = nullptr;
    std::int32_t m_width = 0;
    std::int32_t m_height = 0;
};

}  // namespace

std::unique_ptr<CMosaicPeer> makeLibyuvPeer(std::string& whyNot) {
    void* library = ::dlopen("libyuv.so.0", RTLD_NOW);
    if (library == nullptr) {
        whyNot = "libyuv.so.0 is not installed (package libyuv0)";
        return nullptr;
    }
    void* function = ::dlsym(library, "ARGBExtractAlpha");
    if (function == nullptr) {
        whyNot = "libyuv.so.0 has no ARGBExtractAlpha";
        return nullptr;
    }
    return std::make_unique<CLibyuvPeer>(std::bit_cast<ExtractAlpha>(function));
}

}  // namespace bench
