// SPDX-License-Identifier: MIT
#include "tests/soak/figures.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/soak/blocks.h"
#include "tests/support/sanitizers.h"
#include "tests/win32/win32_log.h"
#include "virtual_cameras/control.h"

namespace soak {

namespace {

struct Row {
    const char* name;
    std::int64_t Figures::*figure;
    std::int64_t tolerance;
};

// The sanitizers keep what was freed for a while.
#ifdef HAS_NEW_OF_A_SANITIZER
constexpr std::int64_t residentTolerance = 1024 * 1024;
#else
constexpr std::int64_t residentTolerance = 1024;
#endif

constexpr std::array<Row, 16> rows = {{
    {"resident kB", &Figures::residentKilobytes, residentTolerance},
    {"blocks", &Figures::blocks, 0},
    {"task blocks", &Figures::taskBlocks, 0},
    {"counted texts", &Figures::countedTexts, 0},
    {"events", &Figures::events, 0},
    {"searches", &Figures::searches, 0},
    {"files", &Figures::files, 0},
    {"threads", &Figures::threads, 0},
    {"grabbers", &Figures::grabbers, 0},
    {"open devices", &Figures::openDevices, 0},
    {"live devices", &Figures::liveDevices, 0},
    {"listeners", &Figures::listeners, 0},
    {"sinks", &Figures::sinks, 0},
    {"buffers", &Figures::buffers, 0},
    {"items", &Figures::items, 0},
    {"interfaces", &Figures::interfaces, 0},
}};

// A number of the process's own status, such as "VmRSS".
std::int64_t statusOf(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == name + ":") {
            std::int64_t number = 0;
            status >> number;
            return number;
        }
    }
    return 0;
}

std::int64_t openFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    // The search itself holds one.
    return std::distance(begin(files), end(files)) - 1;
}

}  // namespace

Figures takeFigures() {
    VirtualCamerasAlive alive{};
    virtualCamerasGetAlive(&alive);
    Figures figures{};
    figures.blocks = blocksAlive();
    figures.taskBlocks = win32::taskMemoryBlocks();
    figures.countedTexts = win32::bstrs();
    figures.events = win32::openEvents();
    figures.searches = win32::openSearches();
    figures.grabbers = alive.grabbers;
    figures.openDevices = alive.openDevices;
    figures.liveDevices = alive.liveDevices;
    figures.listeners = alive.listeners;
    figures.sinks = alive.sinks;
    figures.buffers = alive.buffers;
    figures.items = alive.items;
    figures.interfaces = alive.interfaces;
    figures.files = openFiles();
    figures.threads = statusOf("Threads");
    figures.residentKilobytes = statusOf("VmRSS");
    return figures;
}

std::string textOf(const Figures& figures) {
    std::string text;
    for (const Row& row : rows) {
        text += text.empty() ? "" : ", ";
        text += row.name + std::string(" ") + std::to_string(figures.*row.figure);
    }
    return text;
}

std::string growth(const Figures& before, const Figures& now) {
    std::string text;
    for (const Row& row : rows) {
        if (now.*row.figure > before.*row.figure + row.tolerance) {
            text += std::string(row.name) + " grew from " + std::to_string(before.*row.figure) +
                    " to " + std::to_string(now.*row.figure) + "\n";
        }
    }
    return text;
}

}  // namespace soak
