#!/bin/bash
# SPDX-License-Identifier: MIT
# The include check on small trees: each bad edge fails it, each good one passes.
set -euo pipefail
check=$(cd "$(dirname "$0")" && pwd)/check_includes.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failures=0

# expect pass|fail FILE INCLUDE-LINE
expect() {
    rm -rf "${tree:?}"/*
    mkdir -p "$tree/$(dirname "$2")"
    echo "$3" >"$tree/$2"
    local found=pass
    "$check" "$tree" >/dev/null 2>&1 || found=fail
    if [ "$found" != "$1" ]; then
        echo "$2 with '$3': expected $1, found $found" >&2
        failures=$((failures + 1))
    fi
}

expect pass acquisition/listener.h '#include "capture/capture_library.h"'
expect pass properties/property.h '#include "velmora/host_blocks.h"'
expect pass virtual_cameras/grabber/grabber.cpp '#include "capture/library/grabber.h"'
expect pass virtual_cameras/calls/faults.h '#include "virtual_cameras/control.h"'
expect pass virtual_cameras/rig/rig_parser.cpp '#include "virtual_cameras/scenes/scenes.h"'
expect pass virtual_cameras/live/sink.cpp '#include "virtual_cameras/properties/property_tree.h"'
expect pass tests/border/frames_test.cpp '#include "virtual_cameras/scenes/scene_code.h"'
expect pass camhost/camera/record_channel.h '#include "velmora/video_channel_record.h"'
expect pass camhost/settings/settings.h '#include "camhost/camera/record_channel.h"'
expect pass camhost/check/check.h '#include "camhost/camera/cameras.h"'
expect pass camhost/commands/grab.cpp '#include "camhost/grab/grab_run.h"'
expect pass camhost/doctor/doctor.h '#include "camhost/camera/cameras.h"'
expect pass camhost/commands/completion.cpp '#include "camhost/help/completion.h"'
expect pass camhost/measure/watch_run.cpp '#include "camhost/grab/live_video.h"'
expect pass camhost/commands/bench.cpp '#include "camhost/measure/bench_run.h"'
expect pass camhost/view/view_owner.cpp '#include "camhost/settings/setting_changes.h"'
expect pass camhost/web/web_server.cpp '#include "camhost/view/http.h"'
expect pass camhost/commands/view.cpp '#include "camhost/web/web_server.h"'
expect pass camhost/win32/main.cpp '#include "camhost/application/application.h"'
expect pass camhost/win32/main.cpp '#include <windows.h>'
expect pass tests/camhost_logic/grab_test.cpp '#include "camhost/pictures/png_text.h"'
expect pass platform/windows.h '#include <windows.h>'
expect pass package/example/first_frame.c '#include "velmora/video_channel_record.h"'
expect fail package/example/first_frame.c '#include "platform/text.h"'
expect fail package/example/first_frame.c '#include <windows.h>'
expect fail platform/text.h '#include "capture/conversions.h"'
expect fail include/velmora/host_blocks.h '#include "platform/text.h"'
expect fail capture/library/grabber.h '#include "capture/conversions.h"'
expect fail capture/conversions.h '#include "properties/property.h"'
expect fail properties/property.h '#include "capture/library/grabber.h"'
expect fail properties/property.h '#include "acquisition/listener.h"'
expect fail properties/property_tables.cpp '#include "adapter/video_channel.h"'
expect fail acquisition/listener.h '#include "capture/library/grabber_listener.h"'
expect pass acquisition/frame_copy.h '#include "acquisition/kernels/frame_copy_kernels.h"'
expect fail acquisition/kernels/frame_copy_kernels.h '#include "acquisition/frame_copy.h"'
expect fail acquisition/kernels/processor.cpp '#include "platform/text.h"'
expect fail adapter/video_channel.cpp '#include "acquisition/kernels/processor.h"'
expect fail acquisition/listener.h '#include "properties/property.h"'
expect fail acquisition/frame_sink.cpp '#include "adapter/video_channel.h"'
expect fail adapter/video_channel.cpp '#include "virtual_cameras/control.h"'
expect fail adapter/video_channel.cpp '#include "tests/win32/win32_log.h"'
expect fail adapter/video_channel.cpp '#include "video_channel.h"'
expect fail adapter/video_channel.cpp '#include <windows.h>'
expect fail virtual_cameras/rig/rig.cpp '#include "velmora/host_blocks.h"'
expect fail virtual_cameras/properties/property_call.h '#include "capture/conversions.h"'
expect fail virtual_cameras/control.h '#include "virtual_cameras/rig/rig.h"'
expect fail virtual_cameras/new_room/file.h '#include "virtual_cameras/rig/rig.h"'
expect fail virtual_cameras/scenes/scenes.h '#include "platform/windows.h"'
expect fail virtual_cameras/scenes/scenes.h '#include "virtual_cameras/rig/rig.h"'
expect fail virtual_cameras/rig/rig_names.cpp '#include "virtual_cameras/live/camera_list.h"'
expect fail virtual_cameras/rig/rig_names.cpp '#include "virtual_cameras/control/environment.h"'
expect fail virtual_cameras/calls/world_lock.h '#include "virtual_cameras/rig/rig_names.h"'
expect fail virtual_cameras/calls/world_lock.cpp '#include "virtual_cameras/live/camera.h"'
expect fail virtual_cameras/properties/property_tree.h '#include "virtual_cameras/live/camera.h"'
expect fail virtual_cameras/live/delivery_session.h '#include "virtual_cameras/grabber/grabber_call.h"'
expect fail virtual_cameras/live/camera_list.cpp '#include "virtual_cameras/control/choices.h"'
expect fail virtual_cameras/grabber/grabber.cpp '#include "virtual_cameras/scenes/scenes.h"'
expect fail virtual_cameras/control/control.cpp '#include "virtual_cameras/grabber/grabber_call.h"'
expect fail adapter/video_channel.cpp '#include "virtual_cameras/live/camera.h"'
expect fail fuzz/rig_fuzz.cpp '#include "virtual_cameras/rig/rig_parser.h"'
expect fail camhost/win32/main.cpp '#include "platform/text.h"'
expect fail camhost/base/report.h '#include "camhost/camera/record_channel.h"'
expect fail camhost/base/report.h '#include <windows.h>'
expect fail camhost/camera/cameras.cpp '#include "camhost/settings/value_guards.h"'
expect fail camhost/settings/settings.cpp '#include "camhost/pictures/frame_image.h"'
expect fail camhost/settings/settings.cpp '#include "camhost/commands/command.h"'
expect fail camhost/pictures/frame_buffer.h '#include "camhost/camera/guarded_text.h"'
expect fail camhost/grab/grab_run.cpp '#include "camhost/settings/settings.h"'
expect fail camhost/grab/grab_run.cpp '#include "camhost/measure/bench_run.h"'
expect fail camhost/settings/settings_watch.cpp '#include "camhost/measure/watch_run.h"'
expect fail camhost/check/check.h '#include "camhost/grab/grab_run.h"'
expect fail camhost/settings/settings.cpp '#include "camhost/check/check.h"'
expect fail camhost/doctor/doctor.cpp '#include "camhost/settings/settings.h"'
expect fail camhost/help/outline.h '#include "camhost/commands/command.h"'
expect fail camhost/view/view_routes.cpp '#include "camhost/web/web_server.h"'
expect fail camhost/web/web_server.cpp '#include "camhost/camera/cameras.h"'
expect fail camhost/commands/list.cpp '#include "camhost/application/command_table.h"'
expect fail camhost/application/application.cpp '#include "camhost/settings/settings.h"'
expect fail camhost/application/application.cpp '#include "camhost/win32/windows_system.h"'
expect fail camhost/win32/main.cpp '#include "camhost/commands/command.h"'
expect fail camhost/list.cpp ''
expect fail virtual_cameras/rig.cpp '#include "camhost/base/texts.h"'
expect fail fuzz/text_fuzz.cpp '#include "tests/win32/win32_log.h"'
expect pass fuzz/any_library/host.cpp '#include "tests/win32/win32_log.h"'
expect fail tests/unit/text_test.cpp '#include "fuzz/any_library/host.h"'
expect fail fuzz/any_library/grabber.cpp '#include "virtual_cameras/control.h"'
expect fail bench/notes.txt ''

rm -rf "${tree:?}"/*
mkdir "$tree/adapter"
echo '' >"$tree/adapter/entry_points.h"
printf '#include <vector>\n#include "adapter/entry_points.h"\n' >"$tree/adapter/entry_points.cpp"
if "$check" "$tree" >/dev/null 2>&1; then
    echo "a source that begins with another header passed" >&2
    failures=$((failures + 1))
fi

# The house from the ground up: none of these rooms includes anything of a later one.
floors='
platform
capture/library
capture
include/velmora
properties
acquisition/kernels
acquisition
adapter
virtual_cameras
virtual_cameras/files
virtual_cameras/scenes
virtual_cameras/rig
virtual_cameras/calls
virtual_cameras/events
virtual_cameras/properties
virtual_cameras/live
virtual_cameras/grabber
virtual_cameras/control
camhost/base
camhost/camera
camhost/settings
camhost/pictures
camhost/grab
camhost/measure
camhost/check
camhost/doctor
camhost/help
camhost/view
camhost/web
camhost/commands
camhost/application
camhost/win32
tests
fuzz/input
fuzz/any_library
fuzz
bench
package
examples
cmake/msvc_abi
'
rooms=$(sed -n "/^rooms='/,/^'/s/:.*//p" "$check" | sort)
if [ "$rooms" != "$(xargs -n 1 <<<"$floors" | sort)" ]; then
    echo "the floors of this test are not the rooms of the check" >&2
    failures=$((failures + 1))
fi
rm -rf "${tree:?}"/*
below=()
ways=()
for upper in $floors; do
    for lower in "${below[@]}"; do
        mkdir -p "$tree/$lower"
        file=$lower/to_${upper//\//_}.h
        echo "#include \"${upper#include/}/file.h\"" >"$tree/$file"
        ways+=("$file: may not include \"${upper#include/}/file.h\"")
    done
    below+=("$upper")
done
found=$("$check" "$tree" 2>&1 || true)
for way in "${ways[@]}"; do
    if ! grep -qxF "$way" <<<"$found"; then
        echo "upstairs, and passed: $way" >&2
        failures=$((failures + 1))
    fi
done

# Two rooms with a way between them that no include goes.
rm -rf "${tree:?}"/*
mkdir "$tree/platform" "$tree/capture"
echo '' >"$tree/platform/text.h"
echo '' >"$tree/capture/conversions.h"
if "$check" "$tree" >/dev/null 2>&1; then
    echo "a way that nothing goes passed" >&2
    failures=$((failures + 1))
fi
[ "$failures" -eq 0 ]
