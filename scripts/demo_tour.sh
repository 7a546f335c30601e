#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: demo_tour.sh [CAMHOST PICTURES]
# The tour of demo.sh, inside its Wine session, with that camhost.exe and the DLLs
# beside it; the pictures go into an existing folder.
set -euo pipefail
cd "$(dirname "$0")/.."
program=${1:-build/windows/bin/camhost.exe}
pictures=${2:-build/demo}

camhost() { scripts/wine_run.sh "$program" "$@"; }
# Prints the command line as it can be pasted, and runs it.
show() {
    local argument line="scripts/camhost.sh"
    for argument in "$@"; do
        case $argument in
            *[\ \*#]*) line+=" \"$argument\"" ;;
            *) line+=" $argument" ;;
        esac
    done
    printf '\n$ %s\n' "$line"
    camhost "$@"
}

# A refusal is part of the tour.
refused() {
    show "$@" && { echo "demo.sh: that should have been refused" >&2; exit 1; }
    echo "(exit code $?)"
}

show list
show -c 1A2B info
show -c 1A2B props
show -c 77C01 props -L 'videof*'

refused -c 1A2B set 'exposure value abs=0.02'
show -c 1A2B set --manual 'exposure value abs=0.02'
refused -c 1A2B set 'gain value range=5000'
show -c 1A2B exec 'gain one push'

# One picture dark and one bright: what is set is visible.
show -c 1A2B grab --manual --set 'exposure value abs=0.01' -o "$pictures/1A2B_dark.png"
show -c 1A2B grab --manual --set 'exposure value abs=0.06' -o "$pictures/1A2B_bright.png"
show -c 77C01 grab --demosaic fast -o "$pictures/77C01_Raw8_in_colour.png"
count=3

# Each camera in each pixel type; by index, since one has no serial number.
mapfile -t serials < <(camhost list | sed 1d | awk '{ print $2 }')
for index in "${!serials[@]}"; do
    for type in Mono8 Raw8 RGB24; do
        picture=$pictures/${serials[index]//\//}_$type.png
        show -q -c "#$index" grab --pixelformat "$type" -o "$picture"
        count=$((count + 1))
    done
done

echo
echo "$count pictures in $(realpath "$pictures"):"
ls -1 "$pictures"
