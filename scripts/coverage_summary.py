# SPDX-License-Identifier: MIT
# Usage: llvm-cov export ... | coverage_summary.py MISSED
# Writes the missed branches to a file, prints the totals, and fails below the limits.
import json
import os
import sys

limits = {"lines": 99.0, "branches": 98.0}


def missed_branches(files):
    """The sides of conditions that never happened, in any copy of a template."""
    counts = {}
    for file in files:
        for first, column, _, _, true, false, *_ in file["branches"]:
            place = (os.path.relpath(file["filename"]), first, column)
            before = counts.get(place, (0, 0))
            counts[place] = (before[0] + true, before[1] + false)
    sides = []
    for (name, line, column), (true, false) in sorted(counts.items()):
        sides += [f"{name}:{line}:{column}: never true\n"] if true == 0 else []
        sides += [f"{name}:{line}:{column}: never false\n"] if false == 0 else []
    return sides


data = json.load(sys.stdin)["data"][0]
missed = missed_branches(data["files"])
with open(sys.argv[1], "w", encoding="utf-8") as out:
    out.writelines(missed)
failed = False
for kind, least in limits.items():
    total = data["totals"][kind]
    percent = 100.0 * total["covered"] / total["count"]
    print(f"{kind}: {percent:.1f} % ({total['covered']} of {total['count']}), at least {least:.0f} %")
    failed = failed or percent < least
print(f"missed branches: {sys.argv[1]}")
sys.exit(1 if failed else 0)
