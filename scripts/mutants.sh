#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: mutants.sh [--count N] [--seed N] [--only REGEX] [--list] [--report]
# Makes one-line mutants of the product by rule, builds each of them natively and runs the
# unit and channel tests that reach its line, until one fails. What has been tried is kept
# in build/mutants/results.tsv, and is not tried again.
set -euo pipefail
cd "$(dirname "$0")/.."

case " $* " in
*" --list "* | *" --report "*) ;;
*)
    # Each source by itself: a mutated header is compiled into the tests of that header alone.
    build=build/mutants/native
    mkdir -p "$build"
    if ! { cmake --preset native -B "$build" -D VELMORA_COMPILE_TOGETHER=OFF -D VELMORA_CHECKS=OFF &&
        cmake --build "$build" --target unit_tests channel_tests; } >"$build/build.log" 2>&1; then
        tail -n 100 "$build/build.log" >&2
        exit 1
    fi
    ;;
esac
exec python3 -B scripts/mutants/run.py "$@"
