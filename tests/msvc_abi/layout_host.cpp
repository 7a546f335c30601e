// SPDX-License-Identifier: MIT
// Compares the layouts at the capture library's border, as this ABI has them, with the
// approved ones. Usage: layout_host FILE; returns 0 when they are the same.
#include <cstdio>
#include <string>

#include "tests/unit/library_layout.h"

int main(int argc, char** argv) {
    std::FILE* file = argc == 2 ? std::fopen(argv[1], "rb") : nullptr;
    if (file == nullptr) {
        std::printf("usage: layout_host FILE\n");
        return 2;
    }
    std::string approved(10000, '\0');
    approved.resize(std::fread(approved.data(), 1, approved.size(), file));
    std::fclose(file);
    const std::string found = libraryLayout();
    if (found != approved) {
        std::printf("%s", found.c_str());
        return 1;
    }
    return 0;
}
