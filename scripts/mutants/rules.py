# SPDX-License-Identifier: MIT
"""One-line mutants of C++ sources, by rule."""
import dataclasses
import hashlib
import pathlib
import re

ROOMS = ("platform", "properties", "acquisition", "acquisition/kernels", "adapter")
COMPARISONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
ARITHMETIC = {"+": "-", "-": "+", "*": "+", "/": "*", "%": "*"}
BITWISE = {"|": "&", "&": "|"}


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str
    line: int  # counted from 1; of two swapped lines the first
    rule: str
    old: str
    new: str
    number: int = 0  # of those that read alike in one file

    @property
    def key(self):
        text = "\0".join((self.file, self.rule, self.old, self.new, str(self.number)))
        return hashlib.sha1(text.encode()).hexdigest()[:12]

    def apply(self, lines):
        """The lines of the mutated file."""
        count = self.old.count("\n") + 1
        changed = list(lines)
        changed[self.line - 1:self.line - 1 + count] = self.new.split("\n")
        return changed


def product_files(root):
    files = [f for room in ROOMS for f in sorted((root / room).glob("*.*"))]
    files += sorted((root / "capture").glob("*.h"))
    return [f.relative_to(root).as_posix() for f in files if f.suffix in (".h", ".cpp")]


def code_of(line):
    """The line with its comment cut off and the insides of its literals blanked."""
    out = []
    quote = None
    i = 0
    while i < len(line):
        char = line[i]
        if quote:
            if char == "\\":
                out.append("__")
                i += 2
                continue
            if char == quote:
                quote = None
                out.append(char)
            else:
                out.append("_")
        elif char == "/" and line[i:i + 2] == "//":
            break
        else:
            # An apostrophe between digits separates thousands.
            if char == '"' or (char == "'" and not (i and line[i - 1].isalnum() and line[i - 1] not in "LuU")):
                quote = char
            out.append(char)
        i += 1
    return "".join(out).rstrip()


def closing(code, start):
    """Where the parenthesis that opens at `start` closes; -1 on another line."""
    depth = 0
    for i in range(start, len(code)):
        depth += {"(": 1, ")": -1}.get(code[i], 0)
        if depth == 0:
            return i
    return -1


def replaced(line, start, end, text):
    return line[:start] + text + line[end:]


def conditions(line, code):
    for found in re.finditer(r"\b(?:if|while) \(", code):
        start = found.end()
        end = closing(code, start - 1)
        if end < 0:
            continue
        inside = code[start:end]
        if ";" in inside:
            start += inside.rindex(";") + 2
        elif re.search(r"(?<![=!<>])=(?!=)", inside):
            continue
        yield replaced(line, start, end, "!(" + line[start:end] + ")")
    for found in re.finditer(r"!(?=[\w(:])", code):
        yield replaced(line, found.start(), found.end(), "")


def operators(line, code):
    for found in re.finditer(r"(?<=\s)(==|!=|<=|>=|<|>)(?=\s)", code):
        yield replaced(line, *found.span(), COMPARISONS[found.group()])


def logic(line, code):
    for found in re.finditer(r"(?<=\s)(&&|\|\|)(?=\s|$)", code):
        yield replaced(line, *found.span(), "||" if found.group() == "&&" else "&&")


def arithmetic(line, code):
    for found in re.finditer(r"(?<=[\w)\]\"'] )([-+*/%])(?= [\w(*\"'])", code):
        yield replaced(line, *found.span(), ARITHMETIC[found.group()])
    for found in re.finditer(r"(?<=[\w)] )([|&])(?= [\w(~])", code):
        yield replaced(line, *found.span(), BITWISE[found.group()])
    for old, new in (("++", "--"), ("--", "++")):
        for found in re.finditer(re.escape(old), code):
            yield replaced(line, *found.span(), new)
    for found in re.finditer(r"(?<= )([-+])=(?= )", code):
        yield replaced(line, *found.span(), "-=" if found.group() == "+=" else "+=")
    for found in re.finditer(r"~(?=[a-z(])", code):
        yield replaced(line, *found.span(), "")


def constants(line, code):
    for found in re.finditer(r"(?<![\w.'])(0[xX][0-9A-Fa-f]+|\d+)(?![\w.'])", code):
        # The bound of a text that is a few words and always the same.
        if re.search(r"\bwriteText\(\w+, $", code[:found.start()]) and re.match(r', "[^"]*"\);', code[found.end():]):
            continue
        # Of a shuffle's mask: every negative number writes zero.
        if code[:found.start()].endswith("-") and "-1, -1" in code:
            continue
        value = int(found.group(), 0) if not re.fullmatch(r"0\d+", found.group()) else int(found.group())
        # No text for the host is longer than 255, whatever its bound.
        if value < 255 or not re.search(r"\b(?:writeText|CBoundedText)\b", code):
            yield replaced(line, *found.span(), str(value + 1))
        if value > 1:
            yield replaced(line, *found.span(), str(value - 1))
    for found in re.finditer(r"(?<![\w.])(\d+\.\d+)(?![\w.])", code):
        yield replaced(line, *found.span(), str(float(found.group()) + 1.0))
    for found in re.finditer(r"\b(true|false)\b", code):
        yield replaced(line, *found.span(), "false" if found.group() == "true" else "true")


