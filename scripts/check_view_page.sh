#!/bin/bash
# SPDX-License-Identifier: MIT
# Fails on what eslint finds in the page of `camhost view` and in its tests, and on files
# that are not formatted as prettier does. With --fix they are formatted instead. Exits with
# 77 where the tools can't be had.
set -euo pipefail
cd "$(dirname "$0")/.."

mode=--check
if [ "${1:-}" = --fix ]; then
    mode=--write
fi
tests/view_page/set_up.sh packages

export VIEW_PAGE_PACKAGES=$PWD/build/view_page
tools=$VIEW_PAGE_PACKAGES/node_modules/.bin
files=$(find camhost/view_page tests/view_page bench/view_page -name '*.js' -o -name '*.css' -o -name '*.html' | sort)
"$tools/eslint" --config tests/view_page/eslint.config.js --max-warnings 0 camhost/view_page tests/view_page bench/view_page
# shellcheck disable=SC2086  # one name a word: none of them holds a blank
"$tools/prettier" --config tests/view_page/.prettierrc.json "$mode" --log-level warn $files
