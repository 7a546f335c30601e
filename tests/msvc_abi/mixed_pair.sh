#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: mixed_pair.sh CAMHOST BUILD-FOLDER OTHER-BUILD-FOLDER WORK-FOLDER
# The adapter of each build beside the capture library of the other: fails unless camhost
# reports the box and ends by itself.
set -euo pipefail
camhost=$1
folders=("$2" "$3")
work=$4
scripts=$(cd "$(dirname "$0")/../../scripts" && pwd)

rm -rf "$work"
for i in 0 1; do
    mkdir -p "$work/$i"
    cp "$camhost" "${folders[i]}/velmora_adapter.dll" "${folders[1 - i]}/ORV_CAPLB11_x64.dll" "$work/$i"
    code=0
    "$scripts/wine_run.sh" "$work/$i/camhost.exe" list >"$work/$i/text" 2>&1 || code=$?
    cat "$work/$i/text"
    [ "$code" -eq 3 ]
    grep -q 'Runtime Libraries not found!' "$work/$i/text"
done
