#!/bin/bash
# SPDX-License-Identifier: MIT
# Set-up, the Windows build, and a tour with camhost on the built-in cameras: what
# there is, settings read and changed, and a PNG of each camera in each pixel type.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh demo

echo "== Building the adapter, the virtual cameras and camhost for Windows"
mkdir -p build
log=build/demo_build.log
if ! { cmake --preset windows &&
    cmake --build --preset windows --target velmora_adapter virtual_cameras camhost; } >"$log" 2>&1; then
    tail -n 100 "$log" >&2
    echo "demo.sh: the build failed; all of its output is in $log" >&2
    exit 1
fi

rm -rf build/demo
mkdir -p build/demo
exec scripts/wine_env.sh scripts/demo_tour.sh
