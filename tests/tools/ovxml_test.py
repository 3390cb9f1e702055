#!/usr/bin/env python3
"""Runs the program ovxml as a user would. Usage: ovxml_test.py OVXML [unittest arguments]"""
import gzip
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

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from xml_documents import Outline, documents, dump, without_external_dtd, without_white_space  # noqa: E402

PROGRAM = os.path.abspath(sys.argv.pop(1))
HEADER = '<?xml version="1.0" encoding="UTF-8"?>\n'
PER_KIND = 3


def run(*arguments, stdin=b"", **options):
    return subprocess.run([PROGRAM, *map(str, arguments)], input=stdin, capture_output=True, timeout=120, **options)


def canonical(option, data):
    return subprocess.run(["xmllint", "--nonet", option, "-"], input=data, capture_output=True, check=True).stdout


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
