#!/bin/bash
# SPDX-License-Identifier: MIT
# camhost on this machine: the built program, under Wine where that is needed. File names
# are seen from the folder in which this is called.
set -euo pipefail
program=$(dirname "$0")/../build/windows/bin/camhost.exe
if [ ! -f "$program" ]; then
    echo "camhost.sh: $program is not built; scripts/demo.sh builds it" >&2
    exit 2
fi
exec "$(dirname "$0")/wine_run.sh" "$program" "$@"
