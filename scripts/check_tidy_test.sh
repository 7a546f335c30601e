#!/bin/bash
# SPDX-License-Identifier: MIT
# The clang-tidy check on a small tree: what passed is not checked again until something
# changes that was read for it, and sources that are checked together hide nothing.
set -euo pipefail
scripts=$(cd "$(dirname "$0")" && pwd)
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failures=0

mkdir -p "$tree/scripts" "$tree/tools" "$tree/parts" "$tree/build/native"
cp "$scripts/check_tidy.sh" "$scripts/tidy_batches.py" "$scripts/tidy_digest.sh" "$tree/scripts"
cat >"$tree/.clang-tidy" <<'END'
Checks: '-*,modernize-use-nullptr,clang-analyzer-cplusplus.NewDeleteLeaks,misc-unused-using-decls'
WarningsAsErrors: '*'
HeaderFilterRegex: '.*'
END
printf '#pragma once\ninline int* part() { return nullptr; }\n' >"$tree/parts/part.h"
printf '#include "parts/part.h"\nint* one() { return part(); }\n' >"$tree/parts/one.cpp"
echo 'int two() { return 2; }' >"$tree/parts/two.cpp"

# compile_commands FLAGS [NAME...]: as CMake writes it. Only one and two differ in what
# they are compiled with.
compile_commands() {
    local name flags comma=
    echo '['
    for name in one two "${@:2}"; do
        flags=$1
        case $name in one | two) flags="-DNAME=\\\\\\\"$name\\\\\\\" $1" ;; esac
        printf '%s{\n  "directory": "%s",\n  "command": "%s",\n  "file": "%s"\n}' "$comma" \
            "$tree/build/native" \
            "/usr/bin/g++ $flags -I$tree -o $name.o -c $tree/parts/$name.cpp" \
            "$tree/parts/$name.cpp"
        comma=$',\n'
    done
    printf '\n]\n'
}
compile_commands '' >"$tree/build/native/compile_commands.json"

# In the place of clang-tidy, to have things happen while it works.
tidy=$(command -v clang-tidy-14 || command -v clang-tidy)
cat >"$tree/tools/clang-tidy-14" <<END
#!/bin/bash
if [ "\$*" = --version ]; then
    cat "$tree/version"
    exit
fi
[ ! -f "$tree/meanwhile" ] || . "$tree/meanwhile"
exec "$tidy" "\$@"
END
chmod +x "$tree/tools/clang-tidy-14"
PATH=$tree/tools:$PATH
echo 'version 1' >"$tree/version"

# expect CASE pass|fail CHECKED PASSED-BEFORE
expect() {
    local outcome=pass output
    output=$("$tree/scripts/check_tidy.sh" "$tree/build/native" 2>&1) || outcome=fail
    if [ "$outcome" != "$2" ] ||
        [ "$(tail -n 1 <<<"$output")" != "$(($3 + $4)) sources: $3 checked, $4 passed before" ]; then
        printf '%s: expected %s, %s checked, %s passed before, found %s:\n%s\n' \
            "$1" "$2" "$3" "$4" "$outcome" "$output" >&2
        failures=$((failures + 1))
    fi
}

expect 'the first run' pass 2 0
expect 'a second run' pass 0 2
echo '// ' >>"$tree/parts/part.h"
expect 'a header with another comment' pass 1 1
echo 'int more();' >>"$tree/parts/two.cpp"
expect 'another source' pass 1 1
mkdir "$tree/build/native/parts"
compile_commands "-I$tree/build/native" >"$tree/build/native/compile_commands.json"
expect 'another command' pass 2 0
compile_commands "-I$tree/build/native -I$tree/build" >"$tree/build/native/compile_commands.json"
expect 'a third command' pass 2 0
compile_commands "-I$tree/build/native" >"$tree/build/native/compile_commands.json"
expect 'the second command again' pass 0 2
cp "$tree/parts/part.h" "$tree/build/native/parts"
expect 'the same header from a folder that is searched earlier' pass 1 1
rm "$tree/build/native/parts/part.h"
echo '# ' >>"$tree/.clang-tidy"
expect 'another .clang-tidy' pass 2 0
cp "$tree/.clang-tidy" "$tree/parts"
expect 'a .clang-tidy in the folder itself' pass 2 0
echo 'version 2' >"$tree/version"
expect 'another clang-tidy' pass 2 0

