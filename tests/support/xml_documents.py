"""Real XML documents, and what is compared of them: for the tests that run programs on them."""
import glob
import pathlib
import re
import xml.etree.ElementTree as ET
from xml.parsers import expat

SAMPLES = pathlib.Path(__file__).resolve().parent.parent / "data/documents"

# Documents that packages install, by kind; what is not there is passed over. The samples beside the tests are always
# there and hold at least one of each kind.
INSTALLED = ["/usr/share/mime/packages/freedesktop.org.xml", "/usr/share/xml/iso-codes/*.xml",
             "/usr/share/icons/*/scalable/*/*.svg", "/usr/share/gir-1.0/*.gir", "/usr/share/maven-repo/**/*.pom",
             "/usr/share/xml/docbook/**/*.xsl", "/usr/share/xml/docbook/**/common/[d-z][a-z].xml",
             "/usr/share/xml/docbook/**/*.rng", "/usr/share/xml/**/*.xsd", "/usr/share/polkit-1/actions/*.policy",
             "/usr/share/fontconfig/conf.avail/*.conf", "/usr/share/dbus-1/interfaces/*.xml",
             "/usr/share/metainfo/*.xml", "/usr/share/glib-2.0/schemas/*.xml", "/etc/xml/*.xml"]


def documents(per_kind):
    """Paths: the samples, and of each kind that is installed no more than `per_kind`."""
    found = sorted(map(str, SAMPLES.iterdir()))
    for pattern in INSTALLED:
        found += sorted(glob.glob(pattern, recursive=True))[:per_kind]
    return found


def dump(data):
    """Names, namespaces, attributes and text with its place, of XML in any encoding."""
    def node(element):
        return (element.tag, sorted(element.attrib.items()), element.text or "",
                [(node(child), child.tail or "") for child in element])
    return node(ET.fromstring(data))


def map_text(tree, change):
    """The dump with each text replaced by what `change` makes of it and of whether children stand beside it."""
    tag, attributes, text, children = tree
    beside = bool(children)
    return (tag, attributes, change(text, beside),
            [(map_text(child, change), change(tail, beside)) for child, tail in children])


def without_white_space(tree):
    """White space that stands beside children removed."""
    return map_text(tree, lambda text, beside: "".join(text.split()) if beside else text)


EXTERNAL_IDENTIFIER = re.compile(rb"""(<!DOCTYPE\s+[^\s>\[]+)\s+(?:SYSTEM|PUBLIC\s*(?:"[^"]*"|'[^']*'))\s*"""
                                 rb"""(?:"[^"]*"|'[^']*')""")


def without_external_dtd(data):
    """The document freed of its reference to an external DTD, which some programs would read and others not."""
    return EXTERNAL_IDENTIFIER.sub(rb"\1", data, 1)


class Outline:
    """What of a document in UTF-8 bears on the comparison of canonical forms. Throws expat.ExpatError."""

    def __init__(self, data):
        self.declares_at_root = True  # no element below the root has a declaration
        self._aliases = set()  # (alias, namespace) as declared
        self._uses = set()  # (namespace, prefix) of elements
        self._cuts = []
        self._depth = 0
        self._read(data)
        for start, end in reversed(self._cuts):
            data = data[:start] + data[end:]
        self.bare = data  # without comments and processing instructions

    def keeps_its_prefixes(self):
        """Whether one alias a namespace is enough: no alias is declared for two, no namespace's elements use two."""
        return all(len({pair[0] for pair in pairs}) == len(pairs) for pairs in (self._aliases, self._uses))

    def _read(self, data):
        parser = expat.ParserCreate("UTF-8", " ")
        parser.namespace_prefixes = True  # names come as "namespace local prefix"

        def cut(terminator):
            place = parser.CurrentByteIndex
            self._cuts.append((place, data.index(terminator, place) + len(terminator)))

        def declare(alias, namespace):
            self._aliases.add((alias, namespace))
            self.declares_at_root &= self._depth == 0

        def start(name, _):
            parts = name.split(" ")
            self._uses.add((parts[0] if len(parts) > 1 else "", *parts[2:]))
            self._depth += 1

        def end(_):
            self._depth -= 1

        parser.CommentHandler = lambda _: cut(b"-->")
        parser.ProcessingInstructionHandler = lambda *_: cut(b"?>")
        parser.StartNamespaceDeclHandler = declare
        parser.StartElementHandler = start
        parser.EndElementHandler = end
        parser.Parse(data, True)
