#!/usr/bin/env python3
"""Runs the program ovxml as a user would. Usage: ovxml_test.py OVXML [unittest arguments]"""
import gzip
import json
import os
import pathlib
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree as ET
from xml.parsers import expat

TESTS = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(TESTS / "support"), str(TESTS / "interop")]
from fast_infoset_interop import carriage_return, text_place  # noqa: E402
from hard_documents import HARD  # noqa: E402
from xml_documents import (Outline, documents, dump, map_text, without_external_dtd,  # noqa: E402
                           without_white_space)

PROGRAM = os.path.abspath(sys.argv.pop(1))
HEADER = '<?xml version="1.0" encoding="UTF-8"?>\n'
PER_KIND = 3
JSON_DEPTH = 45  # the library reads JSON to a depth of 100 values, and each element may be an array too


def run(*arguments, stdin=b"", **options):
    return subprocess.run([PROGRAM, *map(str, arguments)], input=stdin, capture_output=True, timeout=120, **options)


def canonical(option, data):
    return subprocess.run(["xmllint", "--nonet", option, "-"], input=data, capture_output=True, check=True).stdout


def is_mixed(tree):
    """Whether words stand beside child elements."""
    _, _, text, children = tree
    return bool(children) and any(t.strip() for t in [text, *(tail for _, tail in children)]) or any(
        is_mixed(child) for child, _ in children)


def depth_of(tree):
    return 1 + max((depth_of(child) for child, _ in tree[3]), default=0)


def as_json_keeps(tree):
    """White space removed that stands alone beside children, and carriage returns, which reading JSON drops."""
    def without_returns(node):
        tag, attributes, text, children = node
        return (tag, [(name, value.replace("\r", "")) for name, value in attributes], text,
                [(without_returns(child), tail) for child, tail in children])
    return without_returns(map_text(tree, lambda text, beside: "" if beside and not text.strip() else text))


# What the listing of a Fast Infoset document must tell: octets and their meaning, here of every form there is.
EVERY_FORM = """
E0000001 identification, version 1 (12.6)
7F document, optional components (C.2.3)
00 additional data: 1
0075 identifier "u"
010102 data, octets: 2
0FFF initial vocabulary (C.2.5)
00 restricted alphabets: 1
02616263 alphabet 16: "abc"
00 encoding algorithms: 1
0076 algorithm 32: "v"
00 prefix entries: 1
0070 prefix 2: "p"
00 namespace entries: 1
0075 namespace 2: "u"
01 local name entries: 2
0061 local name 1: "a"
0078 local name 2: "x"
00 other name entries: 1
006E other name 1: "n"
00 other URI entries: 1
0073 other URI 1: "s"
00 attribute value entries: 1
0076 attribute value 1: "v" in UTF-8
00 text entries: 1
0074 text 1: "t" in UTF-8
00 other string entries: 1
006F other string 1: "o" in UTF-8
00 element name entries: 1
03010100 element name 1: "p:a"
00 attribute name entries: 1
0001 attribute name 1: "x"
C3 notation (C.11)
80 name 1: "n"
80 system identifier 1: "s"
80 public identifier 1: "s"
F0 end of the notations
D1 unparsed entity (C.10)
80 name 1: "n"
80 system identifier 1: "s"
80 public identifier 1: "s"
80 notation 1: "n"
F0 end of the unparsed entities
045554462D38 character encoding scheme "UTF-8"
01 standalone: yes
42312E30 version 2: "1.0" in UTF-8
C7 document type declaration (C.9)
80 system identifier 1: "s"
80 public identifier 1: "s"
E1 processing instruction (C.5)
80 target 1: "n"
80 content 1: "o"
F0 end of the declaration
E2 comment (C.8)
0063 content "c" in UTF-8
78 element, attributes, namespace attributes (C.3)
CF namespace attribute, prefix, namespace
81 prefix 2: "p"
81 namespace 2: "u"
CC namespace attribute
F0 end of the namespace attributes
00 name 1: "p:a"
00 attribute, name 1: "x"
FF value, empty
78 attribute, name 2: as follows
0079 local name 3: "y"
80 value 1: "v"
F0 end of the attributes
A0 text 1: "t"
8C0A01FFFE0001 text "-2 1" in algorithm 3, short
8C0E0100000005 text "5" in algorithm 4, int
8C1438 text "true" in algorithm 6, boolean
8C1A013FC00000 text "1.5" in algorithm 7, float
8806022001A01A01 text "2001-01-01" in alphabet 2, date and time
883C1B text "abc" in alphabet 16
8500E9 text "é" in UTF-16BE
E1 processing instruction (C.5)
80 target 1: "n"
80 content 1: "o"
C8 entity reference (C.6)
80 name 1: "n"
3C element, name 2: as follows
80 local name 1: "a"
FF end of the element and of the element
F0 end of the document
00 behind the end of the document
"""


class OvxmlTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def file(self, content, name="in.xml"):
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path

    def check(self, result, code, *parts):
        """The exit code, and one line on standard error that holds these parts."""
        line = result.stderr.decode()
        self.assertEqual(result.returncode, code, line)
        self.assertRegex(line, r"\Aovxml: [^\n]*\n\Z")
        for part in parts:
            self.assertIn(part, line)

    def test_writes_whole_documents(self):
        source = '<a xmlns="u" xmlns:q="v"><q:b c="&quot;&#9;&#10;">x &lt; y<d/> z</q:b>\n <e/>\n</a>'
        rows = [
            ([], source.replace('c="&quot;&#9;&#10;"', '\nc="&quot;&#9;&#10;"\n')),
            (["--format"], '<a xmlns="u" xmlns:q="v">\n\t<q:b \nc="&quot;&#9;&#10;"\n>x &lt; y\t\t<d/>\nz\t</q:b>\n'
                           "\t<e/>\n</a>\n"),
            (["--indent", "1", "--eol", "crlf"], '<a xmlns="u" xmlns:q="v">\r\n <q:b \r\nc="&quot;&#9;&#10;"\r\n>'
                                                 "x &lt; y  <d/>\r\nz </q:b>\r\n <e/>\r\n</a>\r\n"),
        ]
        path = self.file(source)
        for options, expected in rows:
            with self.subTest(options):
                result = run("convert", path, *options, "--no-header")
                self.assertEqual((result.stdout.decode(), result.stderr, result.returncode), (expected, b"", 0))
        wide = run("convert", path, "--encoding", "utf16").stdout
        self.assertTrue(wide.startswith(b"\xff\xfe") and "UTF-16" in wide.decode("utf-16"))
        self.assertEqual(dump(wide), dump(source))

    def test_declares_at_the_root(self):
        rows = [  # nested declarations, a second alias, an alias of two namespaces, changes of the default
            ('<a><p:b xmlns:p="u"/></a>', '<a xmlns:p="u"><p:b/></a>'),
            ('<a xmlns:p="u" xmlns:q="u"><q:b/></a>', '<a xmlns:p="u" xmlns:q="u"><p:b/></a>'),
            ('<a><p:b xmlns:p="u"/><p:c xmlns:p="v" p:d=""/></a>',
             '<a xmlns:p="u"><p:b/><c xmlns="v" xmlns:AA="v" AA:d=""/></a>'),
            ('<a xmlns="u"><b xmlns=""><c xmlns="v"/><d/></b><e f=""/></a>',
             '<a xmlns="u"><b xmlns=""><c xmlns="v"/><d/></b><e f=""/></a>'),
        ]
        for source, expected in rows:
            self.assertEqual(run("convert", "-", "--no-header", stdin=source.encode()).stdout.decode(), expected)

    def test_documents_survive(self):
        for path in documents(PER_KIND):
            with self.subTest(path):
                try:
                    original = dump(pathlib.Path(path).read_bytes())
                except ET.ParseError:  # packages hold such files, too
                    self.check(run("convert", path), 1)
                    continue
                for options in [[], ["--encoding", "utf16"], ["--gzip", "-q"], ["--format"]]:
                    result = run("convert", path, *options)
                    self.assertEqual((result.returncode, result.stderr), (0, b""), options)
                    data = result.stdout
                    if data.startswith(b"\x1f\x8b"):
                        data = gzip.decompress(data)
                    if options != ["--format"]:
                        self.assertEqual(dump(data), original, options)
                        continue
                    self.assertEqual(without_white_space(dump(data)), without_white_space(original))
                    self.assertEqual(run("convert", "-", "--format", stdin=data).stdout.count(b"\n"), data.count(b"\n"))

    @unittest.skipUnless(shutil.which("xmllint"), "no xmllint; scripts/setup.sh --interop installs it")
    def test_canonical_forms_survive(self):
        """The form with all declarations where the root has all of them, otherwise the one with those that are used.
        Left out are documents with two aliases for a namespace, of which ovxml keeps one."""
        compared = []
        for path in documents(PER_KIND):
            try:
                data = without_external_dtd(pathlib.Path(path).read_bytes())
                outline = Outline(data)
            except expat.ExpatError:
                continue
            if not outline.keeps_its_prefixes():
                continue
            option = "--c14n" if outline.declares_at_root else "--exc-c14n"
            with self.subTest(path):
                result = run("convert", "-", stdin=data)
                self.assertEqual(canonical(option, result.stdout), canonical(option, outline.bare))
            compared.append(path)
        self.assertGreaterEqual(len(compared), 8, compared)

    def there_and_back(self, path, *options):
        """The document in the format that the options ask for, and what is made of it again."""
        there = run("convert", path, *options)
        self.assertEqual((there.returncode, there.stderr), (0, b""))
        back = run("convert", "-", "--to", "xml", stdin=there.stdout)
        self.assertEqual((back.returncode, back.stderr), (0, b""))
        return there.stdout, carriage_return(dump(back.stdout))

    def test_documents_survive_other_formats(self):
        compared = 0
        made = [self.file(data, f"{name}.xml") for name, data in HARD.items()]
        for path in [*documents(PER_KIND), *made]:
            try:
                original = carriage_return(dump(pathlib.Path(path).read_bytes()))
            except ET.ParseError:
                continue
            with self.subTest(path):
                infoset, back = self.there_and_back(path, "--to", "fi")
                self.assertEqual(back, text_place(original))
                if is_mixed(original) or depth_of(original) > JSON_DEPTH:
                    continue
                text, back = self.there_and_back(path, "--to", "json")
                json.loads(text)
                self.assertEqual(as_json_keeps(back), as_json_keeps(original))
                compared += 1
        self.assertGreaterEqual(compared, 15)

    def test_writes_json(self):
        source = ('<a xmlns="u" xmlns:q="v"><q:b c="1" q:d="2">x</q:b> <e/><e>y\n"</e><q:b/><e xmlns=""/>\n<e>z</e><e/>'
                  "one <q:e/><e><f>1</f><f>2</f></e> two</a>")
        rows = [
            ([], '{"ns1:a": {"@xmlns:ns1": "u","@xmlns:q": "v","q:b": {"@c": "1","@q:d": "2","#text": "x"},'
                 r'"ns1:e": [null,"y\n\""],"q:b": null,"e": null,"ns1:e": ["z",null],"q:e": null,'
                 '"ns1:e": {"ns1:f": ["1","2"]},"#text": "one  two"}}'),
            (["--json-mode", "attributes"], r'{"a": {"b": {"@c": "1","@d": "2","#text": "x"},"e": [null,"y\n\""],'
             '"b": null,"e": [null,"z",null,null,{"f": ["1","2"]}],"#text": "one  two"}}'),
            (["--json-mode", "none"], r'{"a": {"b": {"c": "1","d": "2","": "x"},"e": [null,"y\n\""],'
             '"b": null,"e": [null,"z",null,null,{"f": ["1","2"]}],"": "one  two"}}'),
        ]
        path = self.file(source)
        for options, expected in rows:
            with self.subTest(options):
                self.assertEqual(run("convert", path, "--to", "json", *options).stdout.decode(), expected)
        self.assertEqual(run("convert", "-", "--to", "json", "--indent", "1", stdin=b"<a><b>1</b></a>").stdout.decode(),
                         '{\n "a": {\n  "b": "1"\n }\n}')

    def test_reads_json(self):
        rows = [  # roots, arrays, text beside elements, what XML would change in a value
            ('{"a": {"@b": "1", "c": [1, {"d": true}, null], "#text": "t"}}', [],
             '<a b="1"><c>1</c><c><d>true</d></c><c/>t</a>'),
            (' // a list\n[1, {"b": 2}]', ["--root", "r"], None),
            ('{"a": 1, "b": {"@c": 2}}', ["--root", "r"], '<r><a>1</a><b c="2"/></r>'),
            ('{"a": {"@b": "x"}}', ["--json-mode", "none"], None),
            ('{"a": {"b": "x"}}', ["--json-mode", "none", "--root", "r"], "<r><a><b>x</b></a></r>"),
            ('{"p:a": {"@xmlns:p": "u", "@p:b": "\\t\\n\\"<"}}', [],
             '<p:a xmlns:p="u" \np:b="&#9;&#10;&quot;&lt;"\n/>'),
            ('{"a": {"b": "\\n\\t", "c": {"d": 1}, "#text": "\\n\\t words \\t"}}', [],
             "<a><b>\n\t</b><c><d>1</d></c>\n\t words \t</a>"),
        ]
        for source, options, expected in rows:
            with self.subTest(source):
                result = run("convert", "-", "--to", "xml", "--no-header", *options, stdin=source.encode())
                if expected is None:
                    self.check(result, 1)
                else:
                    self.assertEqual((result.stdout.decode(), result.stderr), (expected, b""))
        path = self.file("12", "value.json")
        self.assertEqual(run("convert", path, "--root", "n", "--no-header").stdout, b"<n>12</n>")
        out = self.folder / "out.json.gz"
        run("convert", "-", "-o", out, stdin=b"<a>" + b"<b>text</b>" * 100 + b"</a>")
        self.assertEqual(json.loads(gzip.decompress(out.read_bytes())), {"a": {"b": ["text"] * 100}})
        self.assertEqual(run("check", out, "-q").returncode, 0)

    def test_tells_and_checks_other_formats(self):
        infoset, jason = self.folder / "a.fi", self.folder / "a.json"
        for path in (infoset, jason):
            run("convert", "-", "-o", path, stdin=b'<p:a xmlns:p="u" b="">t<c d="1"/></p:a>')
        for path, title, encoding in [(infoset, "Fast Infoset", "binary"), (jason, "JSON", "UTF-8")]:
            lines = run("info", path).stdout.decode().splitlines()
            self.assertEqual([line[14:] for line in lines[:-1]], [
                title, "none", encoding, f"{path.stat().st_size} bytes", "a in u", "p = u", "2", "2", "2",
                "1 characters"])
        octets = infoset.read_bytes()
        rows = [  # the place in JSON, no place in what is made of it, the octet in Fast Infoset
            ('{"a": {\n "b": tru}}', ":2:10: Expected 'true'. Path: $.b.a"),
            ('{"a": 1, "b": 2}', ": junk after document element"),
            (r'{"a": "\ud800"}', ": Failed to convert value '?'"),
            ('{"p:a": 1}', ": unbound prefix"), ('{"a b": 1}', ": Failed to convert name 'a b'"),
            (octets[:-3], ": Failed to parse FastInfoset. Unexpected End of File. Octet"),
        ]
        for content, message in rows:
            path = self.file(content, "bad")
            result = run("check", path)
            self.assertEqual(result.returncode, 1)
            self.assertIn(f"{path}{message}", result.stdout.decode())
            self.check(run("convert", path), 1, message)
        self.check(run("check", jason, "--max-depth", "1"), 4, "--max-depth")
        self.check(run("info", infoset, "--max-depth", "1"), 4, "--max-depth")
        self.check(run("info", jason, "--max-input", "9"), 4, "--max-input")
        self.check(run("info", self.file("<a/>"), "--root", "r"), 2, "--root")

    def test_keeps_prefixes_that_values_use_in_fast_infoset(self):
        source = b'<a xmlns="u" xmlns:p="v" xmlns:q="w" b="p:T">q:x/@c</a>'
        self.assertEqual(self.there_and_back(self.file(source), "--to", "fi")[1], dump(source))
        infoset = run("convert", "-", "--to", "fi", "--fi-suggested", stdin=source).stdout
        self.assertEqual(run("convert", "-", "--no-header", stdin=infoset).stdout, source)

    def test_lists_the_octets_of_fast_infoset(self):
        rows = [line.split(" ", 1) for line in EVERY_FORM.strip().splitlines()]
        octets = bytes.fromhex("".join(row[0] for row in rows))
        result = run("fi-dump", self.file(octets, "a.fi"))
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        listed, offset = result.stdout.decode().splitlines(), 0
        for (expected, meaning), line in zip(rows, listed, strict=True):
            self.assertEqual((int(line[:8]), line[9:34].replace(" ", ""), line[34:].strip()),
                             (offset, expected, meaning))
            offset += len(expected) // 2
        self.assertEqual(run("fi-dump", "-", stdin=gzip.compress(octets)).stdout, result.stdout)

        for length in range(len(octets) - 1):  # the last stands behind the document
            cut = run("fi-dump", "-", stdin=octets[:length])
            self.check(cut, 1, f" of {length}.")
            printed = cut.stdout.decode().splitlines()
            self.assertEqual(printed[:-1], listed[:max(0, len(printed) - 1)])
        for place in range(0, len(octets), 3):
            self.assertIn(run("fi-dump", "-", stdin=octets[:place] + b"\xee" + octets[place + 1:]).returncode, (0, 1))

    def test_reads_and_writes_compressed_files(self):
        source = ("<a>" + "<b>text</b>" * 100 + "</a>").encode()
        path, out = self.file(gzip.compress(source), "in.xml.gz"), self.folder / "out.xml.gz"
        self.assertEqual(run("convert", path, "--no-header").stdout, source)
        self.assertEqual(run("convert", path, "-o", out).returncode, 0)
        self.assertEqual(gzip.decompress(out.read_bytes()), HEADER.encode() + source)
        self.check(run("convert", "-", "-o", out, stdin=b"<a/>"), 0, "uncompressed")
        self.assertEqual(out.read_bytes(), HEADER.encode() + b"<a/>")
        self.assertIn("gzip", run("info", path).stdout.decode())

    def test_tells_what_is_in_a_document(self):
        source = '<?xml version="1.0" encoding="ISO-8859-1"?><p:a xmlns:p="u" b="" c=""><d xmlns="v">\xe4\xf6</d></p:a>'
        lines = run("info", self.file(source.encode("latin-1"))).stdout.decode().splitlines()
        fields = [(line[:14].rstrip(), line[14:]) for line in lines]
        self.assertEqual(fields[:-1], [
            ("Format:", "XML"), ("Compression:", "none"), ("Encoding:", "ISO-8859-1"), ("Size:", f"{len(source)} bytes"),
            ("Root:", "a in u"), ("Namespace:", "p = u"), ("Namespace:", "(default) = v"), ("Elements:", "2"),
            ("Attributes:", "2"), ("Depth:", "2"), ("Text:", "2 characters")])
        self.assertRegex(fields[-1][1], r"^[\d.]+ MB/s$")

    def test_checks_every_file(self):
        good, bad = self.file("<a/>", "good"), self.file("<a>\n <b></c>\n</a>", "bad")
        result = run("check", bad, good, self.folder / "none", "-", stdin=b"<p:a/>")
        self.assertEqual(result.stdout.decode(), f"{bad}:2:7: mismatched tag\n{good}: well-formed\n"
                                                 "-:1:1: unbound prefix\n")
        self.check(result, 1, "none: No such file or directory")

    def test_exit_codes(self):
        good, bad = self.file("<a><b c='' d=''>text</b></a>"), self.file("<a><b/></a><c/>", "bad.xml")
        doctype, out = self.file("<!DOCTYPE a><a/>", "doctype.xml"), self.folder / "none/out.xml"
        self.assertEqual([run("--help").returncode, run("--version").returncode], [0, 0])
        self.assertEqual(run("convert", doctype, "--untrusted", "--doctype").returncode, 0)
        rows = [
            (1, ["convert", bad], f"{bad}:1:12: junk after document element"),
            (1, ["convert", "-"], "-:1:1: no element found"),
            (1, ["convert", self.file("<a xmlns:p='u'><q:b/></a>", "q.xml"), "-o", self.folder / "q.out"], "unbound"),
            (2, [], ""), (2, ["convert"], ""), (2, ["convert", good, "--eol", "cr"], "--eol"),
            (2, ["convert", good, "--to", "png"], "png"), (2, ["info", good, "--max-depth", "-1"], "--max-depth"),
            (2, ["convert", good, "--indent", "x"], "'x'"), (2, ["list", good], ""),
            (3, ["convert", self.folder / "none.xml"], "none.xml: No such file"), (3, ["info", self.folder], "directory"),
            (3, ["convert", good, "-o", out], f"{out}: No such file"), (3, ["convert", good, "-o", self.folder], ""),
            (4, ["convert", good, "--max-depth", "1"], f"{good}:1:4: The elements are nested deeper than 1 levels. "
                                                       "--max-depth sets"),
            (4, ["check", good, "--max-attributes", "1"], "--max-attributes"), (4, ["info", good, "--max-text", 3], "-text"),
            (4, ["info", good, "--max-input", "9"], "--max-input"), (4, ["convert", doctype, "--untrusted"], "--doctype"),
        ]
        for code, arguments, part in rows:
            with self.subTest(arguments):
                result = run(*arguments)
                self.check(result, code, part)
                self.assertEqual(result.stdout, b"")
        self.check(run("check", "-", "--max-input", "3", stdin=b"<a></a>"), 4, "--max-input")
        self.assertEqual({path.suffix for path in self.folder.iterdir()}, {".xml"})

    def test_full_disk(self):
        path = self.file("<a>" + "x" * 100000 + "</a>")
        self.check(run("convert", path, "-o", "/dev/full"), 3, "/dev/full: No space left on device")
        with open("/dev/full", "wb") as full:
            result = subprocess.run([PROGRAM, "convert", str(path)], stdout=full, stderr=subprocess.PIPE, timeout=60)
        self.check(result, 3, "No space left on device")

    def test_replaces_the_target_as_a_whole(self):
        path, real, link = self.file("<new/>"), self.file("<old/>", "real"), self.folder / "link"
        link.symlink_to(real)
        real.chmod(0o640)
        self.check(run("convert", "-", "-o", link, stdin=b"<broken"), 1)
        self.assertEqual(real.read_text(), "<old/>")
        self.assertEqual(run("convert", path, "-o", link).returncode, 0)
        self.assertEqual((real.read_text(), stat.S_IMODE(real.stat().st_mode)), (HEADER + "<new/>", 0o640))
        self.assertTrue(link.is_symlink())
        self.assertEqual(run("convert", real, "-o", real, "--no-header").returncode, 0)
        self.assertEqual(real.read_text(), "<new/>")
        self.assertEqual(len(list(self.folder.iterdir())), 3)

    def has_output(self, pid, source):
        """Whether a file of the folder that the process has open, other than its source, has something in it."""
        for descriptor in pathlib.Path(f"/proc/{pid}/fd").iterdir():
            try:
                target = os.readlink(descriptor)
                if target.startswith(str(self.folder)) and target != str(source) and os.stat(descriptor).st_size > 0:
                    return True
            except FileNotFoundError:  # closed in the meantime
                continue
        return False

    def test_killed_half_way_leaves_nothing(self):
        path, out = self.file("<a>" + "<b c='d'>text</b>" * 1_000_000 + "</a>"), self.folder / "out.xml"
        scratch = self.folder / "scratch"
        scratch.mkdir()
        for number in [signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGKILL]:
            process = subprocess.Popen([PROGRAM, "convert", path, "-o", out], env={**os.environ, "TMPDIR": str(scratch)})
            # Half-way is when the file without a name has something in it.
            deadline = time.monotonic() + 60
            while not (written := self.has_output(process.pid, path)) and time.monotonic() < deadline:
                self.assertIsNone(process.poll())
            self.assertTrue(written)
            process.send_signal(number)
            self.assertEqual(process.wait(60), -number)
            self.assertEqual(sorted(p.name for p in self.folder.iterdir()), ["in.xml", "scratch"])
            self.assertEqual(list(scratch.iterdir()), [])

    def test_shows_progress_when_asked(self):
        path = self.file("<a>" + "<b c='d'>text</b>" * 1_000_000 + "</a>")
        self.assertRegex(run("info", path, "--progress").stderr.decode(), r"\rovxml: .*: \d+ %")
        self.assertEqual(run("info", path).stderr, b"")


if __name__ == "__main__":
    unittest.main()
