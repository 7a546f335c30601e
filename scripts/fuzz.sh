#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: fuzz.sh [--keep] [RUNS | SECONDSs] [FUZZER...]
# Lets the fuzzers search in turn, as many at a time as there are processors, in slices of
# a minute, until all of them together have run so many inputs (a hundred million by
# default; the count goes on where an earlier run ended), or for so many seconds ("600s").
# Ends with the first finding, whose input is left in build/fuzz/findings. The counts lie
# in build/fuzz/executions.tsv.
# --keep then adds to the kept corpus what is new, as few and as short inputs as cover it.
set -euo pipefail
cd "$(dirname "$0")/.."

total=100000000
until=
keep=
fuzzers=()
while [ $# -gt 0 ]; do
    case $1 in
    --keep) keep=yes ;;
    *[!0-9s]* | s*) fuzzers+=("$1") ;;
    *s) until=$(($(date +%s) + ${1%s})) ;;
    *) total=$1 ;;
    esac
    shift
done
if [ ${#fuzzers[@]} -eq 0 ]; then
    for source in fuzz/*_fuzz.cpp; do
        fuzzers+=("$(basename "$source" .cpp)")
    done
fi

scripts/build.sh fuzz "${fuzzers[@]}"

counts=build/fuzz/executions.tsv
mkdir -p build/fuzz/findings
touch "$counts"
executed() {
    awk -v name="${1:-}" 'name == "" || $1 == name { sum += $2 } END { print sum + 0 }' "$counts"
}
is_enough() {
    if [ -n "$until" ]; then
        [ "$(date +%s)" -ge "$until" ]
    else
        [ "$(executed)" -ge "$total" ]
    fi
}

# What an input costs differs, so every fuzzer gets the same time, not the same count.
# The weights of rare features would take more time than the targets themselves.
seconds=60
search() {
    local fuzzer=$1 corpus=build/fuzz/searched/$1 log=build/fuzz/$1.log runs result=0
    local interrupted=72  # as libFuzzer ends then
    mkdir -p "$corpus"
    nice -n 10 "build/fuzz/bin/$fuzzer" -max_total_time=$seconds -max_len=512 -timeout=120 -entropic=0 -len_control=20 \
        -rss_limit_mb=3000 -print_final_stats=1 -artifact_prefix=build/fuzz/findings/ \
        "$corpus" "fuzz/corpus/$fuzzer" >"$log" 2>&1 || result=$?
    if [ "$result" -ne 0 ]; then
        if [ "$result" -ne "$interrupted" ]; then
            tail -n 40 "$log" >&2
            echo "fuzz.sh: $fuzzer found something; its input is in build/fuzz/findings" >&2
        fi
        exit 255  # xargs begins no further one
    fi
    runs=$(sed -nE 's/^stat::number_of_executed_units: +//p' "$log")
    printf '%s\t%s\t%s\n' "$fuzzer" "$runs" "$seconds" >>"$counts"
}

export counts seconds
export -f search
while ! is_enough; do
    printf '%s\n' "${fuzzers[@]}" | xargs -P "$(nproc)" -I{} bash -euo pipefail -c 'search {}'
    echo "$(executed) inputs so far"
done

for fuzzer in "${fuzzers[@]}"; do
    echo "$fuzzer: $(executed "$fuzzer")"
    if [ -n "$keep" ]; then
        mkdir -p "build/fuzz/searched/$fuzzer"
        "build/fuzz/bin/$fuzzer" -merge=1 -max_len=512 "fuzz/corpus/$fuzzer" "build/fuzz/searched/$fuzzer" \
            >"build/fuzz/$fuzzer.log" 2>&1
    fi
done
