#include "ovxmllib/document/XmlTextWriter.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/foundation/Encoder.h"
#include "tests/support/Documents.h"
#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;

// The part of `text` ahead of `end`, or all of it; `text` keeps what stands behind.
WStringView TakeUntil(WStringView& text, WChar end) {
  const WStringView taken = text.substr(0, text.find(end));
  text.remove_prefix(std::min(taken.size() + 1, text.size()));
  return taken;
}

WStringView TakeNamespace(WStringView& text) {
  if (text.find(u'|') == WStringView::npos) return {};
  const WStringView ns = TakeUntil(text, u'|');
  return ns == u"XSI" ? kXsiNamespace : ns == u"XML" ? kXmlNamespace : ns;
}

// Makes a call for each token of a script; blanks separate them. XSI and XML stand for their namespaces.
//
//     <ns|name    StartElement          >       EndElement
//     @ns|name=v  WriteAttribute        'text   WriteText
//     :ns|alias   AddNamespace          =ns|    SetDefaultNamespace
//     ^ns|type    WriteXsiType          0       WriteXsiNil
//     ?text       WriteProcessingInstruction    !text   WriteComment
//     +text       WriteInlineSchema     _text   WriteRawLine
//     #           WriteXmlHeader        /       CloseStartTag
void Perform(CXmlTextWriter& writer, WStringView script) {
  while (!script.empty()) {
    WStringView token = TakeUntil(script, u' ');
    const WChar call = token.front();
    token.remove_prefix(1);
    const bool hasNamespace = WStringView(u"<@:=^").find(call) != WStringView::npos;
    const WStringView ns = hasNamespace ? TakeNamespace(token) : WStringView();
    const WStringView name = call == u'@' ? TakeUntil(token, u'=') : token;
    if (call == u'<') writer.StartElement(name, ns);
    if (call == u'>') writer.EndElement();
    if (call == u'@') writer.WriteAttribute(name, ns, token, ItemType_string);
    if (call == u'\'') writer.WriteText(token, ItemType_string);
    if (call == u':') writer.AddNamespace(name, ns);
    if (call == u'=') writer.SetDefaultNamespace(ns);
    if (call == u'^') writer.WriteXsiType(ns, name, ItemType_string);
    if (call == u'0') writer.WriteXsiNil();
    if (call == u'?') writer.WriteProcessingInstruction(token);
    if (call == u'!') writer.WriteComment(token);
    if (call == u'+') writer.WriteInlineSchema(token);
    if (call == u'_') writer.WriteRawLine(token);
    if (call == u'#') writer.WriteXmlHeader();
    if (call == u'/') writer.CloseStartTag();
  }
}

template <class Steps>
WString WrittenBy(const Steps& steps, bool formatted = false, EOLType eol = EOLType_LF) {
  CTextStream stream;
  CXmlTextWriter writer(&stream);
  writer.Open();
  writer.SetFormatted(formatted);
  writer.SetEOLType(eol);
  steps(writer);
  writer.Close();
  return stream.GetText();
}

WString Written(WStringView script, bool formatted = false, EOLType eol = EOLType_LF) {
  return WrittenBy([&](CXmlTextWriter& writer) { Perform(writer, script); }, formatted, eol);
}

WString Replaced(WStringView text, WStringView what, WStringView by) {
  WString result(text);
  for (std::size_t at = 0; (at = result.find(what, at)) != WString::npos; at += by.size()) {
    result.replace(at, what.size(), by);
  }
  return result;
}

struct Layout {
  WStringView script, plain, formatted;
};

void ExpectWritten(const Layout& layout) {
  const auto& [script, plain, formatted] = layout;
  EXPECT_EQ(Written(script), plain);
  EXPECT_EQ(Written(script, false, EOLType_CRLF), Replaced(plain, u"\n", u"\r\n"));
  EXPECT_EQ(Written(script, true), formatted);
  EXPECT_EQ(Written(script, true, EOLType_CRLF), Replaced(formatted, u"\n", u"\r\n"));
}

