// SPDX-License-Identifier: MIT
// For the searches: to keep each block's call stack would cost more than the calls that are
// tried, and freed memory that waits for late uses should fit the processor's caches. A
// finding is run again with ASAN_OPTIONS=malloc_context_size=30.

// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer's name.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "malloc_context_size=1:quarantine_size_mb=32";
}
