#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Usage: tidy_batches.py BUILD FOLDER [SOURCE...]

Groups the sources of a native build but its tests, fuzzers and benchmarks, or the named
ones alone: sources of one folder that are compiled alike come eight to a batch. The
headers that they share are then read once for the eight, which is most of what clang-tidy
does. FOLDER gets a file for each batch, which includes its sources, and a compilation
database of those files and of all sources. Prints a line per batch, with tabs between: a
file of the folders and commands that compile it, the file to check, its sources.
"""
import json
import os
import re
import shlex
import sys

AT_A_TIME = 8
# clang-tidy looks for unused ones of these in the file that it is given alone, and not in
# what that includes.
GOES_ALONE = re.compile(r"^\s*(using\s+[\w:]+::\w+\s*;|namespace\s+\w+\s*=)", re.MULTILINE)
# By this name clang's analyzer knows a file whose included sources it is to walk through.
TOGETHER = "UnifiedSource_"
UNCHECKED = ("tests", "fuzz", "bench", "build")


def write(path, text):
    """Never half a file: another run may read the same one."""
    mine = f"{path}.{os.getpid()}"
    with open(mine, "w", encoding="utf-8") as file:
        file.write(text)
    os.replace(mine, path)


def content(path):
    with open(path, encoding="utf-8", errors="replace") as file:
        return file.read()


def how(entry):
    """What compiles the source, but for the names of the source and of its object."""
    words = shlex.split(entry["command"])
    left_out = {words.index("-c"), words.index("-c") + 1, words.index("-o"), words.index("-o") + 1}
    return entry["directory"], tuple(w for i, w in enumerate(words) if i not in left_out)


def main(build, folder, *named):
    root = os.getcwd()
    with open(f"{build}/compile_commands.json", encoding="utf-8") as file:
        database = json.load(file)
    if named:
        wanted = {os.path.realpath(source) for source in named}
    else:
        unchecked = re.compile(f"{re.escape(root)}/({'|'.join(UNCHECKED)})/")
        wanted = {e["file"] for e in database
                  if e["file"].startswith(root + "/") and not unchecked.match(e["file"])}

    alike = {}
    for source in sorted(wanted):
        # One that the build compiles twice, or not at all, is nobody's neighbour.
        compiled = [how(e) for e in database if e["file"] == source]
        is_alone = len(compiled) != 1 or GOES_ALONE.search(content(source))
        key = (os.path.dirname(source), source if is_alone else compiled[0])
        alike.setdefault(key, []).append(source)

    os.makedirs(folder, exist_ok=True)
    together = []
    for (_, compiled), sources in alike.items():
        for i in range(0, len(sources), AT_A_TIME):
            batch = sources[i:i + AT_A_TIME]
            path = f"{folder}/{TOGETHER}{os.path.relpath(batch[0], root).replace('/', '_')}"
            if len(batch) == 1:
                file = batch[0]
                compilations = [e for e in database if e["file"] == file]
            else:
                file = path
                write(file, "".join(f'#include "{source}"  // NOLINT(bugprone-suspicious-include)\n'
                                    for source in batch))
                directory, words = compiled
                compilations = [{"directory": directory, "file": file,
                                 "command": shlex.join([*words, "-o", f"{file}.o", "-c", file])}]
                together += compilations
            write(f"{path}.compilations",
                  "".join(f"{e['directory']}\n{e['command']}\n" for e in compilations))
            print(f"{path}.compilations", file, *batch, sep="\t")
    write(f"{folder}/compile_commands.json", json.dumps(database + together, indent=2))


main(*sys.argv[1:])
