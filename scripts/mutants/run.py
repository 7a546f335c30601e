# SPDX-License-Identifier: MIT
"""Tries mutants of the product; see mutants.sh."""
import argparse
import bisect
import collections
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys
import time

import rules
from build import PROGRAMS, Builder
from reach import Reach, environment, tests_of

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
WORK = ROOT / "build" / "mutants"
RESULTS = WORK / "results.tsv"
EQUIVALENTS = ROOT / "tests" / "mutants" / "equivalent.txt"
CPU_SECONDS = 10
WALL_SECONDS = 120


def limited():
    resource.setrlimit(resource.RLIMIT_CPU, (CPU_SECONDS, CPU_SECONDS))
    resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def run_tests(program, names):
    """The name of the first test that fails, "" when all pass."""
    arguments = [str(program), "--gtest_filter=" + ":".join(names), "--gtest_fail_fast",
                 "--gtest_brief=0"]
    try:
        result = subprocess.run(arguments, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                errors="replace", env=environment(), preexec_fn=limited,
                                timeout=WALL_SECONDS)
        out, code = result.stdout, result.returncode
    except subprocess.TimeoutExpired as expired:
        out, code = (expired.stdout or b"").decode(errors="replace"), -1
    if code == 0:
        return ""
    failed = re.search(r"^\[  FAILED  \] ([\w./]+)", out, re.M)
    begun = re.findall(r"^\[ RUN      \] ([\w./]+)", out, re.M)
    return failed.group(1) if failed else begun[-1] if begun else names[0]


