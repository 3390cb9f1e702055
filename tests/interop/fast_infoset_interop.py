#!/usr/bin/env python3
"""Fast Infoset beside an independent implementation: what either writes of a document, the other reads to its tree.

Usage: fast_infoset_interop.py OVXML    the program ovxml and the implementation in Java
       fast_infoset_interop.py java     the one in Java on both sides, which tries out this script
Exit code 0 all equal, 1 not so, 77 nothing to compare with here; scripts/setup.sh --interop installs what it takes.
"""
import collections
import concurrent.futures
import itertools
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

FOLDER = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(FOLDER.parent / "support"))
from hard_documents import HARD, TYPED_VALUES  # noqa: E402
from xml_documents import documents, dump, map_text, without_external_dtd  # noqa: E402

JAR = "/usr/share/java/FastInfoset.jar"
# A JVM lives for one document here: no time to optimise, no threads to collect garbage, and nothing from the network.
JVM = ["-Xshare:auto", "-XX:TieredStopAtLevel=1", "-XX:+UseSerialGC", "-Xmx512m", "-Xss16m",
       "-Djavax.xml.accessExternalDTD="]
SKIPPED = 77
PER_KIND, MIN_REAL = 3, 30


# What may differ, by the name under which it is counted and printed. That comments, instructions, the DOCTYPE, prefixes
# and CDATA sections are not compared needs no rule: the dump holds none of them.

def carriage_return(tree):
    """Texts lose a carriage return that a character reference put in: ovxmllib drops them on reading."""
    return map_text(tree, lambda text, _: text.replace("\r", ""))


def text_place(tree):
    """Where a text stands between children: the tree of ovxmllib keeps an element's text in one piece."""
    tag, attributes, text, children = tree
    return (tag, attributes, text + "".join(tail for _, tail in children),
            [(text_place(child), "") for child, _ in children])


def uuid_form(tree):
    """A UUID stands without hyphens, and in which case is the reader's affair."""
    tag, attributes, text, children = tree
    text = text.replace("-", "").lower() if tag.endswith("}uuid") else text
    return tag, attributes, text, [(uuid_form(child), tail) for child, tail in children]


def rules_between(expected, actual, allowed):
    """The fewest of the rules under which two dumps are equal; None where none make them so."""
    for count in range(len(allowed) + 1):
        for rules in itertools.combinations(allowed, count):
            trees = [expected, actual]
            for rule in rules:
                trees = [rule(tree) for tree in trees]
            if trees[0] == trees[1]:
                return [rule.__name__ for rule in rules]
    return None


def difference(expected, actual):
    """Where two dumps differ first, in words."""
    for what, one, other in zip(("name", "attributes", "text"), expected, actual):
        if one != other:
            return f"<{expected[0]}>: {what} {one!r:.80} became {other!r:.80}"
    for (child, tail), (other_child, other_tail) in zip(expected[3], actual[3]):
        if child != other_child:
            return difference(child, other_child)
        if tail != other_tail:
            return f"<{expected[0]}>: behind <{child[0]}> {tail!r:.80} became {other_tail!r:.80}"
    return f"<{expected[0]}>: {len(expected[3])} children became {len(actual[3])}"


class Failed(Exception):
    pass


def run(*command):
    result = subprocess.run([*map(str, command)], capture_output=True, timeout=120)
    if result.returncode != 0:
        lines = result.stderr.decode(errors="replace").splitlines() or ["no word on standard error"]
        raise Failed(f"exit code {result.returncode}: {lines[0]}")


class Java:
    """One implementation in Java, by the command-line classes of its package; its writers differ in what they use."""
    WRITERS = {"SAX": "XML_SAX_FI", "DOM": "XML_DOM_FI", "StAX": "XML_SAX_StAX_FI"}
    LOST_WRITING, LOST_READING = [], []

    def write(self, xml, infoset, writer="SAX"):
        self._run(self.WRITERS[writer], xml, infoset)

    def read(self, infoset, xml):
        self._run("FI_SAX_XML", infoset, xml)

    @staticmethod
    def _run(tool, source, target):
        run("java", *JVM, "-cp", JAR, "com.sun.xml.fastinfoset.tools." + tool, source, target)


class Ovxml:
    WRITERS = {"default": [], "suggested": ["--fi-suggested"]}
    LOST_WRITING, LOST_READING = [carriage_return], [carriage_return, text_place]

    def __init__(self, program):
        self._program = os.path.abspath(program)

    def knows_fast_infoset(self):
        command = [self._program, "convert", "--help"]
        return b"--fi-suggested" in subprocess.run(command, capture_output=True, timeout=60).stdout

    def write(self, xml, infoset, writer="default"):
        run(self._program, "convert", xml, "--to", "fi", *self.WRITERS[writer], "-o", infoset)

    def read(self, infoset, xml):
        run(self._program, "fi-dump", infoset)  # knows by itself what there is
        run(self._program, "convert", infoset, "--to", "xml", "-o", xml)