TEST(XmlTextWriter, GoesThroughItsStates) {
  const Layout layouts[] = {
      {u"", u"", u""},
      {u"<a >", u"<a/>", u"<a/>\n"},
      {u"<a ' >", u"<a/>", u"<a/>\n"},
      {u"<a ' @b=1 @c= >", u"<a b=\"1\" c=\"\"/>", u"<a b=\"1\" c=\"\"/>\n"},
      {u"<a @b=1 'x ' 'y >", u"<a b=\"1\">xy</a>", u"<a b=\"1\">xy</a>\n"},
      {u"<a <b > <c <d 'x > > >", u"<a><b/><c><d>x</d></c></a>", u"<a>\n\t<b/>\n\t<c>\n\t\t<d>x</d>\n\t</c>\n</a>\n"},
      {u"/ <a / _<&> <b > >", u"<a><&><b/></a>", u"<a>\n<&>\n\t<b/>\n</a>\n"},
      {u"<a <b 'x / _<c/> > >", u"<a><b>x<c/></b></a>", u"<a>\n\t<b>x<c/>\n\t</b>\n</a>\n"},
  };
  for (const Layout& layout : layouts) ExpectWritten(layout);
}

TEST(XmlTextWriter, SetsLinesAsSpecified) {
  const Layout layouts[] = {
      // Ahead of the root each line has its end in either case, and an instruction has two.
      {u"# !a<\n ?<?p?> <a > !", u"<?xml version=\"1.0\"?>\n<!--a&lt;\n-->\n<?p?>\n\n<a/><!---->\n",
       u"<?xml version=\"1.0\"?>\n<!--a&lt;\n-->\n<?p?>\n\n<a/>\n<!---->\n"},
      // The schema lands inside the start tag.
      {u"<a @b=1 +c=\"2\" @d=3 <e > >", u"<a b=\"1\" \nc=\"2\"\n d=\"3\"><e/></a>",
       u"<a b=\"1\" \nc=\"2\"\n d=\"3\">\n\t<e/>\n</a>\n"},
      {u"<a + >", u"<a \n\n/>", u"<a \n\n/>\n"},
      // Indentation becomes part of mixed content.
      {u"<a <b 'x <c > 'y > >", u"<a><b>x<c/>y</b></a>", u"<a>\n\t<b>x\t\t<c/>\ny\t</b>\n</a>\n"},
      {u"<a @b=1\n\r2 '3\n\r4 >", u"<a b=\"1&#xA;2\">3\n4</a>", u"<a b=\"1&#xA;2\">3\n4</a>\n"},
  };
  for (const Layout& layout : layouts) ExpectWritten(layout);
  for (const WStringView indent : {u"", u"  "}) {
    const auto steps = [&](CXmlTextWriter& writer) {
      writer.SetIndentChars(indent);
      Perform(writer, u"<a <b <c > > >");
    };
    EXPECT_EQ(WrittenBy(steps, true), Replaced(u"<a>\n\t<b>\n\t\t<c/>\n\t</b>\n</a>\n", u"\t", indent));
  }
}

TEST(XmlTextWriter, DeclaresTheEncodingOfItsStream) {
  const WStringView encodings[] = {u"", u" encoding=\"UTF-8\"", u" encoding=\"UTF-16\"", u""};
  for (int number = 0; number < 4; ++number) {
    CTextStream stream(static_cast<XmlEncoding>(number));
    CXmlTextWriter(&stream).WriteXmlHeader();
    EXPECT_EQ(stream.GetText(), u"<?xml version=\"1.0\"" + WString(encodings[number]) + u"?>\n");
  }
}

struct Scoped {
  WStringView script, written;
};

void ExpectWritten(const Scoped& scoped) {
  EXPECT_EQ(Written(scoped.script), Replaced(scoped.written, u"XSI", kXsiNamespace));
}

