#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: same_tour.sh CAMHOST BUILD-FOLDER OTHER-BUILD-FOLDER WORK-FOLDER
# The tour of the demo, with one camhost.exe, on the adapters and virtual cameras of two
# builds: fails unless both give the same texts and pictures, byte by byte.
set -euo pipefail
camhost=$1
folders=("$2" "$3")
work=$4
scripts=$(cd "$(dirname "$0")/../../scripts" && pwd)

# Both builds are seen under the same name.
use() { ln -sfn "$work/$1" "$work/current"; }

# What a clock measured is no text of the adapter's.
texts() { sed -E "s|$work/$1|FOLDER|g; s/in [0-9.]+ s(, [0-9.]+ fps while live)?,/in TIME,/" "$work/$1/text"; }

# The scene shows its frame's number, and a busy machine may miss the first frame: a
# picture that differs is taken again in the tour's own words.
take_again() {
    local line
    line=$(grep -m 1 -- "^\\$ scripts/camhost.sh .*/$1\$" "$work/0/text")
    eval "set -- ${line#\$ scripts/camhost.sh}"
    for i in 0 1; do
        use $i
        "$scripts/wine_run.sh" "$work/current/camhost.exe" "$@" --force >/dev/null 2>&1
    done
}

rm -rf "$work"
for i in 0 1; do
    mkdir -p "$work/$i/pictures"
    cp "$camhost" "${folders[i]}/velmora_adapter.dll" "${folders[i]}/ORV_CAPLB11_x64.dll" "$work/$i"
    use $i
    "$scripts/demo_tour.sh" "$work/current/camhost.exe" "$work/current/pictures" >"$work/$i/text" 2>&1 ||
        { cat "$work/$i/text"; exit 1; }
done

diff <(texts 0) <(texts 1)
diff <(ls "$work/0/pictures") <(ls "$work/1/pictures")
count=0
for picture in "$work"/0/pictures/*.png; do
    name=$(basename "$picture")
    for attempt in 1 2 3 4 5; do
        cmp -s "$picture" "$work/1/pictures/$name" && break
        take_again "$name"
    done
    cmp "$picture" "$work/1/pictures/$name"
    count=$((count + 1))
done
echo "$(wc -l <"$work/0/text") lines and $count pictures are the same"
[ "$count" -eq 18 ]
