#!/bin/bash
# SPDX-License-Identifier: MIT
# The tour of demo.sh, inside its Wine session.
set -euo pipefail
cd "$(dirname "$0")/.."
pictures=build/demo

camhost() { scripts/wine_run.sh build/demo_windows/bin/camhost.exe "$@"; }
show() {
    echo
    echo "\$ camhost $*"
    camhost "$@"
}

show list

mapfile -t serials < <(camhost --json list | grep -o '"serial": *"[^"]*"' | sed 's/.*"\([^"]*\)"$/\1/')
if [ ${#serials[@]} -eq 0 ]; then
    echo "demo.sh: no cameras" >&2
    exit 1
fi
first=${serials[0]}

show -c "$first" info
show -c "$first" props exposure
show -c "$first" set --manual 'exposure value abs=0.02'
show -c "$first" get 'exposure value abs' 'exposure auto switch'

count=0
for serial in "${serials[@]}"; do
    for type in $(camhost -c "$serial" choices pixelformat --json | grep -oE '"(Mono8|Raw8|RGB24)"' | tr -d '"' | sort -u); do
        picture=$pictures/${serial}_$type.png
        show -q -c "$serial" grab --pixelformat "$type" -n 1 -o "$picture"
        count=$((count + 1))
    done
done

echo
echo "$count pictures in $PWD/$pictures:"
ls -1 "$pictures"
