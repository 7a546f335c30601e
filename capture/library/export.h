// SPDX-License-Identifier: MIT
// How a function of the capture library crosses the library's border.
//
// Users of the library see imports. Whoever implements the library defines
// CAPTURE_LIBRARY_IMPLEMENTATION for all of its sources, which turns every
// declaration into an export. Where nothing crosses a DLL border (the library
// linked into the program), define CAPTURE_LIBRARY_STATIC for everybody.
#pragma once

#if defined(CAPTURE_LIBRARY_STATIC)
#define CAPTURE_LIBRARY_API
#elif defined(CAPTURE_LIBRARY_IMPLEMENTATION)
#define CAPTURE_LIBRARY_API __declspec(dllexport)
#else
#define CAPTURE_LIBRARY_API __declspec(dllimport)
#endif
