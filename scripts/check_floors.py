#!/usr/bin/env python3
"""Holds every include below ovxmllib/ against ovxmllib/FLOORS, which tells its own rules.

Reports each upward or forbidden include, each circle of headers, each file on no floor or on two, each include of an own
file that is not written by its full path, and each foreign header (the operating system's or another library's) in a
header or in more than one body. Exits with 1 when there is anything to report.

Usage: check_floors.py [ROOT]     ROOT is the folder that holds ovxmllib/; by default the one above this script.
"""
import dataclasses
import fnmatch
import pathlib
import re
import sys

ENDINGS = {".h", ".cpp", ".def"}
INCLUDE = re.compile(r'\s*#\s*include\s*([<"])([^>"]+)[>"]')
# Headers of the C standard end in .h like foreign ones.
C_STANDARD = {f"{name}.h" for name in "assert complex ctype errno fenv float inttypes iso646 limits locale math setjmp "
              "signal stdalign stdarg stdatomic stdbool stddef stdint stdio stdlib string tgmath threads time uchar wchar "
              "wctype".split()}


@dataclasses.dataclass
class Include:
    file: str  # path from ovxmllib/
    line: int
    quoted: bool
    target: str  # as written

    def __str__(self):
        return f"ovxmllib/{self.file}:{self.line}"

    def own_target(self):
        """The included file of this library as a path from ovxmllib/, or None."""
        return self.target.removeprefix("ovxmllib/") if self.target.startswith("ovxmllib/") else None

    def is_foreign(self):
        return not self.own_target() and self.target.endswith(".h") and self.target not in C_STANDARD


class Floors:
    """The page FLOORS, read."""

    def __init__(self, page):
        self.patterns, self.names, self.never, self.reaching = [], {}, [], set()
        self.faults = []
        number = None
        for line_number, line in enumerate(page.read_text().splitlines(), 1):
            line = line.split("#")[0].rstrip()
            if match := re.fullmatch(r"floor (\d+) \S+", line):
                number = int(match[1])
            elif match := re.fullmatch(r"never (.+): (.+)", line):
                self.never.append((match[1].split(), match[2].split()))
            elif match := re.fullmatch(r"reaches up: (.+)", line):
                self.reaching.update(match[1].split())
            elif line.startswith(" ") and number is not None:
                for word in line.split():
                    self._place(word, number, line_number)
            elif line:
                self.faults.append(f"ovxmllib/FLOORS:{line_number}: not understood: {line}")

    def _place(self, word, number, line_number):
        if "*" in word:
            self.patterns.append((word, number))
        elif word in self.names:
            self.faults.append(f"ovxmllib/FLOORS:{line_number}: {word} stands on two floors")
        else:
            self.names[word] = number

    def of(self, file):
        """All floors that claim a file: one, unless something is wrong."""
        stem = str(pathlib.PurePosixPath(file).with_suffix(""))
        if stem in self.names:
            return {self.names[stem]}
        return {number for pattern, number in self.patterns if fnmatch.fnmatchcase(stem, pattern)}

    def forbids(self, file, target):
        def among(name, patterns):
            return any(fnmatch.fnmatchcase(name, pattern) for pattern in patterns)

        return any(among(file, sources) and among(target, targets) for sources, targets in self.never)


def includes_of(folder, file):
    text = (folder / file).read_text()
    text = re.sub(r"/\*.*?\*/", lambda comment: re.sub(r"[^\n]", " ", comment[0]), text, flags=re.DOTALL)
    for number, line in enumerate(text.splitlines(), 1):
        if match := INCLUDE.match(line):
            yield Include(file, number, match[1] == '"', match[2])


def direction_faults(files, includes, floors):
    for file in files:
        if len(floors.of(file)) != 1:
            yield f"ovxmllib/{file}: stands on {'two floors' if floors.of(file) else 'no floor'}"
    for include in includes:
        target = include.own_target()
        if not target:
            if include.quoted:
                yield f'{include}: "{include.target}" is not a full path of this library'
            continue
        if target not in files:
            yield f"{include}: there is no {include.target}"
            continue
        if floors.forbids(include.file, target):
            yield f"{include}: must never include {include.target}"
        here, there = floors.of(include.file), floors.of(target)
        if here and there and max(there) > min(here) and include.file not in floors.reaching:
            yield f"{include}: reaches up from floor {min(here)} to {include.target} on floor {max(there)}"


def circle_faults(includes):
    """One report for each include that closes a circle of headers on a walk in depth."""
    edges = {}
    for include in includes:
        if include.file.endswith(".h") and (target := include.own_target()):
            edges.setdefault(include.file, []).append((target, include))
    done = set()

    def walk(header, path):
        for target, include in edges.get(header, []):
            if target in path:
                circle = [*path[path.index(target) :], target]
                yield f"{include}: closes the circle {' -> '.join(circle)}"
            elif target not in done:
                yield from walk(target, [*path, target])
        done.add(header)

    for header in sorted(edges):
        if header not in done:
            yield from walk(header, [header])


def foreign_faults(includes):
    bodies = {}
    for include in filter(Include.is_foreign, includes):
        if not include.file.endswith(".cpp"):
            yield f"{include}: foreign header <{include.target}> outside a body"
            continue
        first = bodies.setdefault(include.target, include)
        if first.file != include.file:
            yield f"{include}: foreign header <{include.target}> stands in {first.file} already"


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parent.parent)
    folder = root / "ovxmllib"
    floors = Floors(folder / "FLOORS")
    files = sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*") if path.suffix in ENDINGS)
    includes = [include for file in files for include in includes_of(folder, file)]
    faults = [*floors.faults, *direction_faults(set(files), includes, floors), *circle_faults(includes),
              *foreign_faults(includes)]
    for fault in sorted(faults):
        print(fault)
    own = sum(1 for include in includes if include.own_target())
    foreign = len({include.target for include in includes if include.is_foreign()})
    if faults or not files:
        print(f"floors: {len(faults)} faults in {len(files)} files")
        return 1
    print(f"floors: the directions hold: {len(files)} files, {own} includes of their own, none upward, no header circle; "
          f"{foreign} foreign headers, each in one body")
    return 0


if __name__ == "__main__":
    sys.exit(main())
