"""Documents that a faulty writer or reader of Fast Infoset gets wrong, made here because nobody installs them."""

DOCTYPE = """<?xml version="1.0"?>
<!DOCTYPE r [
  <!ENTITY co "Oak &#38;#38; Elm"> <!NOTATION gif SYSTEM "gif"> <!ENTITY pic SYSTEM "p.gif" NDATA gif>
  <!ATTLIST b d CDATA "by default" t NMTOKENS #IMPLIED> <!-- in the subset --> <?in the subset?>
]>
<!-- ahead --><?p ahead?><r>&co;<b t="  x   y "/><b d="given"/> and<?p?> &co;<!-- within --> again</r>
<!-- behind --><?p behind?>
"""

NAMESPACES = """<a xmlns="u" xmlns:p="v" p:x="1" x="2">
<p:a xmlns:p="w" p:x="3"><p:a xmlns:p="v"/></p:a><a xmlns=""><b/><c xmlns="w"/></a>
<q:a xmlns:q="u" xmlns:r="u" q:x="4" xml:lang="nl"><r:a r:x="5"/></q:a><p:b p:x="6"/></a>"""

MIXED = """<p xmlns:i="urn:inline">One <i:b>two <i:i>three</i:i></i:b><i:b/> four <![CDATA[<five> & ]] ]]>&#x20;six
<i:b> </i:b>	<i:b>seven</i:b>.</p>"""

CHARACTERS = """<Ωμέγα xmlns:日="urn:日本" ä="&#9;&#10; &lt;&quot;&apos;>" 日:本="𠮷&#x10FFFF;">
\u00a0\u0080\u07ff\u0800\ufffd&#x10000;🔔
&#x9;]]&gt; é<日:本/>e\u0301</Ωμέγα>"""

EMPTINESS = """<a b="" c=" "><a b=""/><a></a><a><![CDATA[]]></a><a> </a><a c=" "
/></a>"""


def element(content, name="r", attributes=""):
    return f"<{name}{attributes}>{content}</{name}>"


def lengths():
    """Octets in names, values and texts: both sides of every place where the form of a length changes."""
    sizes = [1, 2, 3, 8, 9, 64, 65, 258, 259, 264, 265, 320, 321, 65536]
    items = [element("t" * n, "n" * min(n, 321), f' {"a" * min(n, 321)}="{"v" * n}"') for n in sizes]
    return element("".join(items + [element("é" * n) for n in (1, 4, 5, 129, 130, 132, 133)]))


def indexes():
    """More names, values and texts than each index form holds but the longest, used again in another order."""
    def items(numbers):
        return "".join(element(n, f"e{n}" if n < 2100 else "e", f' a{n}="{n}"') for n in numbers)
    again = (8399, 8257, 8256, 8255, 2081, 2080, 2079, 1041, 1040, 1039, 65, 64, 63, 33, 32, 31, 17, 16, 15, 1, 0)
    return element(items(range(8400)) + items(again))


def ends():
    """Elements that end together, alone, behind attributes and behind text."""
    deep = "".join(f"<d{n % 7}>" for n in range(300)) + "".join(f"</d{n % 7}>" for n in reversed(range(300)))
    return element(f"<a><b><c/></b></a><a><b/><b><c x=''/></b></a><a>t</a><a x='1'/>{deep}<a><b>t</b></a>")


# What TypedDocument.java stores.
TYPED_VALUES = f"""<typed xmlns="urn:example:typed"><octets>AAEC/w==</octets><short>-2</short>\
<shorts>-32768 0 32767</shorts><int>2147483647</int><ints>{" ".join("0" * 300)}</ints>\
<long>-9223372036854775808 1</long><true>true</true><false>false</false><float>1.5 -0.25</float>\
<double>-1234.5</double><uuid>00112233-4455-6677-8899-aabbccddeeff</uuid><number>-12.50 +3</number>\
<time>2001-02-03T04:05:06Z</time><plain>café 𠮷</plain><cdata>&lt;a> &amp; ]]</cdata>\
<attributes int="17 -1" octets="AAEC/w==" real="0.5" plain="café 𠮷"/></typed>"""

HARD = {
    "doctype": DOCTYPE.encode(),
    "namespaces": NAMESPACES.encode(),
    "mixed": MIXED.encode(),
    "characters": CHARACTERS.encode(),
    "utf-16": ('<?xml version="1.0" encoding="UTF-16"?>' + CHARACTERS).encode("utf-16"),
    "latin-1": '<?xml version="1.0" encoding="ISO-8859-1"?><ä ö="ü">ß</ä>'.encode("latin-1"),
    "byte-order-mark": "\ufeff<a>é</a>".encode(),
    "carriage-returns": b"<a>one\r\ntwo\rthree&#13;&#10;four&#13;</a>",
    "emptiness": EMPTINESS.encode(),
    "lengths": lengths().encode(),
    "indexes": indexes().encode(),
    "ends": ends().encode(),
    "instruction-of-f0": "<?p \U00010000ð?><!-- ÿ --><a><!--\U0003ffff--><b/><?q ÿ?></a>".encode(),
}
