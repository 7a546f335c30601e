# SPDX-License-Identifier: MIT
"""Compiles single sources and relinks the test programs of the native build."""
import json
import pathlib
import re
import shlex
import subprocess

PROGRAMS = ("unit_tests", "channel_tests")
STANDARD_HEADERS = ("algorithm", "array", "atomic", "charconv", "cstddef", "cstdint", "cstring", "exception",
                    "functional", "limits", "map", "memory", "new", "optional", "span", "stdexcept", "string",
                    "string_view", "tuple", "utility", "vector")


def run(arguments, **options):
    return subprocess.run(arguments, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          errors="replace", **options)


def checked(arguments, **options):
    result = run(arguments, **options)
    if result.returncode != 0:
        raise SystemExit(" ".join(map(str, arguments))[:2000] + "\n" + result.stdout[-4000:])
    return result.stdout


class Builder:
    def __init__(self, root, work):
        self.root = root
        self.work = work
        self.native = work / "native"
        self.header = work / "unchanged.h"
        work.mkdir(parents=True, exist_ok=True)
        self.commands = {}
        for entry in json.loads((self.native / "compile_commands.json").read_text()):
            file = pathlib.Path(entry["file"])
            if file.is_relative_to(root):
                self.commands[file.relative_to(root).as_posix()] = entry
        if not any(source.startswith("tests/unit/") for source in self.commands):
            raise SystemExit("the build of the mutants compiles its tests together")
        self.product = {}  # source -> its object of the native build
        self.link = {}
        self._read_link_lines()

    def _read_link_lines(self):
        """Of each program: the objects and libraries that are not the product's."""
        for program in PROGRAMS:
            lines = checked(["ninja", "-C", str(self.native), "-t", "commands", program]).split("\n")
            line = next(l for l in reversed(lines) if f"-o bin/{program} " in l)
            words = [w for w in shlex.split(line.split("&&")[1]) if not w.startswith("-O")]
            rest = []
            for word in words[words.index(f"bin/{program}") + 1:] + words[1:words.index("-o")]:
                if word.endswith((".o", ".a")) and not re.search(r"lib(adapter_core|platform)\.a$", word):
                    path = str((self.native / word).resolve())
                    if path not in rest:
                        rest.append(path)
            self.link[program] = rest
        for source, entry in self.commands.items():
            if source.split("/")[0] in ("platform", "properties", "acquisition", "adapter"):
                words = shlex.split(entry["command"])
                self.product[source] = str(self.native / words[words.index("-o") + 1])

    def prepare(self):
        """All but the product in one object for each program: a relink is then quick."""
        for program in PROGRAMS:
            target = self.rest(program)
            inputs = [pathlib.Path(p) for p in self.link[program]]
            if target.exists() and all(p.stat().st_mtime < target.stat().st_mtime for p in inputs):
                continue
            objects = [str(p) for p in inputs if p.suffix == ".o"]
            archives = [str(p) for p in inputs if p.suffix == ".a"]
            checked(["ld", "-r", "--strip-debug", "-o", str(target), *objects, "--whole-archive",
                     *archives])

        self._precompile()

    def _precompile(self):
        """What every source reads and no mutant changes, in one precompiled header."""
        library = sorted((self.root / "capture" / "library").glob("*.h"))
        lines = [f"#include <{name}>" for name in STANDARD_HEADERS]
        lines += [f'#include "{h.relative_to(self.root).as_posix()}"' for h in library]
        self.header.write_text("\n".join(lines) + "\n")
        words, directory = self._compiler("properties/property_tables.cpp")
        checked([*words, "-O0", "-w", "-x", "c++-header", str(self.header), "-o", f"{self.header}.gch"],
                cwd=directory)

    def rest(self, program):
        return self.work / f"{program}_rest.o"

    def _compiler(self, source):
        """The compiler and its options for a source, without those that the callers choose; the folder."""
        entry = self.commands[source]
        words = shlex.split(entry["command"])
        if "ccache" in words[0]:
            words = words[1:]
        kept = []
        skip = False
        for word in words:
            if skip:
                skip = False
            elif word in ("-o", "-MF", "-MT"):
                skip = True
            elif not word.startswith(("-W", "-O", "-g")) and word not in ("-c", "-MD") and word != entry["file"]:
                kept.append(word)
        return kept, entry["directory"]

    def compile(self, source, target, extra=(), contents=None, overlay=None):
        """Compiles without optimisation and without warnings; the compiler's text, or None."""
        kept, directory = self._compiler(source)
        place = self.root / source
        if contents is not None:
            place = self.work / "mutated" / source
            place.parent.mkdir(parents=True, exist_ok=True)
            place.write_text(contents)
        if overlay is not None:
            kept.insert(1, f"-I{overlay}")
        target.parent.mkdir(parents=True, exist_ok=True)
        # The platform is compiled without knowing of the capture library.
        if not extra and not source.startswith("platform/"):
            kept += ["-include", str(self.header)]
        result = run([*kept, "-O0", "-w", *extra, "-c", str(place), "-o", str(target)], cwd=directory)
        return None if result.returncode == 0 else result.stdout

    def relink(self, program, target, replaced, extra=()):
        """The program with some of its objects replaced: {source: object}. These come first,
        so that inline functions are theirs; what is not replaced comes last, so that a function
        that the tests have in its place is the tests'. The linker's text, or None."""
        others = [o for s, o in self.product.items() if s not in replaced]
        result = run(["g++", "-no-pie", "-fuse-ld=gold", "-Wl,--strip-debug" if not extra else "-g",
                      *map(str, replaced.values()), *map(str, extra), str(self.rest(program)), *others,
                      "-o", str(target),
                      "-Wl,--allow-multiple-definition", "-pthread",
                      # The unit tests come without a capture library.
                      "-Wl,--unresolved-symbols=ignore-all"])
        return None if result.returncode == 0 else result.stdout

    def includers(self, header):
        """The product's sources that include the header, and the tests that do."""
        line = f'#include "{header}"'
        product = [s for s in self.product if line in (self.root / s).read_text()]
        tests = [s for s in self.commands
                 if s.startswith(("tests/unit/", "tests/channel/")) and line in (self.root / s).read_text()]
        return product, tests

    def reaching(self, header):
        """All sources of the product that see the header, also through others."""
        seen = {header}
        queue = [header]
        found = []
        texts = {s: (self.root / s).read_text() for s in self.product}
        headers = {h.relative_to(self.root).as_posix(): h.read_text()
                   for room in ("platform", "capture", "properties", "acquisition", "acquisition/kernels", "adapter")
                   for h in (self.root / room).glob("*.h")}
        while queue:
            line = f'#include "{queue.pop()}"'
            for name, text in headers.items():
                if line in text and name not in seen:
                    seen.add(name)
                    queue.append(name)
            found += [s for s, text in texts.items() if line in text and s not in found]
        return found
