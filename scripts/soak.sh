#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: soak.sh [--frames N] [--losses N] [--every N] [--seed N]
# Builds the soak program natively and runs it: ten million frames and a million losses of
# a camera by default. Fails when anything that the process holds grows.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh native soak
exec build/native/bin/soak "$@"
