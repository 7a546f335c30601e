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

}  // namespace

void writeFile(const std::string& name, std::span<const std::uint8_t> bytes) {
    const fs::path path = pathOf(name);
    std::error_code error;
    // What is there and is no file, such as a device, is written as it is.
    const bool isReplaced = fs::is_regular_file(path, error) || !fs::exists(path, error);
    const fs::path written = isReplaced ? fs::path(path).concat(".part") : path;
    std::string reason = writeWhole(written, bytes);
    if (reason.empty() && isReplaced) {
        fs::rename(written, path, error);
        reason = error ? error.message() : "";
    }
    if (!reason.empty()) {
        if (isReplaced) {
            fs::remove(written, error);
        }
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

std::string readTextFile(const std::string& name) {
    std::ifstream file(pathOf(name), std::ios::binary);
    if (!file) {
        throw Failure{
            .exit = ExitCode::Usage, .code = "file", .message = "can not read \"" + name + "\""};
    }
    std::string text(longestTextFile + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    if (text.size() > longestTextFile) {
        throw Failure{.exit = ExitCode::Usage,
                      .code = "file",
                      .message = "\"" + name + "\" is larger than " +
                                 std::to_string(longestTextFile) + " bytes"};
    }
    return text;
}

}  // namespace camhost
