#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: build.sh PRESET [TARGET...]
# Configures and builds a preset, all of it or these targets, and says nothing: the output
# goes to build/PRESET.log, and its end to the terminal where something fails.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
shift
targets=()
if [ $# -gt 0 ]; then
    targets=(--target "$@")
fi
log=build/$preset.log
mkdir -p build
if ! { cmake --preset "$preset" && cmake --build --preset "$preset" "${targets[@]}"; } >"$log" 2>&1; then
    tail -n 100 "$log" >&2
    echo "build.sh: the build '$preset' failed; all of its output is in $log" >&2
    exit 1
fi
