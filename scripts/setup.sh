#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: setup.sh demo|test|coverage|bench
# Installs the Debian 12 packages that the demo, the tests, their coverage or the benchmarks
# need and that are not there yet. As root, or through sudo.
set -euo pipefail

demo_packages=(
    cmake g++ g++-mingw-w64-x86-64-posix googletest ninja-build
    libboost1.74-dev libcli11-dev libstb-dev libtomlplusplus-dev nlohmann-json3-dev
    wine wine64 wine64-preloader xvfb
)
test_packages=(
    "${demo_packages[@]}"
    clang-14 clang-format-14 clang-tidy-14 libclang-rt-14-dev python3
    clang-tools-14 libc++-14-dev libwine-dev lld-14 llvm-14
)
coverage_packages=("${demo_packages[@]}" clang-14 libclang-rt-14-dev llvm-14)
bench_packages=(
    "${demo_packages[@]}"
    gnuplot-nox gstreamer1.0-plugins-bad libaravis-dev libglib2.0-dev libgstreamer1.0-dev
    libusb-1.0-0-dev libyuv0 pkg-config
)

case ${1:-} in
demo) wanted=("${demo_packages[@]}") ;;
test) wanted=("${test_packages[@]}") ;;
coverage) wanted=("${coverage_packages[@]}") ;;
bench) wanted=("${bench_packages[@]}") ;;
*)
    echo "usage: setup.sh demo|test|coverage|bench" >&2
    exit 2
    ;;
esac

missing=()
for package in "${wanted[@]}"; do
    status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
fi
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -q
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -q -y --no-install-recommends "${missing[@]}" </dev/null
