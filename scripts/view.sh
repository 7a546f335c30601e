#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: view.sh [OPTION...]
# Set-up, the Windows build, and `camhost view` on the built-in cameras: their pictures
# and settings in the browser, until Ctrl-C or End in the page. Options are those of
# camhost, such as --rig rigs/flaky_cable.toml or -c 77C01.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh demo

echo "== Building the adapter, the virtual cameras and camhost for Windows"
scripts/build.sh windows velmora_adapter virtual_cameras camhost

# The screen of the user; inside a Wine session there is another one.
display=${DISPLAY:-}${WAYLAND_DISPLAY:-}
screen=${DISPLAY:-}

# Passes lines on, and opens the address that one of them holds.
show_page() {
    local line address
    while IFS= read -r line; do
        printf '%s\n' "$line"
        address=$(grep -oE 'http://127\.0\.0\.1:[0-9]+/[0-9a-zA-Z]+/' <<<"$line" | head -n 1 || true)
        if [ -n "$address" ] && [ -n "$display" ] && command -v xdg-open >/dev/null; then
            DISPLAY=$screen xdg-open "$address" >/dev/null 2>&1 &
            display=
        fi
    done
}

echo "== Starting; Ctrl-C ends it"
# Ctrl-C is for camhost, which then stops video and prints the totals.
trap '' INT
set +e
(trap - INT; exec scripts/camhost.sh "$@" view --no-open) 2>&1 | show_page
exit "${PIPESTATUS[0]}"
