#!/bin/bash
# SPDX-License-Identifier: MIT
# The portability check on small sources: each bad line fails it, each good one passes.
# The sources lie in a folder of each kind: Windows builds "camhost" and not "tests/channel".
set -euo pipefail
check=$(cd "$(dirname "$0")" && pwd)/check_portability.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failures=0

mkdir -p "$tree/camhost" "$tree/tests/channel"
printf '#include <%s>\n' algorithm charconv cstdint cstring functional string utility variant vector \
    >"$tree/camhost/everything.h"

# judged pass|fail SOURCE: also that what is found is found in line 3
judged() {
    local found=pass output
    output=$("$check" "$tree" 2>&1) || found=fail
    if [ "$found" != "$1" ]; then
        printf '%s\nexpected %s, found %s: %s\n' "$(cat "$tree/$2")" "$1" "$found" "$output" >&2
        failures=$((failures + 1))
    elif [ "$found" = fail ] && ! grep -q "$2:3: " <<<"$output"; then
        printf '%s\nis not found in line 3: %s\n' "$(cat "$tree/$2")" "$output" >&2
        failures=$((failures + 1))
    fi
    rm "$tree/$2"
}
# expect pass|fail TEXT [FOLDER]
expect() {
    local source=${3:-camhost}/source.cpp
    printf '#include "camhost/everything.h"\nvoid before() {}\n%s\nvoid after();\n' "$2" >"$tree/$source"
    judged "$1" "$source"
}
# expect_alone pass|fail FIRST_LINE TEXT: without any other include
expect_alone() {
    printf '%s\nvoid before() {}\n%s\nvoid after();\n' "$2" "$3" >"$tree/camhost/source.cpp"
    judged "$1" camhost/source.cpp
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
expect fail 'use(static_cast<const void*>(text.begin()));'
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

# Names and their headers.
expect_alone fail '' 'std::vector<int> numbers;'
expect_alone fail '#include <string>' 'void take(std::vector<int> numbers);'
expect_alone fail '#include <vector>' 'const auto most = std::numeric_limits<int>::max();'
expect_alone fail '#include <vector>' 'std::ranges::sort(numbers);'
expect_alone fail '#include "camhost/missing.h"' 'throw std::runtime_error(text);'
expect_alone pass '#include <vector>' 'std::vector<int> numbers;'
expect_alone pass '#include "camhost/everything.h"' 'std::vector<int> numbers;'
expect_alone pass '#include "everything.h"' 'std::vector<int> numbers;'
expect_alone pass '#include <string>' 'std::string_view text;'
expect_alone pass '' '// What std::vector has.'
expect_alone pass '' '/* What std::vector has. */'
expect_alone pass '/* What' 'std::vector has. */'
expect_alone pass '' 'const char* text = "std::vector";'
expect_alone pass '#include <string_view>' $'constexpr std::string_view text = R"x(\nstd::vector {\n)x";'

# Words of other compilers and systems.
expect fail '__attribute__((noinline)) void work();'
expect fail 'const int bits = __builtin_popcount(word);'
expect fail '[[gnu::always_inline]] inline void work() {}'
expect fail '__int128 wide = 0;'
expect fail 'const ssize_t size = read(file, bytes, room);'
expect fail '::setenv(name, value, 1);'
expect fail 'const double turn = 2 * M_PI;'
expect fail '#include <unistd.h>'
expect fail $'#include <sys/stat.h>\n#if defined(_WIN32)\n#endif'
expect pass '__attribute__((noinline)) void work();' tests/channel
expect pass '#include <unistd.h>' tests/channel
expect pass $'#if defined(__clang__)\n#define ATTRIBUTE __attribute__((noinline))\n__attribute__((noinline)) void work();\n#endif'
expect pass $'#if defined(_WIN32)\nvoid work();\n#else\n#include <unistd.h>\nvoid f() { ::setenv(name, value, 1); }\n#endif'
expect pass $'#if !defined(_WIN32)\n#include <unistd.h>\n#endif'
expect pass $'#ifndef _WIN32\n#include <unistd.h>\n#endif'
expect pass 'void setenvironment();'
expect pass 'system.setenv(name);'

# Numbers and alignments.
expect fail 'const long long lowest = -2147483648;'
expect fail 'use(-9223372036854775808, 1);'
expect pass 'const int lowest = -2147483647 - 1;'
expect pass 'const double lowest = -2147483648.0;'
expect pass 'const long long lower = -21474836480;'
expect pass 'const char* text = "-2147483648";'
expect fail 'struct alignas(64) Apart {};'
expect fail $'struct Apart { alignas(64) int first; };'
expect pass 'void work() { alignas(16) char room[64]; use(room); }'
expect pass $'struct Apart { void work() { alignas(16) char room[64]; use(room); } };'

rm "$tree/camhost/everything.h"
if "$check" "$tree" >/dev/null 2>&1; then
    echo "a folder without sources passed" >&2
    failures=$((failures + 1))
fi
[ "$failures" -eq 0 ]
