#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: check_tidy.sh BUILD [SOURCE...]
# clang-tidy over the product, the virtual cameras and the host's portable part, with
# the compile commands of a native build; or over the named sources alone.
set -euo pipefail
build=$(cd "$1" && pwd)
shift
cd "$(dirname "$0")/.."

tidy=clang-tidy-14
command -v "$tidy" >/dev/null || tidy=clang-tidy

if [ $# -eq 0 ]; then
    mapfile -t sources < <(sed -nE 's/^ *"file": "(.*)".*/\1/p' "$build/compile_commands.json" |
        grep -E "^$PWD/(platform|properties|acquisition|adapter|virtual_cameras|camhost)/" | sort -u)
else
    sources=("$@")
fi
if [ ${#sources[@]} -eq 0 ]; then
    echo "check_tidy.sh: no sources in $build/compile_commands.json" >&2
    exit 1
fi
echo "${#sources[@]} sources"
# Flags that only the compiler of the build knows are none of clang-tidy's business.
printf '%s\0' "${sources[@]}" | xargs -0 -n 1 -P "$(nproc)" \
    "$tidy" -p "$build" --quiet --extra-arg=-Wno-unknown-warning-option
