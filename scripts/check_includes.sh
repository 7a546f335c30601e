#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: check_includes.sh [ROOT]
# Fails on an include that leads upstairs, on a way down that nobody goes, on a header of
# Windows outside the rooms that know Windows, and on a source that does not begin with its
# own header.
set -euo pipefail
set -f # "camhost/*" below is no pattern of files
cd "${1:-"$(dirname "$0")/.."}"

# The rooms from the ground up, each with what it may include besides itself. A file
# belongs to the longest room that its path begins with; "camhost/*" stands for all
# rooms of that folder.
rooms='
include/velmora:
platform:
capture/library: platform
capture: platform capture/library
properties: include/velmora platform capture
acquisition/kernels:
acquisition: platform capture acquisition/kernels
adapter: include/velmora platform capture properties acquisition
virtual_cameras:
virtual_cameras/files: platform
virtual_cameras/scenes: virtual_cameras/files
virtual_cameras/rig: platform capture/library virtual_cameras virtual_cameras/files virtual_cameras/scenes
virtual_cameras/calls: platform capture/library virtual_cameras
virtual_cameras/events: virtual_cameras/rig
virtual_cameras/properties: platform capture/library virtual_cameras/scenes virtual_cameras/rig virtual_cameras/calls
virtual_cameras/live: platform capture/library virtual_cameras virtual_cameras/scenes virtual_cameras/rig virtual_cameras/calls virtual_cameras/events virtual_cameras/properties
virtual_cameras/grabber: platform capture/library virtual_cameras/rig virtual_cameras/calls virtual_cameras/properties virtual_cameras/live
virtual_cameras/control: platform capture/library virtual_cameras virtual_cameras/files virtual_cameras/rig virtual_cameras/calls virtual_cameras/properties virtual_cameras/live
camhost/base: include/velmora
camhost/camera: include/velmora camhost/base
camhost/settings: include/velmora camhost/base camhost/camera
camhost/pictures: include/velmora camhost/base
camhost/grab: include/velmora camhost/base camhost/camera camhost/pictures
camhost/measure: camhost/base camhost/camera camhost/settings camhost/pictures camhost/grab
camhost/check: include/velmora camhost/base camhost/camera camhost/settings
camhost/doctor: camhost/base camhost/camera
camhost/help: camhost/base
camhost/view: include/velmora camhost/base camhost/camera camhost/settings camhost/pictures camhost/grab
camhost/web: camhost/view
camhost/commands: include/velmora camhost/base camhost/camera camhost/settings camhost/pictures camhost/grab camhost/measure camhost/check camhost/doctor camhost/help camhost/view camhost/web
camhost/application: camhost/base camhost/camera camhost/help camhost/commands
camhost/win32: camhost/base camhost/application
cmake/msvc_abi:
package: include/velmora
examples: include/velmora
fuzz/input:
fuzz/any_library: include/velmora capture/library properties adapter tests fuzz/input
fuzz: include/velmora platform capture capture/library properties acquisition adapter virtual_cameras camhost/* fuzz/input fuzz/any_library
bench: include/velmora platform acquisition virtual_cameras camhost/*
tests: include/velmora platform capture capture/library properties acquisition acquisition/kernels adapter virtual_cameras virtual_cameras/scenes virtual_cameras/rig virtual_cameras/live camhost/*
'
# The files and folders that may name the headers of Windows.
knows_windows='platform/windows.h camhost/win32 examples tests cmake/msvc_abi'

declare -A allowed
while IFS=: read -r room others; do
    [ -z "$room" ] || allowed[$room]=$others
done <<<"$rooms"

problems=0
report() {
    echo "$1" >&2
    problems=$((problems + 1))
}

# The room of a path, in $room; empty when there is none.
find_room() {
    room=$1
    while [ -n "$room" ] && [ -z "${allowed[$room]+known}" ]; do
        case $room in
        */*) room=${room%/*} ;;
        *) room= ;;
        esac
    done
}

# The ways that an include goes, "ROOM OTHER".
declare -A gone

may_include() {
    local other
    [ "$1" = "$2" ] && return 0
    gone["$1 $2"]=yes
    for other in ${allowed[$1]}; do
        case $other in
        */\*) [[ $2 == "${other%\*}"* ]] && return 0 ;;
        *) [ "$other" = "$2" ] && return 0 ;;
        esac
    done
    return 1
}

