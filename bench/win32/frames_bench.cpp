// SPDX-License-Identifier: MIT
// Frames through the adapter's file, from the virtual camera to the host's memory: how
// many a second, and what they cost the host's thread; one camera, and four at once.
#include <algorithm>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "acquisition/frame_copy.h"
#include "bench/adapter_host.h"
#include "bench/harness.h"
#include "bench/load_rig.h"
#include "bench/results.h"
#include "bench/win32/adapter_module.h"
#include "platform/windows.h"

namespace {

struct Size {
    std::int32_t width;
    std::int32_t height;

    std::string text() const { return std::to_string(width) + "x" + std::to_string(height); }
    std::size_t pixels() const {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
};

// Which copy a frame takes: by the camera's format and the host's pixel type.
struct Road {
    const char* name;
    const char* format;
    const char* pixelType;
    std::size_t sourceBytes;  // of a pixel
    std::size_t hostBytes;
};

constexpr Road roads[] = {
    {"Mono8", "Y800", "mono8", 1, 1},
    {"Raw8, shifted", "Y800", "raw8", 1, 1},
    {"Raw8 from RGB32", "RGB32", "raw8", 4, 1},
    {"RGB24", "RGB32", "rgb24", 3, 3},
};

// The same copy without a camera around it.
void bareCopy(const Road& road, const Size& size, std::uint8_t* to,
              std::span<const std::uint8_t> from) {
    const FrameCopyKernels& kernels = frameCopyKernels();
    if (road.sourceBytes == 4) {
        kernels.mosaic(to, from, size.width, size.height);
    } else if (std::string_view(road.name) == "Raw8, shifted") {
        kernels.shifted(to, from, size.width, size.height);
    } else {
        kernels.block(to, from, from.size());
    }
}

double threadSeconds() {
    FILETIME made;
    FILETIME ended;
    FILETIME kernel;
    FILETIME user;
    ::GetThreadTimes(::GetCurrentThread(), &made, &ended, &kernel, &user);
    const auto seconds = [](const FILETIME& time) {
        return (static_cast<double>(time.dwHighDateTime) * 4294967296.0 + time.dwLowDateTime) *
               1e-7;
    };
    return seconds(kernel) + seconds(user);
}

struct Found {
    double framesPerSecond = 0;
    double processorTime = 0;  // us a frame, on the host's thread
    std::vector<double> copyTimes;
    std::vector<double> bareTimes;
};

// Grabs for a while. With `bare` sources, every frame is followed by a copy of one of
// them: what the adapter's copy ought to take at that moment.
Found grab(bench::CCamera& camera, const Road& road, const Size& size, double seconds,
           const std::vector<std::vector<std::uint8_t>>& bare) {
    // One byte a row more than the frame: what an odd width may write.
    std::vector<std::uint8_t> picture(size.pixels() * road.hostBytes +
                                      static_cast<std::size_t>(size.height));
    Found found;
    camera.start();
    camera.wait();
    camera.copy(picture.data());
    const double begin = bench::now();
    const double processorBegin = threadSeconds();
    std::size_t frames = 0;
    while (bench::now() - begin < seconds) {
        camera.wait();
        const double woken = bench::now();
        camera.copy(picture.data());
        const double copied = bench::now();
        found.copyTimes.push_back((copied - woken) * 1e6);
        if (!bare.empty()) {
            bareCopy(road, size, picture.data(), bare[frames % bare.size()]);
            found.bareTimes.push_back((bench::now() - copied) * 1e6);
        }
        ++frames;
    }
    const auto count = static_cast<double>(frames);
    found.framesPerSecond = count / (bench::now() - begin);
    found.processorTime = (threadSeconds() - processorBegin) * 1e6 / count;
    camera.stop();
    return found;
}

void one(bench::CResults& results, bench::CCamera& camera, const Road& road, const Size& size,
         double seconds) {
    const std::string table = std::string("Frames, one camera, ") + road.name;
    const Found plain = grab(camera, road, size, seconds, {});
    results.addValue(table, size.text(), "frames per second", plain.framesPerSecond, "1/s");
    results.addValue(table, size.text(), "host thread", plain.processorTime, "us a frame");
    const std::vector<std::vector<std::uint8_t>> sources(
        5, std::vector<std::uint8_t>(size.pixels() * road.sourceBytes, 1));
    const Found beside = grab(camera, road, size, seconds, sources);
    results.addValue(table, size.text(), "CopyFrame", bench::median(beside.copyTimes), "us");
    results.addValue(table, size.text(), "bare copy", bench::median(beside.bareTimes), "us");
}

// Each on a thread of its own.
void four(bench::CResults& results, std::vector<bench::CCamera>& cameras, const Road& road,
          const Size& size, double seconds) {
    std::mutex mutex;
    double framesPerSecond = 0;
    std::vector<double> processorTimes;
    std::vector<double> copyTimes;
    std::vector<std::thread> threads;
    for (bench::CCamera& camera : cameras) {
        threads.emplace_back([&] {
            const Found found = grab(camera, road, size, seconds, {});
            const std::lock_guard lock(mutex);
            framesPerSecond += found.framesPerSecond;
            processorTimes.push_back(found.processorTime);
            copyTimes.push_back(bench::median(found.copyTimes));
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::string table = std::string("Frames, four cameras at once, ") + road.name;
    results.addValue(table, size.text(), "frames per second", framesPerSecond, "1/s");
    results.addValue(table, size.text(), "host thread", bench::median(processorTimes),
                     "us a frame");
    results.addValue(table, size.text(), "CopyFrame", bench::median(copyTimes), "us");
}

// The cameras of both formats in all sizes: four of each.
std::string rigOf(std::span<const Size> sizes) {
    std::string text;
    std::int32_t serial = 0xA000;
    for (const Size& size : sizes) {
        for (const char* format : {"Y800", "RGB32"}) {
            const bench::Rig rig = {.cameras = 4,
                                    .items = 1,
                                    .format = std::string(format) + " (" + size.text() + ")",
                                    .rate = 1000};
            const std::string next = rig.text(serial);
            text += text.empty() ? next : next.substr(next.find('\n') + 1);
            serial += 4;
        }
    }
    return text;
}

void run(const bench::Options& options) {
    constexpr Size cameraSizes[] = {{640, 480}, {1280, 960}, {2592, 1944}, {4096, 3000}};
    constexpr Size smokeSizes[] = {{160, 120}};
    const std::span<const Size> sizes =
        options.smoke ? std::span<const Size>(smokeSizes) : cameraSizes;
    const double seconds = options.smoke ? 0.01 : 1.0;
    bench::CResults results("frames", !options.smoke);
    bench::loadRig(rigOf(sizes));
    const bench::CAdapterModule adapter;
    std::vector<bench::CCamera> cameras = bench::openCameras(adapter.entry());
    for (const Road& road : roads) {
        const std::size_t colour = std::string_view(road.format) == "Y800" ? 0 : 4;
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            const auto first = cameras.begin() + static_cast<std::ptrdiff_t>(i * 8 + colour);
            std::vector<bench::CCamera> group(first, first + 4);
            for (bench::CCamera& camera : group) {
                camera.set("pixelformat", road.pixelType);
            }
            one(results, group.front(), road, sizes[i], seconds);
            four(results, group, road, sizes[i], seconds);
        }
    }
    for (bench::CCamera& camera : cameras) {
        camera.close();
    }
    results.finish(options.jsonFile);
}

}  // namespace

int main(int count, char** arguments) {
    return bench::runBenchmark("frames_bench", count, arguments, &run);
}
