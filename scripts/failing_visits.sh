#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: failing_visits.sh [PRESET]
# A host's whole visit to each built-in camera, once for every call into the capture library
# and every way in which it can fail, and once for every allocation of the adapter. Tells how
# many there were. PRESET (asan-ubsan) is a native one; the tests of every build run the
# same in a short form.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-asan-ubsan}

programs=(failing_calls_tests failing_allocations_tests)
scripts/build.sh "$preset" "${programs[@]}"

export LC_ALL=C.UTF-8 VELMORA_LONG_VISITS=1
running=()
for program in "${programs[@]}"; do
    "build/$preset/bin/$program" >"build/$program.log" 2>&1 &
    running+=($!)
done
result=0
for i in "${!programs[@]}"; do
    program=${programs[$i]}
    if ! wait "${running[$i]}"; then
        tail -n 40 "build/$program.log" >&2
        result=1
    fi
    awk -v program="$program" '/^\[  VISITS  \]/ { visits += $4; what = $7; count += $6; failures += $8 }
        END { printf "%s: %d visits, %d %s %d failures of them\n", program, visits, count, what, failures }' \
        "build/$program.log"
done
exit "$result"
