#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: check_tidy.sh BUILD [SOURCE...]
# clang-tidy over all sources of a native build but tests, fuzzers and benchmarks, or
# over the named sources alone. Sources of one folder are checked together; where that
# finds anything, each by itself, and what is found then counts. What passed is remembered
# in build/tidy_cache under the digest of all that was read for it, and checked again when
# that changes.
set -euo pipefail
build=$(cd "$1" && pwd)
shift
cd "$(dirname "$0")/.."

tidy=clang-tidy-14
command -v "$tidy" >/dev/null || tidy=clang-tidy
cache=$PWD/build/tidy_cache
batches=$build/tidy_batches
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# run FILE SOURCE: clang-tidy over the file, as it is set up for the source's folder; fails
# with what it says if it says anything.
run() {
    local folder errors findings result=0
    folder=${2%/*}
    while [ -n "$folder" ] && [ ! -f "$folder/.clang-tidy" ]; do
        folder=${folder%/*}
    done
    errors=$(mktemp "$scratch/errors.XXXXXX")
    # Flags that only the compiler of the build knows are none of clang-tidy's business, nor
    # are the assertions of header-only packages, which it would walk through.
    findings=$("$tidy" -p "$batches" --config-file="$folder/.clang-tidy" --quiet \
        --extra-arg=-Wno-unknown-warning-option --extra-arg=-DNDEBUG "$1" 2>"$errors") || result=$?
    if [ "$result" -ne 0 ] || [ -n "$findings" ]; then
        echo "$findings"
        cat "$errors" >&2
        return 1
    fi
}

# check COMPILATIONS FILE SOURCE...: writes what clang-tidy finds, and a line to the tally
# per source.
check() {
    local compilations=$1 file=$2 before after source new result=0
    shift 2
    before=$(scripts/tidy_digest.sh "$compilations" "$1" 2>/dev/null) || before=
    if [ -n "$before" ] && [ -e "$cache/$before" ]; then
        touch -c "$cache/$before"
        printf 'remembered %s\n' "$@" >>"$scratch/tally"
        return
    fi
    printf 'checked %s\n' "$@" >>"$scratch/tally"
    if [ $# -eq 1 ]; then
        run "$file" "$1" || return
    elif ! run "$file" "$1" >/dev/null 2>&1; then
        # Sources may pass each by itself that can not be compiled together.
        for source in "$@"; do
            run "$source" "$source" || result=1
        done
        [ "$result" -eq 0 ] || return "$result"
    fi
    # What was edited meanwhile may be what passed, or not.
    after=$(scripts/tidy_digest.sh "$compilations" "$1" 2>/dev/null) || after=
    if [ -n "$before" ] && [ "$before" = "$after" ]; then
        new=$(mktemp "$cache/new.XXXXXX")
        printf '%s\n' "$@" >"$new"
        mv -f "$new" "$cache/$before"
    fi
}
export tidy cache batches scratch
export -f run check

mkdir -p "$cache"
find "$cache" -type f -mtime +30 -delete
touch "$scratch/tally"
python3 -B scripts/tidy_batches.py "$build" "$batches" "$@" >"$scratch/batches"
if [ ! -s "$scratch/batches" ]; then
    echo "check_tidy.sh: no sources in $build/compile_commands.json" >&2
    exit 1
fi
result=0
tr '\n' '\0' <"$scratch/batches" | xargs -0 -n 1 -P "$(nproc)" bash -c '
    IFS=$'"'\t'"' read -ra words <<<"$0"
    check "${words[@]}"' || result=$?
echo "$(grep -c . "$scratch/tally") sources: $(grep -c '^checked' "$scratch/tally") checked," \
    "$(grep -c '^remembered' "$scratch/tally") passed before"
exit "$result"
