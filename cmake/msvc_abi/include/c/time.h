// SPDX-License-Identifier: MIT
// Adds to Wine's <time.h>: the time of C11, which libc++'s threads mention.
#pragma once

#include_next <time.h>

struct timespec {
    time_t tv_sec;
    long tv_nsec;
};
