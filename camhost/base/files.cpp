// SPDX-License-Identifier: MIT
#include "camhost/base/files.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "camhost/base/failure.h"

namespace camhost {

namespace fs = std::filesystem;

namespace {

fs::path pathOf(const std::string& name) {
    return {std::u8string(name.begin(), name.end())};
}

// Empty, or why not all of it is in the file.
std::string writeWhole(const fs::path& path, std::span<const std::uint8_t> bytes) {
    errno = 0;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (file) {
        return {};
    }
    return errno != 0 ? std::generic_category().message(errno) : "it was not written whole";
}

// A name beside the file that nothing has yet; empty when there is none.
fs::path freeNameBeside(const fs::path& path) {
    constexpr int mostNames = 10;
    std::error_code error;
    for (int i = 0; i < mostNames; ++i) {
        fs::path beside = path;
        beside += i == 0 ? ".part" : ".part" + std::to_string(i);
        if (!fs::exists(fs::symlink_status(beside, error))) {
            return beside;
        }
    }
    return {};
}

std::string replaceWhole(const fs::path& path, std::span<const std::uint8_t> bytes) {
    const fs::path beside = freeNameBeside(path);
    if (beside.empty()) {
        return "files of its name with \".part\" to \".part9\" are in the way";
    }
    std::error_code error;
    std::string reason = writeWhole(beside, bytes);
    if (reason.empty()) {
        fs::rename(beside, path, error);
        reason = error ? error.message() : "";
    }
    if (!reason.empty()) {
        fs::remove(beside, error);
    }
    return reason;
}

}  // namespace

void writeFile(const std::string& name, std::span<const std::uint8_t> bytes) {
    const fs::path path = pathOf(name);
    std::error_code error;
    std::string reason;
    if (fs::is_regular_file(path, error) || !fs::exists(path, error)) {
        reason = replaceWhole(path, bytes);
    } else {
        // What is there and is no file, such as a device, is written as it is.
        reason = writeWhole(path, bytes);
    }
    if (!reason.empty()) {
        throw Failure{.exit = ExitCode::Refused,
                      .code = "file",
                      .message = "can not write \"" + name + "\": " + reason};
    }
}

bool isFile(const std::string& name) {
    std::error_code error;
    return fs::is_regular_file(pathOf(name), error);
}

void writeTextFile(const std::string& name, std::string_view text) {
    writeFile(name, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

std::string folderOf(const std::string& name) {
    return name.substr(0, name.size() - nameOf(name).size());
}

std::string nameOf(const std::string& name) {
    const auto last = name.find_last_of("\\/");
    return last == name.npos ? name : name.substr(last + 1);
}

std::vector<std::uint8_t> readFile(const std::string& name, std::size_t largest) {
    const auto refuse = [](const std::string& reason) {
        return Failure{.exit = ExitCode::Usage, .code = "file", .message = reason};
    };
    std::ifstream file(pathOf(name), std::ios::binary);
    if (!file) {
        throw refuse("can not read \"" + name + "\"");
    }
    constexpr std::size_t step = std::size_t{1} << 16U;
    std::vector<std::uint8_t> bytes;
    for (std::size_t got = step; got == step;) {
        const std::size_t start = bytes.size();
        bytes.resize(start + step);
        file.read(reinterpret_cast<char*>(bytes.data() + start), step);
        got = static_cast<std::size_t>(file.gcount());
        // Else what could not be read would pass for the end.
        if (file.bad()) {
            throw refuse("can not read \"" + name + "\"");
        }
        bytes.resize(start + got);
        if (bytes.size() > largest) {
            throw refuse("\"" + name + "\" is larger than " + std::to_string(largest) + " bytes");
        }
    }
    return bytes;
}

std::string readTextFile(const std::string& name) {
    const std::vector<std::uint8_t> bytes = readFile(name, longestTextFile);
    return {bytes.begin(), bytes.end()};
}

}  // namespace camhost
