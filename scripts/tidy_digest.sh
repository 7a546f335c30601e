#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: tidy_digest.sh COMPILATIONS SOURCE
# Prints a digest of everything that clang-tidy's verdict on a file depends on: the tool,
# its configuration for the source (the file itself, or one that it includes), how the
# file is compiled (a list of folders and commands, line by line), and the content of every
# file that is then read. Fails where that cannot be found out.
set -euo pipefail
shopt -s inherit_errexit
compilations=$1
source=$2
scripts=$(cd "$(dirname "$0")" && pwd)

tidy=clang-tidy-14
compiler=clang++-14
if ! command -v "$tidy" >/dev/null; then
    tidy=clang-tidy
    compiler=clang++
fi

[ -s "$compilations" ]

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
    while [ -n "$folder" ]; do
        folder=${folder%/*}
        [ ! -f "$folder/.clang-tidy" ] || cat "$folder/.clang-tidy"
    done
    cat "$compilations"
    while read -r folder && read -r command; do
        eval "words=($command)"
        # The compiler of the build, and what may stand before it.
        while [[ ${words[0]} != -* ]]; do
            words=("${words[@]:1}")
        done
        (cd "$folder" && "$compiler" "${words[@]}" -w -M -MF - -MT all -o /dev/null | digests_of_files)
    done <"$compilations"
} | printed_digest
