// SPDX-License-Identifier: MIT
// Takes the place of the adapter's silent trace, and keeps what it is called with.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct TraceCall {
    std::string file;
    std::string format;
    std::vector<std::string> texts;
    bool wide = false;  // the one argument was a wide text
    // How many calls of the subset and of the library stood before it.
    std::uint64_t win32Calls = 0;
    std::uint64_t libraryCalls = 0;
};

namespace trace_recorder {

// Since the last clear; of all threads.
std::vector<TraceCall> calls();
void clear();

}  // namespace trace_recorder
