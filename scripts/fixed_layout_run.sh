#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs a program of the thread sanitizer, which some kernels' address space
# randomisation does not suit, without randomisation where that is permitted.
if setarch -R true 2>/dev/null; then
    exec setarch -R "$@"
fi
exec "$@"
