// SPDX-License-Identifier: MIT
// Replaces what std::thread of libc++ 14 has compiled: threads, and one value per thread.
#include <process.h>

#include <chrono>
#include <memory>
#include <thread>

#include <windows.h>

namespace {

struct ThreadStart {
    void* (*function)(void*);
    void* argument;
};

unsigned __stdcall runThread(void* memory) {
    const std::unique_ptr<ThreadStart> start(static_cast<ThreadStart*>(memory));
    start->function(start->argument);
    return 0;
}

}  // namespace

namespace std {
inline namespace __1 {

bool __libcpp_thread_isnull(const __libcpp_thread_t* thread) {
    return *thread == nullptr;
}

int __libcpp_thread_create(__libcpp_thread_t* thread, void* (*function)(void*), void* argument) {
    auto start = std::make_unique<ThreadStart>(ThreadStart{function, argument});
    const auto handle = ::_beginthreadex(nullptr, 0, &runThread, start.get(), 0, nullptr);
    if (handle == 0) {
        return errno;
    }
    start.release();
    *thread = reinterpret_cast<void*>(handle);
    return 0;
}

int __libcpp_tls_create(__libcpp_tls_key* key, void (*atExit)(void*)) {
    const DWORD index = ::FlsAlloc(atExit);
    *key = static_cast<__libcpp_tls_key>(index);
    return index == FLS_OUT_OF_INDEXES ? EAGAIN : 0;
}

int __libcpp_tls_set(__libcpp_tls_key key, void* value) {
    return ::FlsSetValue(static_cast<DWORD>(key), value) ? 0 : EINVAL;
}

thread::~thread() {
    if (joinable()) {
        terminate();
    }
}

void thread::join() {
    ::WaitForSingleObject(__t_, INFINITE);
    detach();
}

void thread::detach() {
    ::CloseHandle(__t_);
    __t_ = nullptr;
}

// What std::notify_all_at_thread_exit would keep here: nobody calls it.
__thread_struct::__thread_struct() : __p_(nullptr) {}
__thread_struct::~__thread_struct() {}

__thread_specific_ptr<__thread_struct>& __thread_local_data() {
    static __thread_specific_ptr<__thread_struct> data;
    return data;
}

namespace chrono {

steady_clock::time_point steady_clock::now() noexcept {
    LARGE_INTEGER frequency;
    LARGE_INTEGER ticks;
    ::QueryPerformanceFrequency(&frequency);
    ::QueryPerformanceCounter(&ticks);
    const auto whole = ticks.QuadPart / frequency.QuadPart;
    const auto rest = ticks.QuadPart % frequency.QuadPart;
    return time_point(seconds(whole) + nanoseconds(rest * 1'000'000'000 / frequency.QuadPart));
}

}  // namespace chrono
}  // namespace __1
}  // namespace std