# What a line includes, in $header, with the mark that it begins with in $mark; false for
# another line.
find_header() {
    local pattern='^[[:space:]]*#[[:space:]]*include[[:space:]]*(["<])([^">]+)[">]'
    [[ $1 =~ $pattern ]] || return 1
    mark=${BASH_REMATCH[1]}
    header=${BASH_REMATCH[2]}
}

check_edges() {
    local file=$1 here line header mark there
    find_room "$file"
    here=$room
    while IFS= read -r line; do
        find_header "$line" && [ "$mark" = '"' ] || continue
        there=$header
        [[ $header == velmora/* ]] && there=include/$header
        find_room "$there"
        if [ -z "$room" ] || [[ $header != */* ]]; then
            report "$file: \"$header\" is not a path from the root"
        elif ! may_include "$here" "$room"; then
            report "$file: may not include \"$header\""
        fi
    done <<<"${includes[$file]:-}"
}

check_windows() {
    local file=$1 place line header mark
    for place in $knows_windows; do
        [[ $file == "$place" || $file == "$place"/* ]] && return
    done
    while IFS= read -r line; do
        find_header "$line" && [ "$mark" = '<' ] || continue
        case $header in
        windows.h | objbase.h | ole2.h | oleauto.h)
            report "$file: includes <$header>; platform/windows.h does that"
            ;;
        esac
    done <<<"${includes[$file]:-}"
}

check_own_header_first() {
    local file=$1 line header mark
    [[ $file == *.cpp && -f ${file%.cpp}.h ]] || return 0
    while IFS= read -r line; do
        find_header "$line" || continue
        [ "$header" = "${file%.cpp}.h" ] || report "$file: includes \"$header\" before its own header"
        return 0
    done <<<"${includes[$file]:-}"
    report "$file: does not include its own header"
}

folders=()
for room in "${!allowed[@]}"; do
    [ -d "${room%%/*}" ] && folders+=("${room%%/*}")
done
sources=()
if [ ${#folders[@]} -gt 0 ]; then
    mapfile -t sources < <(printf '%s\n' "${folders[@]}" | sort -u |
        xargs -I{} find {} -name '*.h' -o -name '*.c' -o -name '*.cpp' | sort)
fi
# All include lines of a file, one below the other.
declare -A includes
while IFS=: read -r file line; do
    includes[$file]+=$line$'\n'
done < <(printf '%s\n' "${sources[@]}" |
    xargs grep -HE '^[[:space:]]*#[[:space:]]*include' /dev/null)

declare -A furnished
for file in "${sources[@]}"; do
    find_room "$file"
    if [ -z "$room" ]; then
        report "$file: lies in no room of the table"
        continue
    fi
    furnished[$room]=yes
    check_edges "$file"
    check_windows "$file"
    check_own_header_first "$file"
done
# The table tells a reader which ways there are, so it has no more than those.
for room in "${!furnished[@]}"; do
    for other in ${allowed[$room]}; do
        if [[ $other != */\* && -z ${allowed[$other]+known} ]]; then
            report "$room: there is no room $other"
        elif [ "${furnished[$other]:-}" ] && [ -z "${gone["$room $other"]:-}" ]; then
            report "$room: nothing in it includes anything of $other"
        fi
    done
done
if [ ${#sources[@]} -eq 0 ]; then
    report "no sources found"
fi
echo "${#sources[@]} files, $problems problems"
[ "$problems" -eq 0 ]
