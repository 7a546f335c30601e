#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: check_docs.sh [ROOT]
# Fails on a page that names a test or a file of the tree that is not there. A test
# stands in backticks as `Suite.Name`, a file with its folder.
set -euo pipefail
cd "${1:-"$(dirname "$0")/.."}"

problems=0
report() {
    echo "$1" >&2
    problems=$((problems + 1))
}

tests=$(cat $(find tests -name '*_test.cpp') | tr '\n' ' ' |
    grep -oE 'TEST(_F|_P)?\([A-Za-z0-9]+, *[A-Za-z0-9]+\)' | sed -E 's/.*\(([A-Za-z0-9]+), *([A-Za-z0-9]+)\)/\1.\2/')
# Tests that CMake adds by name.
tests+=$'\n'$(cat tests/CMakeLists.txt tests/*/CMakeLists.txt tests/*/*/CMakeLists.txt cmake/*.cmake 2>/dev/null |
    grep -oE '[A-Z][A-Za-z]+\.[A-Za-z_]+' || true)

pages=$(find README.md CONTRIBUTING.md docs tests cmake -name '*.md')
for page in $pages; do
    for name in $(grep -oE '`[A-Z][A-Za-z0-9]+\.[A-Z][A-Za-z0-9]+`' "$page" | tr -d '`' | sort -u); do
        grep -qx "$name" <<<"$tests" || report "$page: no test is named $name"
    done
    for file in $(grep -oE '`[a-z_]+(/[A-Za-z0-9_.]+)+\.(h|cpp|c|sh|cmake|txt|toml|md)`' "$page" | tr -d '`' | sort -u); do
        case $file in
        build/*) continue ;;
        esac
        [ -e "$file" ] || [ -e "$(dirname "$page")/$file" ] || report "$page: there is no file $file"
    done
    for link in $(grep -oE '\]\([A-Za-z0-9_./-]+(#[a-z0-9-]*)?\)' "$page" | sed -E 's/\]\(([^)#]*).*/\1/' | sort -u); do
        [ -z "$link" ] || [ -e "$(dirname "$page")/$link" ] || report "$page: links to $link, which is not there"
    done
done
echo "$(wc -w <<<"$pages") pages, $problems problems"
[ "$problems" -eq 0 ]
