// SPDX-License-Identifier: MIT
// What has to stay flat.
#pragma once

#include <cstdint>
#include <string>

namespace soak {

struct Figures {
    std::int64_t residentKilobytes;
    std::int64_t blocks;      // of new
    std::int64_t taskBlocks;  // of COM's task memory
    std::int64_t countedTexts;
    std::int64_t events;
    std::int64_t searches;
    std::int64_t files;  // open descriptors of the process
    std::int64_t threads;
    // Of the capture library.
    std::int64_t grabbers;
    std::int64_t openDevices;
    std::int64_t liveDevices;
    std::int64_t listeners;
    std::int64_t sinks;
    std::int64_t buffers;
    std::int64_t items;
    std::int64_t interfaces;
};

Figures takeFigures();
std::string textOf(const Figures& figures);

// What has grown since `before`, as a text; empty when nothing has. The resident memory
// may grow by what the system's allocator rounds up.
std::string growth(const Figures& before, const Figures& now);

}  // namespace soak
