# SPDX-License-Identifier: MIT
"""Which tests reach which lines of the product, from one run of each test."""
import collections
import json
import os
import re
import subprocess

from build import PROGRAMS, checked, run


def environment(**more):
    return {**os.environ, "LC_ALL": "C.UTF-8", **more}


def tests_of(program):
    """All of the program's tests, as Suite.Name."""
    suite, names = "", []
    for line in checked([str(program), "--gtest_list_tests"], env=environment()).split("\n"):
        text = line.split("#")[0].rstrip()
        if not text or text.startswith("Running main"):
            continue
        if text.startswith("  "):
            names.append(suite + text.strip())
        else:
            suite = text.strip()
    return names


class Reach:
    """lines: {test: {file: [line]}}; functions: {test: {file: [(first, last)]}}"""

    def __init__(self, builder):
        self.builder = builder
        self.path = builder.work / "reach.json"
        programs = [builder.native / "bin" / program for program in PROGRAMS]
        if self.path.exists() and self.path.stat().st_mtime > max(p.stat().st_mtime for p in programs):
            self.data = json.loads(self.path.read_text())
        else:
            self.data = self._measure()
            self.path.write_text(json.dumps(self.data))
        self.tests = {(t["program"], t["name"]): t for t in self.data}
        self.sources = self._sources_of_tests()

    def _sources_of_tests(self):
        """{suite.name: source} by reading the tests; of instantiated suites the last part."""
        found = {}
        for folder in ("tests/unit", "tests/channel"):
            for source in sorted((self.builder.root / folder).glob("*.cpp")):
                for suite, name in re.findall(r"TEST(?:_[FP])?\((\w+),\s*(\w+)\)", source.read_text()):
                    found[f"{suite}.{name}"] = source.relative_to(self.builder.root).as_posix()
        return found

    def source_of(self, test):
        parts = test.split("/")
        plain = test if len(parts) == 1 else (parts[1] if "." in parts[1] else parts[0])
        return self.sources.get(plain.split("/")[0], "")

    def _measure(self):
        builder = self.builder
        folder = builder.work / "traced"
        objects = {}
        print("tracing: compiling", flush=True)
        for source in builder.product:
            # Nothing to reach; the tests have their own in its place.
            if source == "platform/log_trace.cpp":
                continue
            objects[source] = folder / (source.replace("/", "_") + ".o")
            failure = builder.compile(source, objects[source], ["-g1", "-fsanitize-coverage=trace-pc"])
            if failure:
                raise SystemExit(failure)
        trace = folder / "trace.o"
        checked(["gcc", "-O1", "-c", str(builder.root / "scripts/mutants/trace.c"), "-o", str(trace)])
        data = []
        for program in PROGRAMS:
            target = folder / program
            failure = builder.relink(program, target, objects, [trace])
            if failure:
                raise SystemExit(failure)
            print(f"tracing: running {program}", flush=True)
            data += self._run_all(program, target, folder / "addresses")
        return data

    def _run_all(self, program, target, addresses):
        reached = {}
        for name in tests_of(target):
            addresses.unlink(missing_ok=True)
            result = run([str(target), f"--gtest_filter={name}"],
                         env=environment(MUTANTS_TRACE=str(addresses)))
            passes = result.returncode == 0
            reached[name] = (passes, addresses.read_text().split() if addresses.exists() else [])
        every = sorted({a for _, found in reached.values() for a in found})
        places = self._places(target, every)
        data = []
        for name, (passes, found) in reached.items():
            lines = collections.defaultdict(set)
            functions = collections.defaultdict(set)
            for address in found:
                for file, line, function in places.get(address, ()):
                    lines[file].add(line)
                    functions[file].add(function)
            data.append({"program": program, "name": name, "passes": passes,
                         "lines": {f: sorted(l) for f, l in lines.items()},
                         "functions": {f: sorted(n) for f, n in functions.items()}})
        return data

    def _places(self, target, addresses):
        """{address: [(file, line, function)]} of what lies in the tree."""
        root = str(self.builder.root) + "/"
        # A call returns behind itself: one byte before lies in the block.
        text = "\n".join(hex(int(a, 16) - 1) for a in addresses)
        out = subprocess.run(["addr2line", "-e", str(target), "-f", "-a"], input=text,
                             stdout=subprocess.PIPE, text=True, check=True).stdout.split("\n")
        places = {}
        i = 0
        while i + 2 < len(out):
            address = format(int(out[i], 16) + 1, "x")
            function, place = out[i + 1], out[i + 2].split(" ")[0]
            i += 3
            file, _, line = place.rpartition(":")
            file = os.path.normpath(os.path.join(str(self.builder.native), file))
            if file.startswith(root) and line.isdigit():
                places[address] = [(file[len(root):], int(line), function)]
        return places

    def index(self):
        """{file: {"lines": {line: tests}, "functions": {function: (first, last, tests)}}}"""
        index = {}
        for key, test in self.tests.items():
            for file, lines in test["lines"].items():
                entry = index.setdefault(file, {"lines": {}, "all": set()})
                entry["all"].add(key)
                for line in lines:
                    entry["lines"].setdefault(line, set()).add(key)
        return index
