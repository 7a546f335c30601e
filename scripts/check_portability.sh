#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: check_portability.sh [ROOT]
# Fails where a source takes an iterator of the standard library for a pointer. GNU's
# and LLVM's libraries have plain pointers for the iterators of some classes, and no
# build here can tell; in Microsoft's library they are classes, and it does not compile.
set -euo pipefail
cd "${1:-"$(dirname "$0")/.."}"

mapfile -t sources < <(find . -name build -prune -o \
    \( -name '*.h' -o -name '*.c' -o -name '*.cpp' \) -print | sort)
if [ ${#sources[@]} -eq 0 ]; then
    echo "check_portability.sh: no sources found" >&2
    exit 1
fi

# Statement by statement, each on one line and without comments.
problems=$(awk '
function judge(statement,    algorithm, member) {
    # What returns an iterator of what it was given.
    algorithm = "std::(ranges::)?(find(_if|_if_not|_end|_first_of)?|adjacent_find|search(_n)?|" \
                "mismatch|lower_bound|upper_bound|(min|max)_element|partition(_point)?|" \
                "is_sorted_until|unique|remove(_if)?|rotate|copy(_if|_n)?|transform|" \
                "fill_n|c?begin|c?end|next|prev)\\("
    member = "(\\.|->)c?r?(begin|end)\\(\\)"
    if (statement ~ "auto ?\\* ?(const )?[A-Za-z_0-9]+ ?= ?" algorithm ||
        statement ~ "auto ?\\* ?(const )?[A-Za-z_0-9]+ ?= ?[^=]*" member)
        return "\"auto*\" from an iterator: say \"auto\""
    if (statement ~ "[A-Za-z_0-9>] ?\\* ?(const )?[A-Za-z_0-9]+ ?= ?" algorithm ||
        statement ~ "[A-Za-z_0-9>] ?\\* ?(const )?[A-Za-z_0-9]+ ?= ?[A-Za-z_0-9.>()-]*" member "( ?[-+][^;]*)?[;{]?$")
        return "a pointer from an iterator: take data() and a size"
    if (statement ~ "(from_chars|to_chars|memcpy|memmove|memset|memcmp|memchr)\\(.*" member)
        return "an iterator where a pointer is asked for: take data() and a size"
    return ""
}
function finish(    found) {
    gsub(/[ \t]+/, " ", statement)
    found = judge(statement)
    if (found != "") printf "%s:%d: %s\n", FILENAME, first, found
    statement = ""
}
FNR == 1 { statement = "" }
{
    line = $0
    sub(/^[ \t]*#.*/, "", line)
    sub(/(^|[ \t])\/\/.*/, "", line)
    while (line != "") {
        if (statement ~ /^[ \t]*$/) { statement = ""; first = FNR }
        place = match(line, /[;{}]/)
        if (place == 0) { statement = statement " " line; break }
        statement = statement " " substr(line, 1, place)
        line = substr(line, place + 1)
        finish()
    }
}' "${sources[@]}")

[ -z "$problems" ] || echo "$problems" >&2
count=0
[ -z "$problems" ] || count=$(wc -l <<<"$problems")
echo "${#sources[@]} files, $count problems"
[ -z "$problems" ]
