// SPDX-License-Identifier: MIT
// Settings by text, as a host reads and writes them, and the listing of their names.
#include <string>
#include <vector>

#include "bench/adapter_host.h"
#include "bench/harness.h"
#include "bench/load_rig.h"
#include "bench/peers/settings_peer.h"
#include "bench/results.h"
#include "bench/win32/adapter_module.h"
#if defined(_WIN32)
#else
#include "platform/windows.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);
#endif

namespace {

using bench::Candidate;
using bench::CCamera;

constexpr const char* integerKey = "setting 5 value range";
constexpr const char* floatKey = "setting 5 value abs";
constexpr const char* switchKey = "setting 5 enable switch";

// Changes its value every time, so that no short cut of an unchanged one counts.
Candidate setting(const char* name, CCamera& camera, const char* key, const char* one,
                  const char* other) {
    return {name, [&camera, key, one, other, turn = false]() mutable {
                turn = !turn;
                camera.set(key, turn ? one : other);
            }};
}

Candidate getting(const char* name, CCamera& camera, const char* key) {
    return {name, [&camera, key] { camera.get(key); }};
}

void access(bench::CResults& results, const bench::Effort& effort, CCamera& camera,
            bench::CSettingsPeer* peer) {
    std::vector<Candidate> candidates = {
        getting("get integer", camera, integerKey),
        setting("set integer", camera, integerKey, "100", "101"),
        getting("get switch", camera, switchKey),
        setting("set switch", camera, switchKey, "true", "false"),
        getting("get float", camera, floatKey),
        setting("set float", camera, floatKey, "0.25", "0.5"),
    };
    std::vector<bench::Target> targets;
    if (peer != nullptr) {
        candidates.push_back({"Aravis get integer", [peer] { peer->getInteger(); }});
        candidates.push_back({"Aravis set integer", [peer] { peer->setInteger(); }});
        candidates.push_back({"Aravis get float", [peer] { peer->getFloat(); }});
        candidates.push_back({"Aravis set float", [peer] { peer->setFloat(); }});
        targets = {{"get integer", "Aravis get integer", 0.15},
                   {"set integer", "Aravis set integer", 0.15},
                   {"get float", "Aravis get float", 0.25},
                   {"set float", "Aravis set float", 0.25}};
    }
    const std::string keys = std::to_string(camera.countNames()) + " keys";
    results.addCase("Setting by text", keys, bench::measure(candidates, effort), targets);
}

// The whole list, by camera; beside it what a name costs.
void listing(bench::CResults& results, const bench::Effort& effort, std::vector<CCamera>& cameras) {
    std::vector<Candidate> candidates;
    std::vector<double> counts;
    for (CCamera& camera : cameras) {
        counts.push_back(camera.countNames());
        candidates.push_back(
            {std::to_string(camera.countNames()) + " keys", [&camera] { camera.countNames(); }});
    }
    const std::vector<bench::Series> series = bench::measure(candidates, effort);
    for (std::size_t i = 0; i < series.size(); ++i) {
        const double total = bench::median(series[i].microseconds);
        results.addValue("Listing all names", series[i].name, "whole list", total, "us");
        results.addValue("Listing all names", series[i].name, "per name", total / counts[i] * 1000,
                         "ns");
    }
}

void loadRig(const std::vector<std::int32_t>& items) {
    std::string rig;
    std::int32_t serial = 0xA000;
    for (const std::int32_t count : items) {
        const bench::Rig one = {.cameras = 1, .items = count};
        const std::string text = one.text(serial++);
        rig += rig.empty() ? text : text.substr(text.find('\n') + 1);
    }
    bench::loadRig(rig);
}

void run(const bench::Options& options) {
    bench::CResults results("settings", !options.smoke);
    std::string whyNot;
    const auto peer = bench::makeAravisSettings(whyNot);
    if (!peer) {
        results.addAbsent("Aravis settings", whyNot);
    }
    const std::vector<std::int32_t> items =
        options.smoke ? std::vector<std::int32_t>{13, 20} : std::vector<std::int32_t>{13, 133, 400};
    const double begin = bench::now();
    loadRig(items);
    // A start under virtual cameras has this in it.
    results.addValue("Virtual cameras", std::to_string(items.size()) + " cameras", "rig read",
                     (bench::now() - begin) * 1e3, "ms");
#if defined(_WIN32)
    bench::CAdapterModule adapter;
    std::vector<CCamera> cameras = bench::openCameras(adapter.entry());
#else
    // Natively no loader tells the adapter that it was loaded.
    DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr);
    std::vector<CCamera> cameras = bench::openCameras(&GetVideoChannel);
#endif
    for (CCamera& camera : cameras) {
        access(results, options.effort(), camera, peer.get());
    }
    listing(results, options.effort(), cameras);
    for (CCamera& camera : cameras) {
        camera.close();
    }
    results.finish(options.jsonFile);
}

}  // namespace

int main(int count, char** arguments) {
    return bench::runBenchmark("settings_bench", count, arguments, &run);
}
