#!/usr/bin/env python3
"""Compiles every C++ block of README.md and docs/*.md against the shared library, and runs those that are programs.

What follows the word `cpp` at the head of a block decides what happens to it:
  (nothing)             the block compiles as it stands; one that has a main() is linked, run, and must exit with 0
  no-run                the same, but a program is only linked
  fragment              the block is put into the class of tests/docs/members.cpp.in and compiled
  fragment statements   the block is put into the function of tests/docs/statements.cpp.in and compiled
A block headed `output` directly behind a program is what that program prints. A program that includes Orders.h has the
classes of examples/orders and, where it runs, orders.xml.
"""
import argparse
import concurrent.futures
import dataclasses
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
WRAPPERS = {"fragment": "members.cpp.in", "fragment statements": "statements.cpp.in"}
ORDERS = ROOT / "examples/orders"
WARNINGS = ["-Wall", "-Wextra", "-Wno-unused", "-Werror"]


@dataclasses.dataclass
class Block:
    file: pathlib.Path
    line: int  # of the first line inside the block
    mode: str
    text: str
    output: str | None = None

    def __str__(self):
        return f"{self.file}:{self.line}"

    def is_program(self):
        return self.mode not in WRAPPERS and re.search(r"\bint main\(", self.text) is not None

    def uses_orders(self):
        return '#include "Orders.h"' in self.text

    def source(self):
        numbered = f'#line {self.line} "{ROOT / self.file}"\n{self.text}'
        if self.mode not in WRAPPERS:
            return numbered
        wrapper = (ROOT / "tests/docs" / WRAPPERS[self.mode]).read_text()
        return wrapper.replace("@block@\n", f'{numbered}#line 1 "{WRAPPERS[self.mode]}, behind the block"\n')


def blocks_of(path):
    """The C++ blocks of a Markdown file, each with the output block that follows it."""
    blocks, head, start, previous = [], None, 0, None
    lines = path.read_text().splitlines()
    for number, line in enumerate(lines, 1):
        fence = re.match(r"\s*```\s*(.*?)\s*$", line)
        if not fence:
            continue
        if head is None:
            head, start = fence[1], number + 1
            continue
        text = "\n".join(lines[start - 1 : number - 1]) + "\n"
        words = head.split()
        if words[:1] == ["cpp"]:
            previous = Block(path.relative_to(ROOT), start, " ".join(words[1:]), text)
            blocks.append(previous)
        elif words == ["output"] and previous:
            previous.output = text
        else:
            previous = None
        head = None
    return blocks


def run(command, **options):
    try:
        return subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60, **options)
    except subprocess.TimeoutExpired:
        return subprocess.CompletedProcess(command, returncode="a timeout", stdout="", stderr="too slow")


def fault_of(block, options):
    """What is wrong with the block, or None."""
    if block.mode not in ["", "no-run", *WRAPPERS]:
        return f"unknown kind of block: cpp {block.mode}"
    if block.output is not None and (block.mode or not block.is_program()):
        return "an output block must follow a program that is run"
    with tempfile.TemporaryDirectory() as folder:
        source, program = pathlib.Path(folder, "block.cpp"), pathlib.Path(folder, "block")
        source.write_text(block.source())
        command = [options.compiler, "-std=c++20", *WARNINGS, *options.flags, "-I", options.include, str(source)]
        if block.uses_orders():
            command += ["-I", str(ORDERS), str(ORDERS / "Orders.cpp")]
            shutil.copy(ORDERS / "orders.xml", folder)
        if block.is_program():
            library = pathlib.Path(options.library).resolve()
            command += ["-o", str(program), str(library), f"-Wl,-rpath,{library.parent}"]
        else:
            command += ["-fsyntax-only"]
        compiled = run(command)
        if compiled.returncode != 0:
            return compiled.stderr
        if block.mode or not block.is_program():
            return None
        result = run([str(program)], cwd=folder)
        if result.returncode != 0:
            return f"exits with {result.returncode}\n{result.stdout}{result.stderr}"
        if block.output is not None and result.stdout != block.output:
            return f"prints\n{result.stdout}instead of\n{block.output}"
    return None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--include", required=True, help="the folder that holds ovxmllib/ovxmllib.h")
    parser.add_argument("--library", required=True, help="the shared library")
    parser.add_argument("flags", nargs="*", help="further compiler flags, behind --")
    options = parser.parse_args()

    pages = [page for page in [ROOT / "README.md", *sorted(ROOT.glob("docs/*.md"))] if page.exists()]
    blocks = [block for page in pages for block in blocks_of(page)]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        faults = list(pool.map(lambda block: fault_of(block, options), blocks))
    for block, fault in zip(blocks, faults):
        print(f"{block}: ok" if fault is None else f"{block}: {fault}")
    failed = sum(fault is not None for fault in faults)
    print(f"{len(blocks)} blocks in {len(pages)} pages, {failed} failed")
    return 1 if failed or not blocks else 0


if __name__ == "__main__":
    sys.exit(main())
