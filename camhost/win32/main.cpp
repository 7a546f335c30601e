// SPDX-License-Identifier: MIT
// The program: wide arguments as UTF-8 in, exit code out.
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <iostream>

#include "camhost/application/application.h"
#include "camhost/win32/wide_text.h"
#include "camhost/win32/windows_system.h"

namespace {

std::vector<std::string> programArguments() {
    int count = 0;
    LPWSTR* wide = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) {
        arguments.push_back(camhost::toUtf8(wide[i]));
    }
    LocalFree(wide);
    return arguments;
}

}  // namespace

int main() {
    SetConsoleOutputCP(CP_UTF8);
    // Lines end alike everywhere.
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    camhost::CWindowsSystem system;
    return camhost::runApplication(programArguments(), system, std::cout, std::cerr);
}
