#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: soak.sh [--frames N] [--losses N] [--every N] [--seed N]
# Builds the soak program natively and runs it: ten million frames and a million losses of
# a camera by default. Fails when anything that the process holds grows.
set -euo pipefail
cd "$(dirname "$0")/.."

mkdir -p build
if ! { cmake --preset native && cmake --build --preset native --target soak; } >build/soak.log 2>&1; then
    tail -n 50 build/soak.log >&2
    exit 1
fi
exec build/native/bin/soak "$@"
