#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: tidy_digest.sh BUILD FILE SOURCE
# Prints a digest of everything that clang-tidy's verdict on the file depends on: the
# tool, its configuration for the source (the file itself, or one that it includes), how
# the file is compiled, and the content of every file that is then read. Fails where that
# cannot be found out.
set -euo pipefail
shopt -s inherit_errexit
build=$1
file=$2
source=$3
scripts=$(cd "$(dirname "$0")" && pwd)

tidy=clang-tidy-14
compiler=clang++-14
if ! command -v "$tidy" >/dev/null; then
    tidy=clang-tidy
    compiler=clang++
fi

# Folder and command, line by line, of each compilation of the file.
compilations=$(python3 -B -c '
import json, sys
for entry in json.load(open(sys.argv[1])):
    if entry["file"] == sys.argv[2]:
        print(entry["directory"], entry["command"], sep="\n")
' "$build/compile_commands.json" "$file")
[ -n "$compilations" ]

# The files of a list of dependencies as compilers write it, which breaks lines with a
# backslash.
digests_of_files() {
    sed -E 's/^all://; s/\\$//' | xargs sha256sum
}

printed_digest() {
    sha256sum | cut -d ' ' -f 1
}

{
    "$tidy" --version
    cat "$scripts/check_tidy.sh" "$scripts/tidy_batches.py" "$scripts/tidy_digest.sh"
    folder=$source
    while [ "$folder" != / ]; do
        folder=$(dirname "$folder")
        [ ! -f "$folder/.clang-tidy" ] || cat "$folder/.clang-tidy"
    done
    echo "$compilations"
    while read -r folder && read -r command; do
        eval "words=($command)"
        # The compiler of the build, and what may stand before it.
        while [[ ${words[0]} != -* ]]; do
            words=("${words[@]:1}")
        done
        (cd "$folder" && "$compiler" "${words[@]}" -w -M -MF - -MT all -o /dev/null | digests_of_files)
    done <<<"$compilations"
} | printed_digest