TEST(XmlTextWriter, ScopesNamespaces) {
  const Scoped documents[] = {
      {u"=u| <u|a <u|b > >", uR"(<a xmlns="u"><b/></a>)"},
      {u":u|p <u|a @u|b=1 <c > >", uR"(<p:a xmlns:p="u" p:b="1"><c/></p:a>)"},
      // By URI, and URIs by code units: surrogates stand before U+FFFD.
      {u"=m| :v|p :\uFFFD|q :\U00010000|r :a|s :V|t :n| :b|no :b| :v|P <a >",
       u"<a xmlns=\"m\" xmlns:t=\"V\" xmlns:s=\"a\" xmlns:P=\"v\" xmlns:r=\"\U00010000\" xmlns:q=\"\uFFFD\"/>"},
      // Siblings have scopes of their own; children see those of their ancestors.
      {u"<r <u|a > <u|b > <v|c > >", uR"(<r><AA:a xmlns:AA="u"/><AA:b xmlns:AA="u"/><AA:c xmlns:AA="v"/></r>)"},
      {u"<u|a <u|b <v|c <u|d > <v|e > > > <w|f <u|g @w|h= > > >",
       uR"(<AA:a xmlns:AA="u"><AA:b><AB:c xmlns:AB="v"><AA:d/><AB:e/></AB:c></AA:b>)"
       uR"(<AB:f xmlns:AB="w"><AA:g AB:h=""/></AB:f></AA:a>)"},
      {u":v|AA :w|AC <u|a @x|b= >", uR"(<AB:a xmlns:AB="u" xmlns:AA="v" xmlns:AC="w" xmlns:AD="x" AD:b=""/>)"},
      {u"<a @u|b=1 @u|c=2 <u|d > >", uR"(<a xmlns:AA="u" AA:b="1" AA:c="2"><AA:d/></a>)"},
      {u"=u| <u|a @u|b=1 <u|c > >", uR"(<a xmlns="u" xmlns:AA="u" AA:b="1"><c/></a>)"},
      {u"<a @XML|lang=de <XML|b > >", uR"(<a xml:lang="de"><xml:b/></a>)"},
      {u"<a 0 <b 0 > >", uR"(<a xmlns:AA="XSI" AA:nil="true"><b AA:nil="true"/></a>)"},
      {u":XSI|i :t|p <a ^t|T 0 >", uR"(<a xmlns:i="XSI" xmlns:p="t" i:type="p:T" i:nil="true"/>)"},
      {u":XSI|i =t| <a ^t|T <b ^U > >", uR"(<a xmlns="t" xmlns:i="XSI" i:type="T"><b i:type="U"/></a>)"},
      {u"=1&| :<\"'\r|p :XSI|i <3>|a @4&|b= ^5&|T >",
       uR"(<AA:a xmlns:AA="3&gt;" xmlns="1&amp;" xmlns:p="&lt;&quot;'" xmlns:i="XSI" xmlns:AB="4&amp;" AB:b="")"
       uR"( xmlns:AC="5&amp;"  i:type="AC:T"/>)"},
      // An end tag repeats its start tag, whatever has become of the scope.
      {u"<u|a :u|p <u|b =u| 'x <u|c > > :u| 'y >", uR"(<AA:a xmlns:AA="u"><p:b>x<c/></p:b>y</AA:a>)"},
      {u"=u| <u|a =| 'x >", uR"(<a xmlns="u">x</a>)"},
      // A second root declares what the document has by then.
      {u"=d| :u|p <d|a <v|b > > :w|q <u|c <v|d > >",
       uR"(<a xmlns="d" xmlns:p="u"><AA:b xmlns:AA="v"/></a>)"
       uR"(<p:c xmlns="d" xmlns:p="u" xmlns:q="w"><AA:d xmlns:AA="v"/></p:c>)"},
  };
  for (const Scoped& document : documents) ExpectWritten(document);
}

