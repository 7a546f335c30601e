// SPDX-License-Identifier: MIT
// From loading the adapter to the first frame in the host's memory, for more and more
// cameras and settings. Every round loads and unloads both libraries. Nobody listens to
// the adapter's debugger texts, as on most machines; since each then costs a walk through
// the system's handlers, the opening is also timed with a handler that ends that walk.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/adapter_host.h"
#include "bench/harness.h"
#include "bench/results.h"
#include "bench/win32/adapter_module.h"
#include "bench/win32/debugger_texts.h"

namespace {

std::uint64_t textsHeard = 0;

LONG CALLBACK hear(EXCEPTION_POINTERS* pointers) {
    if (!bench::isDebuggerText(*pointers->ExceptionRecord)) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    ++textsHeard;
    return EXCEPTION_CONTINUE_EXECUTION;
}

class CTextsHeard {
public:
    CTextsHeard() : m_handler(::AddVectoredExceptionHandler(1, &hear)) { textsHeard = 0; }
    CTextsHeard(const CTextsHeard&) = delete;
    CTextsHeard& operator=(const CTextsHeard&) = delete;
    ~CTextsHeard() { ::RemoveVectoredExceptionHandler(m_handler); }

private:
    void* m_handler;
};

struct Times {
    double load = 0;   // the adapter's file
    double open = 0;   // the capture library, its rig, and all channels
    double frame = 0;  // start of the first camera, one frame waited for and copied
    double keys = 0;
    std::uint64_t texts = 0;  // while opening, where they are heard
};

Times startOnce() {
    Times times;
    const double begin = bench::now();
    const bench::CAdapterModule adapter;
    const double loaded = bench::now();
    std::vector<bench::CCamera> cameras = bench::openCameras(adapter.entry());
    const double opened = bench::now();
    times.texts = textsHeard;
    bench::CCamera& first = cameras.front();
    std::vector<unsigned char> frame(64 * 64);
    first.start();
    first.wait();
    first.copy(frame.data());
    const double copied = bench::now();
    first.stop();
    times.keys = first.countNames();
    for (bench::CCamera& camera : cameras) {
        camera.close();
    }
    times.load = loaded - begin;
    times.open = opened - loaded;
    times.frame = copied - opened;
    return times;
}

void measure(bench::CResults& results, const bench::Rig& rig, const std::string& table,
             const std::string& name, std::size_t rounds) {
    const std::filesystem::path file = "start_up_bench.toml";
    std::ofstream(file) << rig.text();
    ::SetEnvironmentVariableW(L"VIRTUAL_CAMERAS_RIG", file.c_str());
    std::vector<double> load;
    std::vector<double> open;
    std::vector<double> frame;
    std::vector<double> all;
    double keys = 0;
    for (std::size_t round = 0; round < rounds; ++round) {
        const Times times = startOnce();
        load.push_back(times.load * 1e3);
        open.push_back(times.open * 1e3);
        frame.push_back(times.frame * 1e3);
        all.push_back((times.load + times.open + times.frame) * 1e3);
        keys = times.keys;
    }
    std::vector<double> heard;
    std::uint64_t texts = 0;
    for (std::size_t round = 0; round < rounds; ++round) {
        const CTextsHeard listening;
        const Times times = startOnce();
        heard.push_back(times.open * 1e3);
        texts = times.texts;
    }
    std::filesystem::remove(file);
    results.addValue(table, name, "keys of a camera", keys, "");
    results.addValue(table, name, "load", bench::median(load), "ms");
    results.addValue(table, name, "open all", bench::median(open), "ms");
    results.addValue(table, name, "first frame", bench::median(frame), "ms");
    results.addValue(table, name, "together", bench::median(all), "ms");
    results.addValue(table, name, "debugger texts while opening", static_cast<double>(texts), "");
    results.addValue(table, name, "open all, texts heard", bench::median(heard), "ms");
}

void run(const bench::Options& options) {
    bench::CResults results("start_up", !options.smoke);
    ::SetEnvironmentVariableW(L"VIRTUAL_CAMERAS_CLOCK", L"fast");
    const std::size_t rounds = options.smoke ? 1 : 9;
    for (const std::int32_t cameras : options.smoke ? std::vector<std::int32_t>{1, 2}
                                                    : std::vector<std::int32_t>{1, 4, 16, 64}) {
        measure(results, {.cameras = cameras, .items = 13}, "Start-up by cameras",
                std::to_string(cameras), rounds);
    }
    for (const std::int32_t items :
         options.smoke ? std::vector<std::int32_t>{2} : std::vector<std::int32_t>{13, 133, 400}) {
        measure(results, {.cameras = 1, .items = items}, "Start-up by settings",
                std::to_string(items * 3) + " keys", rounds);
    }
    results.finish(options.jsonFile);
}

}  // namespace

int main(int count, char** arguments) {
    return bench::runBenchmark("start_up_bench", count, arguments, &run);
}
