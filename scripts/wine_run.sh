#!/bin/bash
# SPDX-License-Identifier: MIT
# Runs one Windows program: in the Wine session that scripts/wine_env.sh keeps, or,
# without one, in a session for this program alone.
if [ -n "${VELMORA_WINE_SESSION:-}" ]; then
    exec wine "$@"
fi
exec "$(dirname "$0")/wine_env.sh" wine "$@"
