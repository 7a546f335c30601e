// SPDX-License-Identifier: MIT
// Runs a fuzzer's target once for every file of the folders and files that the
// arguments name: the kept corpus as a plain test, in builds without libFuzzer.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& path) {
    std::vector<std::filesystem::path> files;
    if (!std::filesystem::is_directory(path)) {
        files.push_back(path);
        return files;
    }
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool replay(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "cannot read %s\n", path.string().c_str());
        return false;
    }
    const std::string content((std::istreambuf_iterator<char>(file)),
                              std::istreambuf_iterator<char>());
    const std::vector<std::uint8_t> bytes(content.begin(), content.end());
    std::printf("%s: %zu bytes\n", path.filename().string().c_str(), bytes.size());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    int replayed = 0;
    try {
        for (int i = 1; i < argc; ++i) {
            for (const auto& path : filesOf(argv[i])) {
                if (!replay(path)) {
                    return 1;
                }
                ++replayed;
            }
        }
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    // A corpus that went missing must not look like a success.
    if (replayed == 0) {
        std::fprintf(stderr, "nothing to replay\n");
        return 1;
    }
    return 0;
}
