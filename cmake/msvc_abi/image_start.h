// SPDX-License-Identifier: MIT
// Start and end of one image, a DLL or a program.
#pragma once

// Runs the initialisers that the compiler has collected: false when one fails.
bool startImage();
// Runs what was registered with atexit, last first.
void endImage();
