#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: check_includes.sh [ROOT]
# Fails on an include that the layout does not allow, on a header of Windows outside
# platform/windows.h (the host tool, which stands alone, has host/win32 for that), and
# on a source that does not begin with its own header.
set -euo pipefail
cd "${1:-"$(dirname "$0")/.."}"

# What each folder may include besides itself.
declare -A allowed=(
    [platform]=""
    [capture]="platform"
    [properties]="platform capture"
    [acquisition]="platform capture"
    [adapter]="platform capture properties acquisition"
    [virtual_cameras]="platform capture"
    [host]=""
    [tests]="platform capture properties acquisition adapter virtual_cameras host fuzz"
    [fuzz]="platform capture properties acquisition adapter virtual_cameras host"
    [bench]="platform capture properties acquisition adapter virtual_cameras host"
)

# Headers of adapter that depend on nothing: open to the folders of the product.
leaf_headers="adapter/video_channel_record.h adapter/host_blocks.h adapter/host_texts.h
    adapter/log_trace.h"
# Those of them that a host knows.
host_headers="adapter/video_channel_record.h adapter/host_blocks.h"

# Sources that define operations of the channel, and so look up to it.
channel_sources="
    properties/property_table.cpp properties/host_properties.cpp
    properties/host_description.cpp properties/host_commands.cpp
    acquisition/frame_sink_setup.cpp acquisition/frame_delivery.cpp
    acquisition/acquisition_control.cpp"

contains() { [[ " $(echo $1) " == *" $2 "* ]]; }

problems=0
report() {
    echo "$1" >&2
    problems=$((problems + 1))
}

may_include() {
    local file=$1 folder=$2 header=$3 target=$4
    [ "$folder" = "$target" ] && return 0
    contains "${allowed[$folder]}" "$target" && return 0
    case $folder in
    platform | capture | properties | acquisition) contains "$leaf_headers" "$header" && return 0 ;;
    host) contains "$host_headers" "$header" && return 0 ;;
    esac
    if contains "$channel_sources" "$file"; then
        # Through the channel such a source sees both tables and the listener.
        [ "$header" = adapter/video_channel.h ] && return 0
        case $target in properties | acquisition) return 0 ;; esac
    fi
    return 1
}

files=0
for folder in platform capture properties acquisition adapter virtual_cameras host tests fuzz bench; do
    [ -d "$folder" ] || continue
    while IFS= read -r file; do
        files=$((files + 1))
        while IFS= read -r header; do
            target=${header%%/*}
            if [ "$target" = "$header" ] || [ -z "${allowed[$target]+known}" ]; then
                report "$file: \"$header\" is not a path from the root"
            elif ! may_include "$file" "$folder" "$header" "$target"; then
                report "$file: may not include \"$header\""
            fi
        done < <(sed -nE 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*"([^"]+)".*/\1/p' "$file")
        case $file in
        platform/windows.h | host/win32/* | tests/*) knows_windows=yes ;;
        *) knows_windows=no ;;
        esac
        if [ $knows_windows = no ] &&
            grep -nE '^[[:space:]]*#[[:space:]]*include[[:space:]]*<(windows|objbase|ole2|oleauto)\.h>' "$file" >&2; then
            report "$file: includes a header of Windows; platform/windows.h does that"
        fi
        if [[ $file == *.cpp && -f ${file%.cpp}.h ]]; then
            first=$(sed -nE 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*["<]([^">]+)[">].*/\1/p' "$file" | head -n 1)
            [ "$first" = "${file%.cpp}.h" ] || report "$file: includes \"$first\" before its own header"
        fi
    done < <(find "$folder" -name '*.h' -o -name '*.c' -o -name '*.cpp' | sort)
done

if [ "$files" -eq 0 ]; then
    report "no sources found"
fi
echo "$files files, $problems problems"
[ "$problems" -eq 0 ]
