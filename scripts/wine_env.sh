#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: wine_env.sh COMMAND...
# Runs a command with Wine at hand: a prefix of this tree's own (made once), a screen
# of its own, and one Wine server that lives as long as the command. One session at
# a time; a second waits for the first.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
if [ -n "${VELMORA_WINE_SESSION:-}" ]; then
    exec "$@"
fi

mkdir -p "$root/build"
exec 9>"$root/build/wine_session.lock"
if ! flock -n 9; then
    echo "wine_env.sh: waiting for another Wine session of this tree, such as that of scripts/view.sh" >&2
    flock 9
fi

export WINEPREFIX=$root/build/wine_prefix
export WINEDEBUG=-all
export LC_ALL=C.UTF-8
export VELMORA_WINE_SESSION=$$
# No browser or runtime that a first start would offer to fetch, and no debugger that
# would keep a crashed program alive.
export WINEDLLOVERRIDES='mscoree,mshtml=;winedbg.exe=d'

scratch=$(mktemp -d)
display_file=$scratch/display
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$display_file" 9>&- 2>/dev/null &
screen=$!

finish() {
    wineserver -k 2>/dev/null || true
    wineserver -w 2>/dev/null || true
    kill "$screen" 2>/dev/null || true
    wait "$screen" 2>/dev/null || true
    rm -rf "$scratch"
}
trap finish EXIT

# The screen is up once it has written its number.
for ((i = 0; i < 200; ++i)); do
    [ -s "$display_file" ] && break
    kill -0 "$screen" 2>/dev/null || break
    sleep 0.05
done
if [ ! -s "$display_file" ]; then
    echo "wine_env.sh: Xvfb did not start" >&2
    exit 1
fi
export DISPLAY=:$(cat "$display_file")

if [ ! -f "$WINEPREFIX/ready" ]; then
    rm -rf "$WINEPREFIX"
    wineboot -i >/dev/null 2>&1 9>&-
    # No window manager runs here: without this Wine waits 2 s for one at every box.
    wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null 2>&1 9>&-
    wineserver -w
    touch "$WINEPREFIX/ready"
fi
wineserver -p 9>&-
# Brings up Wine's services and its desktop here. They would else be children of the
# first program, and hold the pipe that its output is read from.
wine rundll32 user32.dll,GetDesktopWindow >/dev/null 2>&1 </dev/null 9>&-
# The desktop goes a second after the last program that could use it, so one stays that
# waits for a line of text until the session ends.
mkfifo "$scratch/never_written"
exec 8<>"$scratch/never_written"
wine cmd <"$scratch/never_written" >/dev/null 2>&1 8>&- 9>&- &

"$@" 8>&- 9>&-
