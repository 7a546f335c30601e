// SPDX-License-Identifier: MIT
// From the delivery thread's signal to the host's thread, against two threads that
// hand over nothing but an event. The adapter announces every frame to the debugger:
// an exception handler of ours hears that, and takes the time.
#include <intrin.h>

#include <atomic>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "acquisition/frame_copy.h"
#include "bench/adapter_host.h"
#include "bench/harness.h"
#include "bench/load_rig.h"
#include "bench/results.h"
#include "bench/win32/adapter_module.h"
#include "bench/win32/debugger_texts.h"
#include "platform/windows.h"

namespace {

std::atomic<std::uint64_t> arrived = 0;
std::atomic<std::uint64_t> taken = 0;

LONG CALLBACK hear(EXCEPTION_POINTERS* pointers) {
    const std::uint64_t time = __rdtsc();
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (!bench::isDebuggerText(record)) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    // "FrameReady:\n", then "FrameReady: ok\n" where somebody waits; their lengths tell
    // them apart, terminator included.
    constexpr ULONG_PTR arrivedLength = 13;
    if (record.ExceptionInformation[0] == arrivedLength) {
        arrived = time;
    } else {
        taken = time;
    }
    return EXCEPTION_CONTINUE_EXECUTION;
}

double ticksPerMicrosecond() {
    const double start = bench::now();
    const std::uint64_t ticks = __rdtsc();
    ::Sleep(100);
    return static_cast<double>(__rdtsc() - ticks) / ((bench::now() - start) * 1e6);
}

// The pause between two frames, in which both threads sleep.
constexpr DWORD pauseMilliseconds = 4;

// What is handed over is nothing but the event.
class CBarePair {
public:
    CBarePair()
        : m_event(::CreateEventW(nullptr, TRUE, FALSE, nullptr)), m_thread([this] { signal(); }) {}
    CBarePair(const CBarePair&) = delete;
    CBarePair& operator=(const CBarePair&) = delete;
    ~CBarePair() {
        m_ends = true;
        m_thread.join();
        ::CloseHandle(m_event);
    }
    std::uint64_t wait() {
        ::WaitForSingleObject(m_event, 1000);
        // A wait for a frame returns with the event reset as well, which is a call to
        // Wine's server.
        ::ResetEvent(m_event);
        return __rdtsc() - taken;
    }

private:
    // Announced in the same way, so that the time is taken at the same place.
    void signal() {
        while (!m_ends) {
            ::Sleep(pauseMilliseconds);
            ::OutputDebugStringW(L"FrameReady: ok\n");
            ::SetEvent(m_event);
        }
    }

    std::atomic<bool> m_ends = false;
    HANDLE m_event;
    std::thread m_thread;
};

struct FrameTicks {
    std::vector<double> announced;  // from the first text to the second
    std::vector<double> woken;      // from the second to the end of the wait
    std::vector<double> copied;     // CopyFrame
};

constexpr std::size_t frameBytesOf64 = 64 * 64;

FrameTicks grab(bench::CCamera& camera, std::size_t frames) {
    FrameTicks ticks;
    std::vector<unsigned char> picture(frameBytesOf64);
    camera.start();
    for (std::size_t i = 0; i < frames; ++i) {
        camera.wait();
        const std::uint64_t woken = __rdtsc();
        ticks.announced.push_back(static_cast<double>(taken - arrived));
        ticks.woken.push_back(static_cast<double>(woken - taken));
        camera.copy(picture.data());
        ticks.copied.push_back(static_cast<double>(__rdtsc() - woken));
    }
    camera.stop();
    return ticks;
}

double bareWake(std::size_t frames) {
    CBarePair pair;
    std::vector<double> ticks;
    for (std::size_t i = 0; i < frames; ++i) {
        ticks.push_back(static_cast<double>(pair.wait()));
    }
    return bench::median(ticks);
}

void textCosts(bench::CResults& results, const bench::Effort& effort) {
    const bench::Candidate text = {"text", [] { ::OutputDebugStringW(L"FrameReady:\n"); }};
    const auto cost = [&] { return bench::median(bench::measure({text}, effort)[0].microseconds); };
    results.addValue("Parts of a hand-over", "one debugger text, nobody listening", "median",
                     cost(), "us");
    void* handler = ::AddVectoredExceptionHandler(1, &hear);
    results.addValue("Parts of a hand-over", "one debugger text, heard by the benchmark", "median",
                     cost(), "us");
    ::RemoveVectoredExceptionHandler(handler);
    std::vector<std::uint8_t> from(frameBytesOf64, 1);
    std::vector<std::uint8_t> to(frameBytesOf64, 2);
    const bench::Candidate copy = {"copy",
                                   [&] { frameCopyKernels().block(to.data(), from, from.size()); }};
    results.addValue("Parts of a hand-over", "copy of 64x64 bytes", "median",
                     bench::median(bench::measure({copy}, effort)[0].microseconds), "us");
}

void run(const bench::Options& options) {
    bench::CResults results("hand_over", !options.smoke);
    const bench::Rig rig = {.cameras = 1, .items = 1, .format = "Y800 (64x64)", .rate = 250};
    bench::loadRig(rig.text());
    textCosts(results, options.effort());
    const bench::CAdapterModule adapter;
    bench::CCamera camera = bench::openCameras(adapter.entry()).front();
    void* handler = ::AddVectoredExceptionHandler(1, &hear);
    const double perMicrosecond = ticksPerMicrosecond();
    bench::Series bare = {"bare event pair", {}};
    bench::Series woken = {"adapter, wait to woken", {}};
    std::vector<double> announced;
    std::vector<double> copied;
    const std::size_t frames = options.smoke ? 3 : 100;
    for (std::size_t round = 0; round < (options.smoke ? 1U : 15U); ++round) {
        bare.microseconds.push_back(bareWake(frames) / perMicrosecond);
        const FrameTicks ticks = grab(camera, frames);
        woken.microseconds.push_back(bench::median(ticks.woken) / perMicrosecond);
        announced.push_back(bench::median(ticks.announced) / perMicrosecond);
        copied.push_back(bench::median(ticks.copied) / perMicrosecond);
    }
    ::RemoveVectoredExceptionHandler(handler);
    results.addCase("Hand-over", "64x64, 250 frames a second", {bare, woken},
                    {{"adapter, wait to woken", "bare event pair", 1.10}});
    results.addValue("Parts of a hand-over", "frame arrived to frame taken, one heard text within",
                     "median", bench::median(announced), "us");
    results.addValue("Parts of a hand-over", "CopyFrame of 64x64 bytes", "median",
                     bench::median(copied), "us");
    camera.close();
    results.finish(options.jsonFile);
}

}  // namespace

int main(int count, char** arguments) {
    return bench::runBenchmark("hand_over_bench", count, arguments, &run);
}
