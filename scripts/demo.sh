#!/bin/bash
# SPDX-License-Identifier: MIT
# Set-up, the Windows build, and a tour with camhost on the built-in cameras: what
# there is, settings read and changed, and a PNG of each camera in each pixel type.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh demo

echo "== Building the adapter, the virtual cameras and camhost for Windows"
scripts/build.sh windows velmora_adapter virtual_cameras camhost

rm -rf build/demo
mkdir -p build/demo
exec scripts/wine_env.sh scripts/demo_tour.sh
