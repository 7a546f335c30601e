#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: set_up.sh packages|browser
# Brings what the checks of the page (packages: Node and packages of npm with the versions
# of package-lock.json) and its tests (browser: Chromium too) need, into the build folder and
# by Debian's packages. Exits with 77 and the reason where that can't be had.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
target=$root/build/view_page

not_to_be_had() {
    echo "set_up.sh: $1; see $target/set_up.log" >&2
    exit 77
}

install_packages() {
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        as_root=(sudo)
    fi
    {
        "${as_root[@]}" apt-get update -q &&
            "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
                apt-get install -q -y --no-install-recommends "$@"
    } </dev/null >>"$target/set_up.log" 2>&1
}

mkdir -p "$target"
# Several checks may come at once.
exec 8>"$target/set_up.lock"
flock 8

command -v node >/dev/null || install_packages nodejs || not_to_be_had "Node can't be installed"
command -v npm >/dev/null || install_packages npm || not_to_be_had "npm can't be installed"
if ! cmp -s "$here/package-lock.json" "$target/installed-lock.json"; then
    cp "$here/package.json" "$here/package-lock.json" "$here/.npmrc" "$target"
    (cd "$target" && npm ci --no-audit) </dev/null >>"$target/set_up.log" 2>&1 8>&- ||
        not_to_be_had "the packages of npm can't be installed"
    cp "$here/package-lock.json" "$target/installed-lock.json"
fi
if [ "${1:-}" = browser ] && ! command -v chromium >/dev/null; then
    install_packages chromium fonts-dejavu-core || not_to_be_had "Chromium can't be installed"
fi
