// SPDX-License-Identifier: MIT
#include "camhost/base/files.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "camhost/base/failure.h"

namespace camhost {

namespace {

std::filesystem::path pathOf(const std::string& name) {
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

}  // namespace

void writeFile(const std::string& name, std::span<const std::uint8_t> bytes) {
    std::ofstream file(pathOf(name), std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
        throw Failure{
            .exit = ExitCode::Refused, .code = "file", .message = "can not write \"" + name + "\""};
    }
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
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

}  // namespace camhost