def texts(line, code):
    for found in re.finditer(r'"', code):
        if code[:found.start()].count('"') % 2 == 0:
            yield replaced(line, found.end(), found.end(), "x")


def orders(line, code):
    for found in re.finditer(r"memory_order_(acq_rel|acquire|release)", code):
        yield replaced(line, *found.span(), "memory_order_relaxed")


# Path, calls and members, then an assignment or the end: no type stands in front.
STATEMENT = re.compile(
    r"^\s+(?:\+\+|--|\*|::)?[A-Za-z_][\w:]*(?:<[\w:, ]*>)?(?:(?:\.|->)\w+|\[[^\]]*\]|\(.*\))*"
    r"(?:(?:\+\+|--)?;|\s(?:[-+|&]?=)\s.*;)$")
JUMPS = re.compile(r"^\s+(?:break|continue|return);$")


# An assignment that calls nothing, in two parts.
ASSIGNMENT = re.compile(r"^\s+([\w.\[\]>-]+) = ([\w.\[\]<>:&() +*/,-]*);$")


def are_independent(code, following):
    """Two assignments that nobody can see in between, neither of which reads the other's."""
    found = [ASSIGNMENT.match(text) for text in (code, following)]
    if not all(found) or any(re.search(r"\w\(", m.group(2)) for m in found):
        return False
    targets = [m.group(1) for m in found]
    return targets[0] not in following and targets[1] not in code


def is_statement(code, before):
    # Without them, or in another order, the class is the same one to those who compile.
    if re.search(r" = (?:default|delete);$", code):
        return False
    if re.match(r"\s+(?:return|delete|throw|using|static_assert|case|default|else)\b", code):
        return False
    return bool(STATEMENT.match(code)) and before.endswith(("{", "}", ";", ":", ")"))


def lines_of_rules(lines):
    """(line, rule, old, new) for every mutant of one file."""
    codes = [code_of(line) for line in lines]
    for i, (line, code) in enumerate(zip(lines, codes)):
        skipped = (not code.strip() or code.lstrip().startswith(("#", "static_assert", "namespace", "using "))
                   or "LogTrace(" in code or "static_assert" in code)
        if skipped:
            continue
        rules = (("condition", conditions), ("comparison", operators), ("logic", logic),
                 ("arithmetic", arithmetic), ("constant", constants), ("text", texts), ("order", orders))
        for name, rule in rules:
            for changed in rule(line, code):
                yield i + 1, name, line, changed
        before = next((c for c in reversed(codes[:i]) if c.strip()), "{")
        if JUMPS.match(code) or is_statement(code, before):
            indent = line[:len(line) - len(line.lstrip())]
            yield i + 1, "left out", line, indent + ";"
            following = codes[i + 1] if i + 1 < len(codes) else ""
            same = following.startswith(indent) and following[len(indent):len(indent) + 1] != " "
            if (not JUMPS.match(code) and same and is_statement(following, code)
                    and not are_independent(code, following)):
                yield i + 1, "swapped", line + "\n" + lines[i + 1], lines[i + 1] + "\n" + line


def mutants_of(root, file):
    lines = (root / file).read_text().split("\n")
    seen = {}
    for line, rule, old, new in lines_of_rules(lines):
        if old == new:
            continue
        number = seen.get((rule, old, new), 0)
        seen[(rule, old, new)] = number + 1
        yield Mutant(file, line, rule, old, new, number)


def all_mutants(root):
    return [mutant for file in product_files(root) for mutant in mutants_of(root, file)]


def read_equivalents(path):
    """{(file, old, new): reason}, the texts without their indentation."""
    reasons = {}
    if not path.exists():
        return reasons
    for block in path.read_text().split("\n\n"):
        rows = [row for row in block.split("\n") if row and not row.startswith("#")]
        if not rows:
            continue
        old = "\n".join(row[2:].strip() for row in rows[1:] if row.startswith("- "))
        new = "\n".join(row[2:].strip() for row in rows[1:] if row.startswith("+ "))
        reason = " ".join(row.strip() for row in rows[1:] if row.startswith("  "))
        reasons[(rows[0].strip(), old, new)] = reason
    return reasons


def stripped(text):
    return "\n".join(row.strip() for row in text.split("\n"))
