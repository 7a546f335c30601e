// SPDX-License-Identifier: MIT
// The answers that tests lay down, and the counters that they read.
#include <deque>
#include <map>
#include <mutex>

#include "tests/win32/call_log.h"
#include "tests/win32/win32_log.h"

namespace win32 {
namespace {

struct Answers {
    std::deque<std::int64_t> next;
    std::optional<std::int64_t> always;
};

struct InjectedState {
    std::mutex mutex;
    std::map<std::string, Answers, std::less<>> answers;
};

// Outlives every other static object, whichever asks last.
InjectedState& injectedState() {
    static InjectedState* const instance = new InjectedState;
    return *instance;
}

// Spares calls the lock, and with it an order among them, while no test has
// laid down anything.
constinit std::atomic<bool> anyInjected{false};

}  // namespace

void injectResults(std::string_view name, std::initializer_list<std::int64_t> results) {
    const std::lock_guard guard(injectedState().mutex);
    auto& next = injectedState().answers[std::string(name)].next;
    next.insert(next.end(), results.begin(), results.end());
    anyInjected.store(true, std::memory_order_relaxed);
}

void injectAlways(std::string_view name, std::int64_t result) {
    const std::lock_guard guard(injectedState().mutex);
    injectedState().answers[std::string(name)].always = result;
    anyInjected.store(true, std::memory_order_relaxed);
}

void clearInjected() {
    detail::resetInjected();
}

std::size_t unusedResults(std::string_view name) {
    const std::lock_guard guard(injectedState().mutex);
    const auto found = injectedState().answers.find(name);
    return found == injectedState().answers.end() ? 0 : found->second.next.size();
}

namespace detail {

Counter taskMemory;
Counter bstrTexts;
Counter events;
Counter searches;

std::optional<std::int64_t> injected(std::string_view name) {
    if (!anyInjected.load(std::memory_order_relaxed)) {
        return std::nullopt;
    }
    const std::lock_guard guard(injectedState().mutex);
    const auto found = injectedState().answers.find(name);
    if (found == injectedState().answers.end()) {
        return std::nullopt;
    }
    Answers& answers = found->second;
    if (answers.next.empty()) {
        return answers.always;
    }
    const std::int64_t result = answers.next.front();
    answers.next.pop_front();
    return result;
}

void resetInjected() {
    const std::lock_guard guard(injectedState().mutex);
    injectedState().answers.clear();
    anyInjected.store(false, std::memory_order_relaxed);
}

}  // namespace detail

std::int64_t taskMemoryBlocks() {
    return detail::taskMemory.value();
}
std::int64_t bstrs() {
    return detail::bstrTexts.value();
}
std::int64_t openEvents() {
    return detail::events.value();
}
std::int64_t openSearches() {
    return detail::searches.value();
}

}  // namespace win32
