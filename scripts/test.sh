#!/bin/bash
# SPDX-License-Identifier: MIT
# Everything: set-up, all builds, all tests and checks. Ends with CTest's summary over
# all builds together. Further arguments go to CTest (such as -R border).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh test

presets=(windows native asan-ubsan tsan)
if compgen -G 'fuzz/*_fuzz.cpp' >/dev/null; then
    presets+=(fuzz)
fi

for preset in "${presets[@]}"; do
    echo "== Building: $preset"
    log=build/$preset.log
    mkdir -p build
    if ! { cmake --preset "$preset" && cmake --build --preset "$preset"; } >"$log" 2>&1; then
        tail -n 100 "$log" >&2
        echo "test.sh: the build '$preset' failed; all of its output is in $log" >&2
        exit 1
    fi
done

# One CTest run over all builds.
printf 'subdirs("%s")\n' "${presets[@]}" >build/CTestTestfile.cmake

echo "== Testing"
exec scripts/wine_env.sh ctest --test-dir build --output-on-failure --no-tests=error \
    --parallel "$(nproc)" "$@"
