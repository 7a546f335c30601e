#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: view_figures.sh [MINUTES]
# How many frames a second the page of `camhost view` shows, how old they are, and what
# camhost takes of a processor beside `grab`; for the built camhost.exe under Wine, in
# Chromium. With MINUTES its memory instead, minute by minute, at the fastest clock.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ ! -f "${CAMHOST:-build/windows/bin/camhost.exe}" ]; then
    echo "view_figures.sh: camhost.exe is not built; scripts/demo.sh builds it" >&2
    exit 2
fi
tests/view_page/set_up.sh browser
if [ -n "${1:-}" ]; then
    export VIRTUAL_CAMERAS_CLOCK=fast
fi
if [ -z "${VELMORA_WINE_SESSION:-}" ]; then
    exec scripts/wine_env.sh "$0" "$@"
fi
exec node bench/view_page/figures.js "$@"