echo 'inline int* other() { return 0; }' >>"$tree/parts/part.h"
expect 'a finding in a header' fail 1 1
expect 'the same finding again' fail 1 1
sed -i 's/return 0/return nullptr/' "$tree/parts/part.h"
expect 'the finding mended' pass 1 1

echo 'int* three() { return 0; }' >>"$tree/parts/two.cpp"
echo "sed -i /three/d '$tree/parts/two.cpp'" >"$tree/meanwhile"
expect 'a finding that is mended while it is looked for' pass 1 1
rm "$tree/meanwhile"
echo 'int* three() { return 0; }' >>"$tree/parts/two.cpp"
expect 'the finding put back' fail 1 1
sed -i /three/d "$tree/parts/two.cpp"
expect 'the source as it was before' pass 0 2

echo 'int four();' >>"$tree/parts/two.cpp"
echo 'kill -KILL $PPID; exit 1' >"$tree/meanwhile"
expect 'a check that is killed' fail 1 1
rm "$tree/meanwhile"
expect 'the next run' pass 1 1

echo 'int five();' >>"$tree/parts/part.h"
"$tree/scripts/check_tidy.sh" "$tree/build/native" >/dev/null &
"$tree/scripts/check_tidy.sh" "$tree/build/native" >/dev/null || failures=$((failures + 1))
wait $! || failures=$((failures + 1))
expect 'a run after two at once' pass 0 2

names='alike_a alike_b alike_c'
for name in $names; do
    printf '#include "parts/part.h"\nint* %s() { return part(); }\n' "$name" >"$tree/parts/$name.cpp"
done
compile_commands "-I$tree/build/native" $names >"$tree/build/native/compile_commands.json"
expect 'three sources that are compiled alike' pass 3 2
expect 'the three again' pass 0 5
echo '// ' >>"$tree/parts/alike_b.cpp"
expect 'another of the three' pass 3 2
echo 'namespace { int* same() { return nullptr; } }' | tee -a "$tree/parts/alike_a.cpp" >>"$tree/parts/alike_c.cpp"
expect 'two that can not be compiled together' pass 3 2
echo 'int* bad() { return 0; }' >>"$tree/parts/alike_c.cpp"
expect 'a finding in one that can not be compiled together' fail 3 2
expect 'the same once more' fail 3 2
sed -i '/same/d' "$tree/parts/alike_a.cpp"
expect 'a finding in one of three' fail 3 2
output=$("$tree/scripts/check_tidy.sh" "$tree/build/native" "$tree/parts/alike_c.cpp" 2>&1) && failures=$((failures + 1))
if ! grep -q "^$tree/parts/alike_c.cpp:4:21: error: use nullptr" <<<"$output"; then
    printf 'the finding of a source that was named: %s\n' "$output" >&2
    failures=$((failures + 1))
fi
sed -i '/bad/d' "$tree/parts/alike_c.cpp"
expect 'the three as they were' pass 3 2
echo 'int leak() { int* lost = new int(1); return *lost; }' >>"$tree/parts/alike_b.cpp"
expect 'a leak on a path through one of three' fail 3 2
sed -i '/leak/d' "$tree/parts/alike_b.cpp"
printf 'namespace elsewhere { void unused(); }\nusing elsewhere::unused;\n' >>"$tree/parts/alike_b.cpp"
expect 'a name that one of three takes and does not use' fail 3 2
sed -i '/unused/d' "$tree/parts/alike_b.cpp"
expect 'the three as they were, once more' pass 0 5
echo 'this is no source' >>"$tree/parts/alike_b.cpp"
expect 'one that does not compile' fail 3 2
sed -i '/no source/d' "$tree/parts/alike_b.cpp"
rm "$tree/.clang-tidy" "$tree/parts/.clang-tidy"
expect 'sources that nothing is set up for' fail 5 0
if compgen -G "$tree/build/tidy_cache/new.*" >/dev/null; then
    echo 'unfinished entries were left' >&2
    failures=$((failures + 1))
fi
[ "$failures" -eq 0 ]
