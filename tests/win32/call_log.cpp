// SPDX-License-Identifier: MIT
// The ordered log of calls. Writers take a place with a relaxed ticket and
// publish it for readers only, so that they never order each other.
#include "tests/win32/call_log.h"

#include <semaphore.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <map>
#include <mutex>
#include <utility>

#include "tests/win32/win32_log.h"

namespace win32 {
namespace {

constexpr std::uint64_t capacity = 65536;
constexpr std::size_t inlineBytes = 200;

struct Entry {
    std::atomic<bool> published;
    const char* name;
    std::uint32_t threadId;
    std::uint32_t size;
    char* longText;
    std::array<char, inlineBytes> text;
};

// Zero before any code of the program runs, and never destroyed.
constinit std::array<Entry, capacity> entries{};
constinit std::atomic<std::uint64_t> taken{0};

// Posted once per call: a release by the writer, an acquire by whoever waits.
sem_t& posted() {
    static sem_t* const semaphore = [] {
        static sem_t storage;
        sem_init(&storage, 0, 0);
        return &storage;
    }();
    return *semaphore;
}

std::uint64_t stored() {
    return std::min(taken.load(std::memory_order_acquire), capacity);
}

// Null while the writer of that place has not finished.
const Entry* published(std::uint64_t sequence) {
    const Entry& entry = entries.at(sequence);
    return entry.published.load(std::memory_order_acquire) ? &entry : nullptr;
}

Call callOf(std::uint64_t sequence, const Entry& entry) {
    const char* text = entry.longText != nullptr ? entry.longText : entry.text.data();
    return {sequence, entry.name, std::string(text, entry.size), entry.threadId};
}

// Work that tests have put inside calls.
struct InsideCalls {
    std::mutex mutex;
    std::map<std::string, std::function<void()>, std::less<>> work;
};

constinit std::atomic<bool> anyInside{false};

// Outlives every other static object, whichever asks last.
InsideCalls& inside() {
    static InsideCalls* const instance = new InsideCalls;
    return *instance;
}

void runWorkInside(const char* name) {
    std::function<void()> work;
    {
        const std::lock_guard guard(inside().mutex);
        const auto found = inside().work.find(name);
        if (found == inside().work.end()) {
            return;
        }
        work = found->second;
    }
    work();
}

void endInside() {
    const std::lock_guard guard(inside().mutex);
    inside().work.clear();
    anyInside.store(false);
}

// Waits for another post, at most until the deadline and at most 10 ms, since
// another waiter may have taken the post that was meant for this one.
void awaitPost(std::chrono::steady_clock::time_point deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::nanoseconds>(
        deadline - std::chrono::steady_clock::now());
    const std::int64_t step = std::clamp<std::int64_t>(left.count(), 0, 10'000'000);
    std::timespec until{};
    std::timespec_get(&until, TIME_UTC);
    const std::int64_t nanoseconds = until.tv_nsec + step;
    until.tv_sec += nanoseconds / 1'000'000'000;
    until.tv_nsec = nanoseconds % 1'000'000'000;
    sem_timedwait(&posted(), &until);
}

void writeEntry(const char* name, std::string_view arguments) {
    const std::uint64_t place = taken.fetch_add(1, std::memory_order_relaxed);
    if (place >= capacity) {
        return;
    }
    Entry& entry = entries.at(place);
    entry.name = name;
    entry.threadId = GetCurrentThreadId();
    entry.size = static_cast<std::uint32_t>(arguments.size());
    char* text = entry.text.data();
    if (arguments.size() > inlineBytes) {
        entry.longText = static_cast<char*>(std::malloc(arguments.size()));
        if (entry.longText == nullptr) {
            std::abort();
        }
        text = entry.longText;
    }
    if (!arguments.empty()) {
        std::memcpy(text, arguments.data(), arguments.size());
    }
    entry.published.store(true, std::memory_order_release);
    sem_post(&posted());
}

}  // namespace

void detail::record(const char* name, std::string_view arguments) {
    writeEntry(name, arguments);
    if (anyInside.load(std::memory_order_relaxed)) {
        runWorkInside(name);
    }
}

void runInside(std::string_view name, std::function<void()> work) {
    const std::lock_guard guard(inside().mutex);
    if (work) {
        inside().work[std::string(name)] = std::move(work);
    } else {
        inside().work.erase(std::string(name));
    }
    anyInside.store(!inside().work.empty());
}

bool isInsideCall() noexcept {
    return detail::CInside::isInside();
}

void reset() {
    const std::uint64_t count = stored();
    for (std::uint64_t i = 0; i < count; ++i) {
        Entry& entry = entries.at(i);
        std::free(entry.longText);
        entry.longText = nullptr;
        entry.published.store(false, std::memory_order_relaxed);
    }
    taken.store(0, std::memory_order_release);
    endInside();
    detail::resetInjected();
    detail::resetModules();
    detail::resetMessageBoxes();
}

std::vector<Call> calls() {
    std::vector<Call> result;
    const std::uint64_t count = stored();
    for (std::uint64_t i = 0; i < count; ++i) {
        if (const Entry* entry = published(i); entry != nullptr) {
            result.push_back(callOf(i, *entry));
        }
    }
    return result;
}

std::vector<Call> callsOf(std::string_view name) {
    std::vector<Call> result = calls();
    std::erase_if(result, [name](const Call& call) { return call.name != name; });
    return result;
}

std::uint64_t callCount() {
    return stored();
}

std::uint64_t lostCalls() {
    return taken.load(std::memory_order_acquire) - stored();
}

bool waitForCall(std::string_view name, std::uint64_t from, std::chrono::milliseconds deadline,
                 std::uint64_t* sequence) {
    const auto until = std::chrono::steady_clock::now() + deadline;
    for (;;) {
        const bool last = std::chrono::steady_clock::now() >= until;
        const std::uint64_t count = stored();
        for (std::uint64_t i = from; i < count; ++i) {
            const Entry* entry = published(i);
            if (entry != nullptr && name == entry->name) {
                if (sequence != nullptr) {
                    *sequence = i;
                }
                return true;
            }
        }
        if (last) {
            return false;
        }
        awaitPost(until);
    }
}

std::vector<std::string> debuggerTexts() {
    std::vector<std::string> result;
    for (Call& call : callsOf("OutputDebugStringW")) {
        result.push_back(std::move(call.arguments));
    }
    return result;
}

}  // namespace win32