TEST(XmlTextWriter, LeavesNamespacesToTheCallerAsSpecified) {
  const Scoped documents[] = {
      // No xmlns="" takes an element out of the default namespace.
      {u"=u| <a <b > >", uR"(<a xmlns="u"><b/></a>)"},
      // What is set with an element open is not declared, and ends with the element.
      {u"<r <a :u|p @u|b= =v| <v|c > <u|d > > <u|e > <v|f > >",
       uR"(<r><a p:b=""><c/><p:d/></a><AA:e xmlns:AA="u"/><AA:f xmlns:AA="v"/></r>)"},
      {u":http://www.w3.org/XML/1998/namespace/more|p :u|q <a >", uR"(<a xmlns:q="u"/>)"},
      // Two blanks behind the declaration of the type's namespace.
      {u"<a ^t|T >", uR"(<a xmlns:AA="t"  xmlns:AB="XSI" AB:type="AA:T"/>)"},
  };
  for (const Scoped& document : documents) ExpectWritten(document);
}

WString DocumentWith(WStringView text, EOLType eol) {
  return WrittenBy(
      [&](CXmlTextWriter& writer) {
        writer.StartElement(u"a", {});
        writer.WriteText(text, ItemType_string);
        writer.EndElement();
      },
      false, eol);
}

TEST(XmlTextWriter, WritesSectionsAsTheyAre) {
  const struct {
    WStringView text, written = text;
  } cases[] = {
      {u"<![CDATA[a & <b>\"'\n]]>"},
      {u"<![CDATA[]]><![CDATA[]]]]>"},
      {u"<![CDATA[]>]]>"},
      {u"<![CDATA[<![CDATA[]]>"},
      {u"<![CDATA[&]]>&<![CDATA[<]]>\">\n", u"<![CDATA[&]]>&amp;<![CDATA[<]]>\"&gt;\n"},
      {u"<![CDATA[a]]>]]>", u"<![CDATA[a]]>]]&gt;"},
      {u"<![CDATA[a]]>b<![CDATA[c]>]", u"<![CDATA[a]]>b&lt;![CDATA[c]&gt;]"},
      {u"<![CDATA[a]]&", u"&lt;![CDATA[a]]&amp;"},
      {u"<![CDATA[]>", u"&lt;![CDATA[]&gt;"},
      {u"<![CDATA[", u"&lt;![CDATA["},
      {u"<![CDATA]]>", u"&lt;![CDATA]]&gt;"},
      {u"<![cdata[a]]>", u"&lt;![cdata[a]]&gt;"},
      {u" <![CDATA[a]]>", u" &lt;![CDATA[a]]&gt;"},
      {u"<", u"&lt;"},
  };
  CSerializationContext keepingSections;
  keepingSections.SetStripCDATA(false);
  for (const auto& [text, written] : cases) {
    const WString document = DocumentWith(text, EOLType_LF);
    EXPECT_EQ(document, u"<a>" + WString(written) + u"</a>");
    const auto load = [&](CXmlDocument& d) { d.LoadXml(document.c_str()); };
    EXPECT_EQ(test::Outcome(load, keepingSections), u"a'" + WString(text) + u"'");
  }
  EXPECT_EQ(DocumentWith(u"<![CDATA[\r\n]]>\r\n<![CDATA[\n]]>", EOLType_CRLF),
            u"<a><![CDATA[\r\n]]>\r\n<![CDATA[\n]]></a>");
}

// The escaping as one would first write it.
WString Escaped(WStringView text, bool inAttribute, WStringView lineEnd) {
  WString result;
  for (const WChar c : text) {
    if (c == u'&') result += u"&amp;";
    if (c == u'<') result += u"&lt;";
    if (c == u'>') result += u"&gt;";
    if (c == u'"') result += inAttribute ? u"&quot;" : u"\"";
    if (c == u'\n') result += inAttribute ? u"&#xA;" : lineEnd;
    if (WStringView(u"&<>\"\n\r").find(c) == WStringView::npos) result += c;
  }
  return result;
}

