#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: mutants.sh [--count N] [--seed N] [--only REGEX] [--list] [--report]
# Makes one-line mutants of the product by rule, builds each of them natively and runs the
# unit and channel tests that reach its line, until one fails. What has been tried is kept
# in build/mutants/results.tsv, and is not tried again.
set -euo pipefail
cd "$(dirname "$0")/.."

case " $* " in
*" --list "* | *" --report "*) ;;
*)
    scripts/build.sh native unit_tests channel_tests
    ;;
esac
exec python3 -B scripts/mutants/run.py "$@"