# The writer of ovxmllib declares no namespace that begins so, and a strict reader refuses a prefix that is not declared.
UNDECLARED = re.compile(rb"http://www\.w3\.org/XML/1998/namespace[^\"']")
EXTERNAL_ENTITY = re.compile(rb"<!ENTITY[^>]*\b(?:SYSTEM|PUBLIC)\b")


def real_documents():
    """Well-formed ones by path. Neither side shall read external entities: documents that have some are left out."""
    for path in documents(PER_KIND):
        data = without_external_dtd(pathlib.Path(path).read_bytes())
        if EXTERNAL_ENTITY.search(data):
            continue
        try:
            dump(data)
        except SyntaxError:
            continue
        yield path, data


Outcome = collections.namedtuple("Outcome", "road octets rules failure")


def travel(road, expected, write, read, rules, infoset, back):
    """Writes the infoset, reads it back to XML and compares the trees."""
    try:
        write(infoset)
        read(infoset, back)
        actual = dump(back.read_bytes())
        applied = rules_between(expected, actual, rules)
    except (Failed, SyntaxError, OSError, subprocess.TimeoutExpired) as error:
        return Outcome(road, 0, [], str(error))
    if applied is None:
        return Outcome(road, 0, [], difference(expected, actual))
    return Outcome(road, infoset.stat().st_size, applied, None)


def compare(ours, name, data):
    """The outcomes of all roads of a document."""
    java, expected = Java(), dump(data)
    roads = [(java, writer, ours) for writer in Java.WRITERS if writer == "SAX" or name in HARD]
    if not UNDECLARED.search(data):
        roads += [(ours, writer, java) for writer in ours.WRITERS]
    with tempfile.TemporaryDirectory() as folder:
        xml, infoset, back = (pathlib.Path(folder) / file for file in ("x.xml", "x.fi", "back.xml"))
        xml.write_bytes(data)
        return [travel(f"{type(writing).__name__} {writer}, {type(reading).__name__}", expected,
                       lambda out: writing.write(xml, out, writer), reading.read,
                       list(dict.fromkeys(writing.LOST_WRITING + reading.LOST_READING)), infoset, back)
                for writing, writer, reading in roads]


def compare_typed(ours):
    """Java writes values by algorithms and alphabets; its package has no program for that, so it takes a compiler."""
    with tempfile.TemporaryDirectory() as folder:
        infoset, back = (pathlib.Path(folder) / file for file in ("x.fi", "back.xml"))
        return [travel(f"Java typed{option}, {type(ours).__name__}", dump(TYPED_VALUES),
                       lambda out: run("java", "-cp", JAR, FOLDER / "TypedDocument.java", *option.split(), out),
                       ours.read, [*ours.LOST_READING, uuid_form], infoset, back)
                for option in ("", " --utf-16")]


def skip(reason):
    print("skipped:", reason)
    return SKIPPED


def main(program):
    if shutil.which("java") is None or not os.path.exists(JAR):
        return skip(f"no java, or no {JAR}; scripts/setup.sh --interop installs them")
    ours = Java() if program == "java" else Ovxml(program)
    if isinstance(ours, Ovxml) and not ours.knows_fast_infoset():
        return skip("this ovxml has no convert --fi-suggested")
    real = list(real_documents())
    if len(real) < MIN_REAL:
        return skip(f"{len(real)} real documents are too few; scripts/setup.sh --interop installs more")

    sources = real + list(HARD.items())
    print(f"{len(real)} real and {len(HARD)} made documents, {sum(len(data) for _, data in sources)} octets of XML")
    print("read by ours only:", *(name for name, data in sources if UNDECLARED.search(data)))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        outcomes = dict(zip((name for name, _ in sources), pool.map(lambda source: compare(ours, *source), sources)))
    if has_compiler():
        outcomes["TypedDocument.java"] = compare_typed(ours)
    else:
        print("typed values not compared: no Java compiler; scripts/setup.sh --interop-bench installs one")
    return report(outcomes)


def has_compiler():
    modules = subprocess.run(["java", "--list-modules"], capture_output=True, timeout=60).stdout
    return b"jdk.compiler@" in modules


def report(outcomes):
    """Prints a line for each road and each failure; the exit code."""
    roads = collections.defaultdict(list)
    failures = 0
    for name, travelled in outcomes.items():
        for outcome in travelled:
            roads[outcome.road].append(outcome)
            if outcome.failure:
                failures += 1
                print(f"{name}: {outcome.road}: {outcome.failure}")
    for road, travelled in roads.items():
        rules = collections.Counter(itertools.chain.from_iterable(outcome.rules for outcome in travelled))
        print(f"  {road}: {sum(not outcome.failure for outcome in travelled)} of {len(travelled)} equal, "
              f"{sum(outcome.octets for outcome in travelled)} octets",
              *(f"({rule}: {count})" for rule, count in sorted(rules.items())))
    return 1 if failures else 0


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1]))