class Runner:
    def __init__(self):
        self.builder = Builder(ROOT, WORK)
        self.builder.prepare()
        self.reach = Reach(self.builder)
        self.index = self.reach.index()
        self.unmutated = {}
        for program in PROGRAMS:
            self.unmutated[program] = WORK / f"{program}_unmutated"
            failure = self.builder.relink(program, self.unmutated[program], {})
            if failure:
                raise SystemExit(failure)
        self.lone = self._tests_that_run_alone()
        self.killers = collections.Counter()

    def _tests_that_run_alone(self):
        """Tests that a process of their own needs: they go through the export, whose state is
        the process's, or they do not pass behind others."""
        lone = {k for k, t in self.reach.tests.items()
                if "adapter/get_video_channel.cpp" in t["lines"] and k[0] == "channel_tests"
                and any("GetVideoChannel" in f for f in t["functions"]["adapter/get_video_channel.cpp"])}
        for program in PROGRAMS:
            names = [k[1] for k, t in self.reach.tests.items()
                     if k[0] == program and t["passes"] and k not in lone]
            while failed := run_tests(self.unmutated[program], names):
                print(f"on its own: {failed}", flush=True)
                lone.add((program, failed))
                names.remove(failed)
        return lone

    def candidates(self, mutant):
        """Tests that reach the mutant, the nearest first; two lists: of its block, of its file."""
        entry = self.index.get(mutant.file)
        includers = self.builder.includers(mutant.file)[1] if mutant.file.endswith(".h") else []
        direct = [k for k in self.reach.tests if self.reach.source_of(k[1]) in includers]
        if entry is None:
            every = direct or [k for k in self.reach.tests if k[0] == "unit_tests"]
            return every, []
        lines = sorted(entry["lines"])
        near = set(direct)
        for line in range(mutant.line, mutant.line + mutant.old.count("\n") + 1):
            place = bisect.bisect_right(lines, line) - 1
            if place >= 0:
                near |= entry["lines"][lines[place]]
        others = entry["all"] - near
        return self._ordered(near, mutant), self._ordered(others, mutant)

    def _ordered(self, tests, mutant):
        stem = pathlib.Path(mutant.file).stem

        def rank(key):
            test = self.reach.tests[key]
            related = stem in self.reach.source_of(key[1])
            return (not related, -self.killers[(mutant.file, key)], key[0] != "unit_tests",
                    sum(map(len, test["lines"].values())), key)
        return sorted((k for k in tests if self.reach.tests[k]["passes"]), key=rank)

    def build(self, mutant, widely):
        """{program: path} and "", or None and the compiler's text. Of a header, `widely` compiles
        everything of the product that sees it."""
        text = "\n".join(mutant.apply((ROOT / mutant.file).read_text().split("\n")))
        objects = {}
        if mutant.file.endswith(".cpp"):
            objects[mutant.file] = WORK / "mutated.o"
            failure = self.builder.compile(mutant.file, objects[mutant.file], contents=text)
        else:
            overlay = WORK / "overlay"
            shutil.rmtree(overlay, ignore_errors=True)
            (overlay / mutant.file).parent.mkdir(parents=True)
            (overlay / mutant.file).write_text(text)
            sources = self.builder.includers(mutant.file)[0]
            if widely or not sources:
                sources = self.builder.reaching(mutant.file)
            else:
                own = mutant.file[:-2] + ".cpp"
                sources = sorted(sources, key=lambda s: (s != own, len((ROOT / s).read_text())))[:4]
            failure = None
            for number, source in enumerate(sources):
                objects[source] = WORK / f"mutated{number}.o"
                failure = self.builder.compile(source, objects[source], ["-fkeep-inline-functions"],
                                               overlay=overlay)
                if failure:
                    break
        if failure:
            return None, failure
        return objects, ""

    def kill(self, objects, tests):
        """The first test that fails with these objects and passes without; None when none does."""
        linked = {}
        batches = []
        for program in PROGRAMS:
            together = [k for k in tests if k[0] == program and k not in self.lone]
            # A few that are likely first, then the rest of them.
            batches += [together[:12], together[12:]]
        batches.sort(key=lambda b: tests.index(b[0]) if b else 0)
        batches += [[k] for k in tests if k in self.lone]
        for batch in filter(None, batches):
            program = batch[0][0]
            if program not in linked:
                linked[program] = WORK / f"{program}_mutated"
                failure = self.builder.relink(program, linked[program], objects)
                if failure:
                    raise RuntimeError(failure)
            names = [k[1] for k in batch]
            while names and (failed := run_tests(linked[program], names)):
                # Once more on its own: a busy machine must not look like a failing test.
                if run_tests(linked[program], [failed]) and not run_tests(self.unmutated[program], [failed]):
                    return program, failed
                print(f"    not for the mutant's sake: {failed}", flush=True)
                names = [n for n in names if n != failed]
        return None

    def try_one(self, mutant):
        """(outcome, the test or the compiler's first error)"""
        objects, failure = self.build(mutant, widely=False)
        if failure:
            errors = [l for l in failure.split("\n") if "error" in l]
            return "does not compile", errors[0][-150:] if errors else failure[:150]
        near, others = self.candidates(mutant)
        killer = self.kill(objects, near) if near else None
        if killer is None:
            killer = self.stubborn(mutant, objects, near, others)
        if killer is None:
            return "survived", ""
        self.killers[(mutant.file, killer)] += 1
        return "killed", killer[1]

    def stubborn(self, mutant, objects, near, others):
        """Tests of the whole file; and of a header everything that sees it, tests included."""
        if mutant.file.endswith(".h"):
            objects, failure = self.build(mutant, widely=True)
            if failure:
                return None
            killer = self.kill_in_own_tests(mutant)
            if killer:
                return killer
            return self.kill(objects, near + others)
        return self.kill(objects, others) if others else None

    def kill_in_own_tests(self, mutant):
        """Of a header: its own unit tests, compiled anew."""
        sources = [s for s in self.builder.includers(mutant.file)[1] if s.startswith("tests/unit/")]
        for source in sources:
            target = WORK / "own_test.o"
            order = mutant.rule == "order"
            extra = ["-fsanitize=thread"] if order else []
            if self.builder.compile(source, target, extra, overlay=WORK / "overlay"):
                continue
            program = WORK / "own_test"
            archives = [p for p in self.builder.link["unit_tests"] if p.endswith(".a")]
            objects = [o for s, o in self.builder.product.items()]
            linked = subprocess.run(["g++", "-no-pie", *extra, str(target), *objects, *archives, "-o",
                                     str(program), "-pthread", "-Wl,--unresolved-symbols=ignore-all"],
                                    stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
            if linked.returncode != 0:
                continue
            runs = 5 if order else 1
            for _ in range(runs):
                failed = run_own(program)
                if failed:
                    return "unit_tests", failed
        return None


def run_own(program):
    """As run_tests, with every test of a small program."""
    result = subprocess.run(["setarch", "-R", str(program), "--gtest_fail_fast"], stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, text=True, errors="replace", env=environment(),
                            timeout=WALL_SECONDS)
    if result.returncode == 0:
        return ""
    begun = re.findall(r"^\[ RUN      \] ([\w./]+)", result.stdout, re.M)
    return begun[-1] if begun else "start"


def read_results():
    if not RESULTS.exists():
        return {}
    rows = [line.split("\t") for line in RESULTS.read_text().split("\n") if line]
    return {row[0]: row for row in rows}


def chosen(options):
    mutants = rules.all_mutants(ROOT)
    random.Random(options.seed).shuffle(mutants)
    if options.only:
        mutants = [m for m in mutants if re.search(options.only, f"{m.file}:{m.line}:{m.rule}")]
    return mutants


def report(mutants, equivalents):
    results = read_results()
    counts = collections.Counter()
    for mutant in mutants:
        row = results.get(mutant.key)
        if row is None:
            continue
        outcome = row[1]
        key = (mutant.file, rules.stripped(mutant.old), rules.stripped(mutant.new))
        if outcome == "survived" and key in equivalents:
            outcome = "equivalent"
        counts[outcome] += 1
        if outcome == "survived":
            print(f"{mutant.file}:{mutant.line} ({mutant.rule})")
            print("\n".join("- " + l.strip() for l in mutant.old.split("\n")))
            print("\n".join("+ " + l.strip() for l in mutant.new.split("\n")) + "\n")
    tried = counts["killed"] + counts["survived"]
    counts["not tried"] = len(mutants) - counts.total()
    print(", ".join(f"{name}: {count}" for name, count in counts.most_common()))
    if tried:
        print(f"killed of those that compile and are not equivalent: {100 * counts['killed'] / tried:.1f} %")


def try_all(mutants, wanted):
    """Tries mutants in their order until so many of them have been built."""
    known = read_results()
    built = 0
    runner = None
    for mutant in mutants:
        if built == wanted:
            break
        if mutant.key in known:
            built += known[mutant.key][1] != "does not compile"
            continue
        runner = runner or Runner()
        begin = time.monotonic()
        before = cpu_of_children()
        outcome, detail = runner.try_one(mutant)
        cpu = cpu_of_children() - before
        built += outcome != "does not compile"
        with RESULTS.open("a") as results:
            results.write("\t".join((mutant.key, outcome, detail.replace("\t", " "), mutant.file,
                                     str(mutant.line), mutant.rule, f"{cpu:.1f}")) + "\n")
        print(f"{built}/{wanted} {mutant.file}:{mutant.line} {mutant.rule}: {outcome} {detail} "
              f"({cpu:.1f} s, {time.monotonic() - begin:.0f} s)", flush=True)


def cpu_of_children():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def main():
    parser = argparse.ArgumentParser(prog="mutants.sh")
    parser.add_argument("--count", type=int, default=500, help="how many that compile")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--only", help="FILE:LINE:RULE has to match this")
    parser.add_argument("--list", action="store_true", help="show the mutants, try none")
    parser.add_argument("--report", action="store_true", help="show what is known, try none")
    options = parser.parse_args()
    mutants = chosen(options)
    equivalents = rules.read_equivalents(EQUIVALENTS)
    if options.list:
        for mutant in mutants[:options.count]:
            print(f"{mutant.key} {mutant.file}:{mutant.line} ({mutant.rule})\n  {rules.stripped(mutant.old)}"
                  f"\n  {rules.stripped(mutant.new)}")
        return
    if not options.report:
        try_all(mutants, options.count)
    report(mutants, equivalents)


if __name__ == "__main__":
    sys.exit(main())
