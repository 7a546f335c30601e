#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: check_tidy.sh BUILD [SOURCE...]
# clang-tidy over all sources of a native build but tests, fuzzers and benchmarks, or
# over the named sources alone. A source that passed is remembered in build/tidy_cache
# under the digest of all that was read for it, and checked again when that changes.
set -euo pipefail
build=$(cd "$1" && pwd)
shift
cd "$(dirname "$0")/.."

tidy=clang-tidy-14
command -v "$tidy" >/dev/null || tidy=clang-tidy
cache=$PWD/build/tidy_cache
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# check SOURCE: writes what clang-tidy finds, and one line to the tally.
check() {
    local before after errors findings new result=0
    before=$(scripts/tidy_digest.sh "$build" "$1" 2>/dev/null) || before=
    if [ -n "$before" ] && [ -e "$cache/$before" ]; then
        touch -c "$cache/$before"
        echo remembered >>"$scratch/tally"
        return
    fi
    echo checked >>"$scratch/tally"
    errors=$(mktemp "$scratch/errors.XXXXXX")
    # Flags that only the compiler of the build knows are none of clang-tidy's business.
    findings=$("$tidy" -p "$build" --quiet --extra-arg=-Wno-unknown-warning-option "$1" \
        2>"$errors") || result=$?
    if [ "$result" -ne 0 ] || [ -n "$findings" ]; then
        echo "$findings"
        cat "$errors" >&2
        return "$result"
    fi
    # What was edited meanwhile may be what passed, or not.
    after=$(scripts/tidy_digest.sh "$build" "$1" 2>/dev/null) || after=
    if [ -n "$before" ] && [ "$before" = "$after" ]; then
        new=$(mktemp "$cache/new.XXXXXX")
        echo "$1" >"$new"
        mv -f "$new" "$cache/$before"
    fi
}
export build tidy cache scratch
export -f check

if [ $# -eq 0 ]; then
    mapfile -t sources < <(sed -nE 's/^ *"file": "(.*)".*/\1/p' "$build/compile_commands.json" |
        grep "^$PWD/" | grep -vE "^$PWD/(tests|fuzz|bench|build)/" | sort -u)
else
    mapfile -t sources < <(realpath "$@")
fi
if [ ${#sources[@]} -eq 0 ]; then
    echo "check_tidy.sh: no sources in $build/compile_commands.json" >&2
    exit 1
fi

mkdir -p "$cache"
find "$cache" -type f -mtime +30 -delete
touch "$scratch/tally"
result=0
printf '%s\0' "${sources[@]}" | xargs -0 -n 1 -P "$(nproc)" bash -c 'check "$0"' || result=$?
echo "${#sources[@]} sources: $(grep -c checked "$scratch/tally") checked," \
    "$(grep -c remembered "$scratch/tally") passed before"
exit "$result"
