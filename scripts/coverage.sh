#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: coverage.sh [--run]
# Builds the tests with counted lines and branches, runs them, and tells what of the product
# they reach: the rooms of the adapter and our own headers around the capture library.
# A branch is a condition that came out true, and one that came out false. What is missing
# is in build/coverage/report: missed.txt and index.html. Fails below 99 % of the lines or
# 98 % of the branches. With --run nothing is built anew.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "${1:-}" != --run ]; then
    scripts/setup.sh coverage
    scripts/build.sh coverage unit_tests channel_tests interleavings_tests failing_calls_tests
fi
profiles=$PWD/build/coverage/profiles
rm -rf "$profiles"
# Programs that run at the same time share a few files.
export LLVM_PROFILE_FILE=$profiles/%4m.profraw

# The adapter starts up once in a process, so each test of the channel has one of its own.
export LC_ALL=C.UTF-8
programs=build/coverage/bin
tests() {
    "$1" --gtest_list_tests | awk '/^[^ ].*\./ { suite = $1 } /^  / { print suite $1 }'
}
if ! {
    "$programs/unit_tests" --gtest_brief=1 &&
        "$programs/interleavings_tests" --gtest_brief=1 &&
        "$programs/failing_calls_tests" --gtest_brief=1 &&
        tests "$programs/channel_tests" |
        xargs -P "$(nproc)" -I{} "$programs/channel_tests" --gtest_brief=1 '--gtest_filter={}'
} >build/coverage_tests.log 2>&1; then
    grep -A 10 FAILED build/coverage_tests.log | tail -n 40 >&2
    exit 1
fi

report=build/coverage/report
mkdir -p "$report"
llvm-profdata-14 merge -sparse "$profiles"/*.profraw -o "$report/counts.profdata"
objects=("$programs/unit_tests" -object "$programs/interleavings_tests"
    -object "$programs/failing_calls_tests" -object "$programs/channel_tests")
counts=(-instr-profile="$report/counts.profdata"
    -ignore-filename-regex='/(usr|tests|virtual_cameras|capture/library)/')
llvm-cov-14 show "${objects[@]}" "${counts[@]}" -format=html -show-branches=count \
    >"$report/index.html" 2>"$report/warnings.txt"
llvm-cov-14 export "${objects[@]}" "${counts[@]}" 2>>"$report/warnings.txt" |
    python3 scripts/coverage_summary.py "$report/missed.txt"
