#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: coverage.sh [--run]
# Builds the tests with counted lines and branches, runs them, and tells what of the product
# they reach: the rooms of the adapter and our own headers around the capture library.
# Branches that only an exception takes are left out. What is missing, by line, is in
# build/coverage/report: lines.txt and index.html. Fails below 99 % of the lines or 98 % of
# the branches. With --run nothing is built anew.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "${1:-}" != --run ]; then
    scripts/setup.sh coverage
    mkdir -p build
    if ! { cmake --preset coverage && cmake --build --preset coverage --target \
        unit_tests channel_tests interleavings_tests failing_calls_tests; } >build/coverage.log 2>&1; then
        tail -n 50 build/coverage.log >&2
        exit 1
    fi
fi
find build/coverage -name '*.gcda' -delete

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
gcovr --root . \
    --filter 'adapter/' --filter 'properties/' --filter 'acquisition/' --filter 'platform/' \
    --filter 'capture/[a-z_]+\.h' --exclude-throw-branches --exclude-unreachable-branches \
    --txt "$report/lines.txt" --html-details "$report/index.html" \
    --print-summary --fail-under-line 99 --fail-under-branch 98 build/coverage
