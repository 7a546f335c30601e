#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: view_tests.sh [NODE-TEST-OPTION...]
# The tests of the page of `camhost view`: the built camhost.exe under Wine, and the page in
# Chromium. Screenshots are kept in build/view_page/screenshots. Exits with 77 where the
# browser can't be had: then no test was run.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ ! -f "${CAMHOST:-build/windows/bin/camhost.exe}" ]; then
    echo "view_tests.sh: camhost.exe is not built; scripts/demo.sh builds it" >&2
    exit 2
fi
if ! tests/view_page/set_up.sh browser; then
    echo "view_tests.sh: NOT RUN, there is no browser to run the page in" >&2
    exit 77
fi
if [ -z "${VELMORA_WINE_SESSION:-}" ]; then
    exec scripts/wine_env.sh "$0" "$@"
fi
exec node --test --test-reporter=spec "$@" tests/view_page/view_test.js
