// SPDX-License-Identifier: MIT
// How this build lays out what crosses the capture library's border by value or as a
// virtual table.
#pragma once

#include <string>

// One line per type: "smart_ptr: 16 bytes, object 0, block 8" and the like; the virtual
// functions of an interface in the order of its table. The same in every build.
std::string libraryLayout();
