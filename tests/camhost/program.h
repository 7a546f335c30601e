// SPDX-License-Identifier: MIT
// Runs camhost.exe as a user does: arguments in, exit code and both streams out.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace camhost::test {

struct Outcome {
    int exit = -1;
    std::string out;
    std::string err;
};

// Of the folder that holds the programs of this build.
std::filesystem::path programFolder();

// Arguments and streams are UTF-8.
Outcome runCamhost(const std::vector<std::string>& arguments);

// As a user at the keyboard: Ctrl-C once the program has printed this on its
// messages' stream.
Outcome interruptCamhost(const std::vector<std::string>& arguments, const std::string& sign);

// Calls `visit` once, on a thread of its own, with the output so far as soon as that holds
// this, while the program runs on.
Outcome visitCamhost(const std::vector<std::string>& arguments, const std::string& sign,
                     const std::function<void(const std::string& out)>& visit);

// A folder of the running test, in which camhost runs.
std::filesystem::path testFolder();

std::string readFile(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, const std::string& text);
std::string utf8(const std::filesystem::path& file);

}  // namespace camhost::test
