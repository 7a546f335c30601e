#!/bin/bash
# SPDX-License-Identifier: MIT
# Fails when a C or C++ source is not formatted as .clang-format says.
# With --fix the files are formatted instead.
set -euo pipefail
cd "$(dirname "$0")/.."

mode=(--dry-run -Werror)
if [ "${1:-}" = --fix ]; then
    mode=(-i)
fi
formatter=clang-format-14
command -v "$formatter" >/dev/null || formatter=clang-format

find . \( -path ./build -o -path ./out -o -name '.?*' \) -prune \
    -o \( -name '*.h' -o -name '*.c' -o -name '*.cpp' \) -print0 |
    sort -z | xargs -0 "$formatter" "${mode[@]}"
