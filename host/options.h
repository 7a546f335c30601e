// SPDX-License-Identifier: MIT
// What a command line asks for, after it was read (command_line.cpp). Portable.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace camhost {

struct GrabOptions {
    std::uint64_t frames = 1;
    std::string output;
    std::string format;  // empty: by the output's name, else png
    std::string pixelFormat;
    std::vector<std::string> assignments;  // made before the first frame
    std::string bayer = "auto";
    std::string demosaic = "none";
    std::uint64_t skip = 0;
    double timeout = 5.0;
    std::string onLoss = "10";
};

struct Options {
    std::string command;

    std::string adapter;
    std::string camera;
    std::string rig;
    std::string clock;
    bool json = false;
    bool quiet = false;
    int verbose = 0;
    bool dialogs = false;

    std::vector<std::string> arguments;  // keys, assignments, commands, parameters
    std::string pattern;
    std::string file;
    bool choices = false;
    bool all = false;
    bool plain = false;
    bool manual = false;
    bool strict = false;
    bool raw = false;
    bool dryRun = false;
    bool probe = false;
    GrabOptions grab;
};

}  // namespace camhost
