// SPDX-License-Identifier: MIT
// Frames through another camera library, from its fake camera to the host's memory:
// what bench/win32/frames_bench.cpp measures of the adapter.
#include <ctime>

#include <string>
#include <vector>

#include "bench/harness.h"
#include "bench/peers/frames_peer.h"
#include "bench/results.h"

namespace {

struct Size {
    std::int32_t width;
    std::int32_t height;
};

double threadSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void grab(bench::CResults& results, bench::CFramesPeer& camera, const Size& size, double seconds) {
    std::vector<std::uint8_t> picture(
        static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height), 1);
    camera.start();
    camera.grab(picture.data());
    const double begin = bench::now();
    const double processorBegin = threadSeconds();
    double frames = 0;
    while (bench::now() - begin < seconds) {
        camera.grab(picture.data());
        ++frames;
    }
    const double rate = frames / (bench::now() - begin);
    const double processor = (threadSeconds() - processorBegin) * 1e6 / frames;
    camera.stop();
    const std::string table = "Frames, one camera, Aravis";
    const std::string name = std::to_string(size.width) + "x" + std::to_string(size.height);
    results.addValue(table, name, "frames per second", rate, "1/s");
    results.addValue(table, name, "host thread", processor, "us a frame");
}

void run(const bench::Options& options) {
    bench::CResults results("aravis_frames", !options.smoke);
    const std::vector<Size> sizes =
        options.smoke ? std::vector<Size>{{160, 120}}
                      : std::vector<Size>{{640, 480}, {1280, 960}, {2592, 1944}, {4096, 3000}};
    for (const Size& size : sizes) {
        std::string whyNot;
        const auto camera = bench::makeAravisFrames(size.width, size.height, whyNot);
        if (!camera) {
            results.addAbsent("Aravis frames", whyNot);
            break;
        }
        grab(results, *camera, size, options.smoke ? 0.01 : 1.0);
    }
    results.finish(options.jsonFile);
}

}  // namespace

int main(int count, char** arguments) {
    return bench::runBenchmark("aravis_frames_bench", count, arguments, &run);
}
