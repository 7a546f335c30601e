#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: package_test.sh WORK-FOLDER
# The package of what is built: made twice it is the same; unpacked into a folder with a
# blank and an umlaut its sums hold, and its example, built with the words at its top,
# runs with each adapter on the virtual cameras of the same kind.
set -euo pipefail
work=$1
scripts=$(cd "$(dirname "$0")/../../scripts" && pwd)

fail() {
    echo "package_test.sh: $1" >&2
    exit 1
}

rm -rf "$work"
mkdir -p "$work/Übung eins"
"$scripts/package.sh" --built "$work/first"
"$scripts/package.sh" --built "$work/second"
archives=("$work"/first/velmora-*-win64.zip)
[ ${#archives[@]} -eq 1 ] || fail "more than one archive"
cmp "${archives[0]}" "$work/second/${archives[0]##*/}"

cd "$work/Übung eins"
cmake -E tar xf "${archives[0]}"
cd velmora-*-win64
sha256sum --quiet --strict -c SHA256SUMS
diff <(sed -E 's/^[0-9a-f]+ [ *]//' SHA256SUMS) \
    <(find . -type f ! -name SHA256SUMS | sed 's|^\./||' | LC_ALL=C sort)
# Nobody gets a virtual library beside a real one by unpacking.
strays=$(find . -name 'ORV_CAPLB11*' ! -path './virtual-cameras/*')
[ -z "$strays" ] || fail "virtual cameras outside their folder: $strays"

# Of all that is linked in. A package whose headers the tools take is named in both places.
wanted='Boost.txt
CLI11.txt
GPL-3
LGPL-2.1
gcc-runtime.txt
libc++.txt
mingw-w64-runtime.txt
nlohmann-json.txt
stb.txt
tomlplusplus.txt
velmora.txt
wine.txt'
diff <(echo "$wanted") <(LC_ALL=C ls licences) || fail "other licences than those of what is linked in"

cd example
mapfile -t commands < <(sed -nE 's/^ \*     (x86_64-.*)/\1/p' first_frame.c)
[ ${#commands[@]} -eq 2 ] || fail "the example names ${#commands[@]} commands"
for command in "${commands[@]}"; do
    # shellcheck disable=SC2086
    ${command/gcc /gcc-posix -Wall -Wextra -Werror }
done

expected='0: SIM Mono 23
1: SIM Colour 5
2: SIM Colour 1
3: QRM 52
4: SIM Frame Grabber
a frame of 1280 x 960, 3686400 bytes'
for kind in mingw-w64 msvc-abi; do
    mkdir "Größe $kind"
    cp first_frame.exe ../adapter-trial-$kind/velmora_adapter.dll \
        ../virtual-cameras/$kind/ORV_CAPLB11_x64.dll "Größe $kind"
    found=$("$scripts/wine_run.sh" "Größe $kind/first_frame.exe" | tr -d '\r') ||
        fail "the example failed with $kind: $found"
    diff <(echo "$expected") <(echo "$found") || fail "the example says something else with $kind"
    found=$("$scripts/wine_run.sh" ../camhost/camhost.exe --adapter "Größe $kind/velmora_adapter.dll" list) ||
        fail "camhost failed with $kind: $found"
    [ "$(grep -c SIM <<<"$found")" -eq 4 ] || fail "camhost lists with $kind: $found"
done
