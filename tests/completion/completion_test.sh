#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: completion_test.sh SCRIPT
# Sources the completion for bash, and completes lines with a camhost made here.
set -uo pipefail
source "$1"

calls=$(mktemp)
trap 'rm -f "$calls"' EXIT

camhost() {
    printf '%s\n' "$*" >>"$calls"
    case "$*" in
    *'-q list') printf '#  serial  name\n0  1A2B    SIM Mono 23\n1  n/a     SIM Grabber\n2  77C01   SIM Colour 5\n' ;;
    *'-q props --plain')
        printf '%s\t%s\t%s\t%s\t%s\t%s\n' \
            'gain auto switch' bool true '' '' '' \
            'gain value range' int 10 0 100 auto \
            'videoformats' text 'Y800 (4x2)' '' '' read-only \
            'gain one push' command '' '' '' ''
        ;;
    esac
}

problems=0
# expect REPLIES WORD...: the replies, parted by "|", to that line with the cursor at its end.
expect() {
    local wanted=$1 found
    shift
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    COMPREPLY=()
    _camhost
    found=$(IFS='|' && echo "${COMPREPLY[*]}")
    if [ "$found" != "$wanted" ]; then
        echo "\"${COMP_WORDS[*]}\" gives \"$found\" and not \"$wanted\"" >&2
        problems=$((problems + 1))
    fi
}

complete -p camhost | grep -q _camhost || { echo "nothing completes camhost" >&2; exit 1; }

# Commands, and where they are looked for.
expect 'set|save|shell' camhost s
expect 'list' camhost --clock fast li
expect 'get' camhost -c get ge
expect '' camhost list ''
# Options: the command's and those of all.
expect '--plain' camhost get --p
expect '--help|--adapter|--camera|--clock' camhost --
expect '-n|--frames|--on-loss|-h|--help|--adapter|-c|--camera|--clock' camhost grab -
# What follows them.
expect 'real|fast' camhost --clock ''
expect 'fast' camhost list --clock f
expect 'fast' camhost list --clock = f
expect 'wait|fail' camhost grab --on-loss ''
expect '' camhost grab -n ''
expect 'bash|powershell' camhost shell ''
# Cameras; "n/a" selects none.
expect '1A2B|77C01' camhost -c ''
expect '77C01' camhost get --camera 7
# Settings, as they may be typed.
expect 'gain\ auto\ switch|gain\ value\ range|videoformats' camhost get ''
expect 'gain\ value\ range' camhost get gain\\\ v
expect 'gain value range' camhost get '"gain v'
expect 'gain\ value\ range' camhost get --plain GAIN\\\ V
expect 'videoformats' camhost get first v
expect 'gain\ auto\ switch=|gain\ value\ range=' camhost set ga
expect '' camhost set 'gain\ value\ range' = 5
expect 'gain\ one\ push' camhost exec ''
# The camera that is asked is that of the line.
: >"$calls"
expect 'videoformats' camhost --adapter '"C:\my dll.dll"' --clock fast -c '#1' get v
grep -qFx -- '--adapter C:\my dll.dll -c #1 -q props --plain' "$calls" ||
    { echo "camhost was asked: $(cat "$calls")" >&2; problems=$((problems + 1)); }
# Files.
cd "$(dirname "$0")" || exit 1
expect 'completion_test.sh' camhost save compl
expect 'completion_test.sh' camhost --adapter compl

[ "$problems" -eq 0 ]