// Calls `visit` with texts that hold `mark` at every position of small blocks and around the borders of large ones, and
// with the position.
template <class Visitor>
void PlaceEverywhere(WStringView mark, const Visitor& visit) {
  for (const WStringView filler : {u"a", u"\u8000", u"\U0001F600"}) {
    const auto fill = [&](std::size_t length) {
      WString text(length % filler.size(), u'a');
      while (text.size() < length) text += filler;
      return text;
    };
    for (const auto& [first, last] : {std::pair{0u, 40u}, {2036u, 2056u}, {4084u, 4104u}}) {
      for (std::size_t position = first; position <= last; ++position) {
        for (const auto behind : {0u, 1u, 4u, 9u}) visit(fill(position) + WString(mark) + fill(behind), position);
      }
    }
  }
}

void ExpectEscaped(WStringView text, EOLType eol) {
  const WString written = WrittenBy(
      [&](CXmlTextWriter& writer) {
        writer.WriteComment(text);
        writer.StartElement(u"a", {});
        writer.WriteAttribute(u"b", {}, text, ItemType_string);
        writer.WriteText(text, ItemType_string);
        writer.WriteText(u"-", ItemType_string);
        writer.EndElement();
      },
      false, eol);
  const WString lineEnd = eol == EOLType_LF ? u"\n" : u"\r\n";
  const WString content = Escaped(text, false, lineEnd);
  ASSERT_EQ(written, u"<!--" + content + u"-->" + lineEnd + u"<a b=\"" + Escaped(text, true, lineEnd) + u"\">" +
                         content + u"-</a>");
}

TEST(XmlTextWriter, EscapesAtEveryPosition) {
  for (const WStringView mark : {u"&", u"<", u">", u"\"", u"\n", u"\r", u"\t", u"\x7F", u"\uD7FF", u"\uE000", u"\uFFFD",
                                 u"\U00010000", u"\U0010FFFF", u"\r\n\r\n<&>"}) {
    PlaceEverywhere(mark, [](WStringView text, std::size_t) { ExpectEscaped(text, EOLType_LF); });
  }
}

// Runs of what goes out as it is, between and without what does not.
class RandomTexts {
 public:
  WString Next() {
    WString text;
    for (std::size_t pieces = Number(12); pieces-- != 0;) {
      const WStringView piece = kPieces[Number(std::size(kPieces))];
      for (std::size_t times = Number(Number(50) == 0 ? 1500 : 12); times-- != 0;) text += piece;
    }
    return text;
  }

 private:
  static constexpr WStringView kPieces[] = {u"a",          u" ",  u"'", u"]]", u"\u00FC", u"\u7FFF", u"\u8000",
                                            u"\uFFFD",     u"&",  u"<", u">",  u"\"",     u"\n",     u"\r",
                                            u"\U0001F600", u"\t", u"z", u"-",  u"=",      u"ab<cd>"};

  std::size_t Number(std::size_t end) { return m_generator() % end; }

  std::mt19937 m_generator{16};
};

TEST(XmlTextWriter, EscapesAsTheSimpleWayDoes) {
  RandomTexts texts;
  for (int i = 0; i < 4000; ++i) ExpectEscaped(texts.Next(), i % 2 == 0 ? EOLType_LF : EOLType_CRLF);
}

TEST(XmlTextWriter, HandsItsTextToTheStreamInPieces) {
  for (const XmlEncoding encoding : {XmlEncoding_UTF8, XmlEncoding_UTF16}) {
    CTextStream stream(encoding);
    CXmlTextWriter writer(&stream);
    writer.SetFormatted(false);
    writer.StartElement(u"r", {});
    WString expected = u"<r>";
    RandomTexts texts;
    for (int i = 0; i < 1000; ++i) {
      const WString text = texts.Next();
      expected += u"<e a=\"" + Escaped(text, true, {}) + u"\">" + Escaped(text, false, u"\n") + u"-</e>";
      writer.StartElement(u"e", {});
      writer.WriteAttribute(u"a", {}, text, ItemType_string);
      ASSERT_LT(stream.GetBufferedLength(), 4096u);
      writer.WriteText(text, ItemType_string);
      ASSERT_LT(stream.GetBufferedLength(), 4096u);
      writer.WriteText(u"-", ItemType_string);
      writer.EndElement();
    }
    writer.EndElement();
    expected += u"</r>";
    EXPECT_TRUE(encoding == XmlEncoding_UTF16 || stream.GetBytes() == EncodeUtf8(expected));
    EXPECT_TRUE(stream.GetText() == expected);
  }
}

