#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: test.sh [--quick] [CTEST-ARGUMENT...]
# Everything: set-up, all builds, all tests and checks. Ends with CTest's summary over
# all builds together. With --quick the native build and its tests alone, and no
# clang-tidy. Further arguments go to CTest (such as -R border).
set -euo pipefail
cd "$(dirname "$0")/.."

presets=(windows windows-msvc-abi native asan-ubsan tsan)
session=(scripts/wine_env.sh)
tests=build
if [ "${1:-}" = --quick ]; then
    shift
    presets=(native)
    session=()
    tests=build/native
    set -- --exclude-regex 'Sources\.(PassClangTidy|TidyCheckRemembersWhatPassed)' "$@"
fi

scripts/setup.sh test

for preset in "${presets[@]}"; do
    echo "== Building: $preset"
    scripts/build.sh "$preset"
done

if [ "$tests" = build ]; then
    # One CTest run over all builds.
    printf 'subdirs("%s")\n' "${presets[@]}" >build/CTestTestfile.cmake
fi

# One more than there are processors: what runs under Wine waits as often as it works.
echo "== Testing"
exec "${session[@]}" ctest --test-dir "$tests" --output-on-failure --no-tests=error \
    --parallel "$(($(nproc) + 1))" "$@"
