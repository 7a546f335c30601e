// SPDX-License-Identifier: MIT
// Usage: soak [--frames N] [--losses N] [--every N] [--seed N]
// Cameras are started, lost, found again, set to anything and stopped, for as many frames
// and losses as are asked for; every N frames what the process holds is counted, and must
// be no more than the first time.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/windows.h"
#include "tests/soak/camera_host.h"
#include "tests/soak/figures.h"
#include "tests/win32/win32_log.h"
#include "virtual_cameras/control.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

namespace {

struct Plan {
    std::uint64_t frames = 10'000'000;
    std::uint64_t losses = 1'000'000;
    std::uint64_t every = 500'000;
    std::uint64_t seed = 1;
};

// Small frames: what is counted is cycles, not pixels.
constexpr const char* rig = R"rig(
[[camera]]
name = "Grey"
serial = "1A"
formats = ["Y800 (16x8)", "Y800 (9x5)"]
framerates = [60.0, 30.0]
scene = "counter"
[[camera.item]]
name = "Exposure"
Value.range = { min = 1, max = 10000, value = 333 }
Value.abs = { min = 0.0001, max = 30.0, value = 0.04 }
Value.switch = true
Auto.switch = true
[[camera.item]]
name = "Brightness"
Value.range = { min = 0, max = 255, value = 16 }
[[camera.item]]
name = "Trigger"
Enable.switch = false
Polarity.switch = false
Mode.strings = { choices = ["Edge", "Level"], value = "Edge" }

[[camera]]
name = "Colour"
serial = "2B"
formats = ["RGB24 (16x8)", "RGB24 (7x5)", "Y800 (16x8)"]
framerates = [60.0, 30.0]
scene = "counter"
[[camera.item]]
name = "Gain"
Value.range = { min = 0, max = 100, value = 1 }
Auto.switch = false
"One Push".button = true

[[camera]]
name = "Inputs"
serial = "3C"
formats = ["Y800 (12x4)"]
channels = ["A", "B"]
scene = "counter"
)rig";

Plan planOf(const std::vector<std::string_view>& arguments) {
    Plan plan;
    const std::vector<std::pair<std::string_view, std::uint64_t*>> options = {
        {"--frames", &plan.frames},
        {"--losses", &plan.losses},
        {"--every", &plan.every},
        {"--seed", &plan.seed}};
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        bool isKnown = false;
        for (const auto& [name, number] : options) {
            if (name == arguments[i] && i + 1 < arguments.size()) {
                *number = std::strtoull(std::string(arguments[i + 1]).c_str(), nullptr, 10);
                isKnown = *number != 0;
            }
        }
        soak::require(isKnown, "usage: soak [--frames N] [--losses N] [--every N] [--seed N]",
                      std::string(arguments[i]));
    }
    return plan;
}

class CSoak {
public:
    explicit CSoak(const Plan& plan)
        : m_plan(plan), m_random(plan.seed), m_begin(std::chrono::steady_clock::now()) {
        char message[512] = {};
        soak::require(virtualCamerasLoadRig(rig, message, sizeof(message)) == 0,
                      "the rig can be loaded", message);
        for (std::int32_t index = 0; index < 3; ++index) {
            m_cameras.push_back(std::make_unique<soak::CCameraHost>(index));
        }
    }

    void run() {
        // What is made once, at first use, is there after these; the Win32 log is full,
        // and takes no further memory.
        while (win32::lostCalls() == 0) {
            ::OutputDebugStringW(L"");
        }
        for (int i = 0; i < 200; ++i) {
            round();
        }
        checkpoint();
        m_counts = {};
        std::uint64_t next = m_plan.every;
        while (m_counts.frames < m_plan.frames || m_counts.losses < m_plan.losses) {
            round();
            if (m_counts.frames >= next) {
                next += m_plan.every;
                checkpoint();
            }
        }
        checkpoint();
    }

private:
    // One start and stop of one camera, with frames, losses and settings between.
    void round() {
        soak::CCameraHost& camera = *m_cameras[m_random() % m_cameras.size()];
        for (std::uint64_t settings = m_random() % 3; settings > 0; --settings) {
            camera.setAnything(m_counts, m_random);
        }
        camera.start();
        const bool loses = m_counts.losses < m_plan.losses;
        for (int part = 0; part < 2; ++part) {
            takeFrames(camera);
            if (loses && m_random() % 2 == 0) {
                camera.setAnything(m_counts, m_random);
            }
            if (loses) {
                // Now and then a storm.
                const bool isStorm = m_random() % 8 == 0;
                camera.loseAndRestore(m_counts, isStorm ? 5 : 1);
            }
        }
        // Some stop with a frame that was never copied.
        camera.stop();
    }

    void takeFrames(soak::CCameraHost& camera) {
        const std::uint64_t left = m_plan.frames - std::min(m_plan.frames, m_counts.frames);
        const std::uint64_t most = left == 0 ? 0 : 2 * m_plan.frames / m_plan.losses;
        for (std::uint64_t frames = most == 0 ? 0 : m_random() % (most + 1); frames > 0; --frames) {
            camera.takeFrame(m_counts);
        }
    }

    void checkpoint() {
        for (const auto& camera : m_cameras) {
            camera->setBack();
        }
        char misuse[256] = {};
        soak::require(virtualCamerasMisuses(misuse, sizeof(misuse)) == 0,
                      "the library's rules are kept", misuse);
        const soak::Figures now = soak::takeFigures();
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - m_begin;
        std::printf("%.1f s: frames %llu, losses %llu, settings %llu (%llu refused)\n    %s\n",
                    seconds.count(), static_cast<unsigned long long>(m_counts.frames),
                    static_cast<unsigned long long>(m_counts.losses),
                    static_cast<unsigned long long>(m_counts.settings),
                    static_cast<unsigned long long>(m_counts.refusals), soak::textOf(now).c_str());
        std::fflush(stdout);
        if (!m_hasBaseline) {
            m_baseline = now;
            m_hasBaseline = true;
        }
        const std::string grown = soak::growth(m_baseline, now);
        soak::require(grown.empty(), "nothing grows", grown);
    }

    Plan m_plan;
    std::mt19937_64 m_random;
    std::chrono::steady_clock::time_point m_begin;
    std::vector<std::unique_ptr<soak::CCameraHost>> m_cameras;
    soak::Counts m_counts;
    soak::Figures m_baseline{};
    bool m_hasBaseline = false;
};

}  // namespace

int main(int argc, char** argv) {
    const Plan plan = planOf({argv + 1, argv + argc});
    std::printf("seed %llu, %llu frames, %llu losses\n", static_cast<unsigned long long>(plan.seed),
                static_cast<unsigned long long>(plan.frames),
                static_cast<unsigned long long>(plan.losses));
    virtualCamerasReset();
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_STEPPED);
    win32::reset();
    DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr);
    CSoak(plan).run();
    return 0;
}