WString Refusal(WChar c, std::size_t position) {
  const WString place = FormatString(u"U+%04X at position %d", c, position);
  if (c == 0) return u"The text holds the character " + place + u", which no document can hold.";
  if (c >= 0xD800 && c < 0xE000) return u"The text holds the unpaired surrogate " + place + u".";
  return u"The text holds the character " + place + u", which XML does not allow.";
}

TEST(XmlTextWriter, RefusesAtEveryPositionWhatIsNoCharacter) {
  const auto refusal = [](const auto& steps) { return MessageOf<COvInvalidValueException>([&] { WrittenBy(steps); }); };
  // The literal's terminator is one of them.
  for (const WChar c : u"\x01\x08\x0B\x0C\x0E\x1F\xD800\xDBFF\xDC00\xDFFF\uFFFE\uFFFF") {
    PlaceEverywhere({&c, 1}, [&](const WString& text, std::size_t position) {
      const std::function<void(CXmlTextWriter&)> calls[] = {
          [&](auto& w) { w.WriteComment(text); },
          [&](auto& w) { w.AddNamespace(u"p", text), w.StartElement(u"a", {}); },
          [&](auto& w) { w.StartElement(u"a", {}), w.WriteAttribute(u"b", {}, text, ItemType_string); },
          [&](auto& w) { w.StartElement(u"a", {}), w.WriteText(text, ItemType_string); },
      };
      for (const auto& call : calls) ASSERT_EQ(refusal(call), Refusal(c, position)) << &call - calls;
    });
  }
  for (const WStringView name : {WStringView(u"a\0", 2), WStringView(u"a\xDC00", 2)}) {
    EXPECT_EQ(refusal([&](auto& w) { w.StartElement(name, {}), w.EndElement(); }), Refusal(name[1], 2))
        << "a name, at which only the stream looks";
  }
}

TEST(XmlTextWriter, CountsPositionsAcrossSections) {
  for (const WStringView before : {u"<![CDATA[&]]>", u"<![CDATA[&]]>a<![CDATA["}) {
    for (const WChar c : {u'\x01', WChar{0xD800}, u'\0'}) {
      const WString text = WString(before) + c + u"]]>";
      EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { DocumentWith(text, EOLType_LF); }),
                Refusal(c, before.size()));
    }
  }
}

TEST(XmlTextWriter, RefusesAttributesBehindTheStartTag) {
  const Scoped before[] = {{u"<a 'x", u"<a>x"}, {u"<a <c >", u"<a><c/>"}, {u"<a /", u"<a>"}};
  for (const Scoped& begun : before) {
    for (const WStringView call : {u"@b=", u"@u|b=", u"^T", u"^u|T", u"0"}) {
      const WString document = WrittenBy([&](CXmlTextWriter& writer) {
        Perform(writer, begun.script);
        EXPECT_EQ(MessageOf([&] { Perform(writer, call); }), u"Attributes must be added before elements");
        Perform(writer, u"<u|d > >");
      });
      EXPECT_EQ(document, WString(begun.written) + uR"(<AA:d xmlns:AA="u"/></a>)")
          << "the failure has written something";
    }
  }
}

TEST(XmlTextWriter, NamesItsFailures) {
  CTextStream stream;
  CXmlTextWriter writer(&stream);
  for (const int number : {-1, 2}) {
    EXPECT_EQ(MessageOf([&] { writer.SetEOLType(static_cast<EOLType>(number)); }), u"Invalid EOL type.");
    EXPECT_EQ(writer.GetEOLType(), EOLType_LF);
  }
  Perform(writer, u"<a 'x");
  EXPECT_EQ(MessageOf([&] { writer.Close(); }), u"An Element has not been closed.");
  Perform(writer, u">");
  writer.Close();
  EXPECT_EQ(stream.GetText(), u"<a>x</a>\n");
}

}  // namespace
}  // namespace OvXmlLib16
