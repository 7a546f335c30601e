#!/bin/bash
# SPDX-License-Identifier: MIT
# The portability check on small sources: each bad line fails it, each good one passes.
set -euo pipefail
check=$(cd "$(dirname "$0")" && pwd)/check_portability.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failures=0

# expect pass|fail TEXT
expect() {
    printf 'void before() {\n}\n%s\nvoid after();\n' "$2" >"$tree/source.cpp"
    local found=pass output
    output=$("$check" "$tree" 2>&1) || found=fail
    if [ "$found" != "$1" ]; then
        printf '%s\nexpected %s, found %s\n' "$2" "$1" "$found" >&2
        failures=$((failures + 1))
    elif [ "$found" = fail ] && ! grep -q 'source.cpp:3: ' <<<"$output"; then
        printf '%s\nis not found in line 3: %s\n' "$2" "$output" >&2
        failures=$((failures + 1))
    fi
}

expect fail 'const auto* found = std::find(names.begin(), names.end(), name);'
expect fail 'auto *found = std::find_if(names.begin(), names.end(), [](char c) { return c; });'
expect fail $'const auto* first =\n    std::find_if(mantissa.begin(), mantissa.end(), isSignificant);'
expect fail 'const auto* found = std::find_if(std::begin(known), std::end(known), isIt);'
expect fail 'auto* const largest = std::max_element(values.begin(), values.end());'
expect fail 'const auto* place = std::ranges::lower_bound(table, key);'
expect fail 'const auto* start = text.begin();'
expect fail 'const auto* stop = object->names.cend();'
expect fail 'const char* start = text.begin();'
expect fail 'const char* stop = text.begin() + size;'
expect fail 'const Entry* found = std::find(entries.begin(), entries.end(), entry);'
expect fail 'const auto parsed = std::from_chars(text.begin(), text.end(), number);'
expect fail $'std::memcpy(destination,\n            text.begin(), text.size());'

expect pass 'const auto found = std::find(names.begin(), names.end(), name);'
expect pass 'const auto* start = text.data();'
expect pass 'auto* channel = dynamic_cast<CChannel*>(found->second);'
expect pass 'if (const auto* range = std::get_if<Range>(&entry)) {}'
expect pass 'const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);'
expect pass 'for (auto* entry = first; entry != last; ++entry) { use(table.begin(), entry); }'
expect pass '// const auto* found = std::find(names.begin(), names.end(), name);'
expect pass 'const char* end = std::to_chars(first, last, number).ptr;'
expect pass $'const auto* first = table.data();\nconst auto last = table.end();'
expect pass 'const std::vector<Item> items(list->begin(), list->end());'

rm "$tree/source.cpp"
if "$check" "$tree" >/dev/null 2>&1; then
    echo "a folder without sources passed" >&2
    failures=$((failures + 1))
fi
[ "$failures" -eq 0 ]
