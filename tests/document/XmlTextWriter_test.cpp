#include "ovxmllib/document/XmlTextWriter.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/document/PreparedName.h"
#include "ovxmllib/document/WellKnownNamespaces.h"
#include "tests/support/Documents.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"
#include "tests/support/WriterScript.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;

// Beyond test::Perform: _text WriteRawLine, # WriteXmlHeader, / CloseStartTag.
struct XmlDialect : test::PlainDialect {
  explicit XmlDialect(CXmlTextWriter& to) : writer(to) {}

  void Call(WChar call, WStringView token) const {
    if (call == u'_') writer.WriteRawLine(token);
    if (call == u'#') writer.WriteXmlHeader();
    if (call == u'/') writer.CloseStartTag();
  }

  CXmlTextWriter& writer;
};

void Perform(CXmlTextWriter& writer, WStringView script) { test::Perform(writer, script, XmlDialect(writer)); }

// As the stream's bytes where it has an encoding: they must go out in pieces.
template <class Steps>
WString WrittenBy(const Steps& steps, bool formatted = false, EOLType eol = EOLType_LF, XmlEncoding encoding = {}) {
  CTextStream stream(encoding);
  CXmlTextWriter writer(&stream);
  writer.Open();
  writer.SetFormatted(formatted);
  writer.SetEOLType(eol);
  steps(writer);
  EXPECT_TRUE(encoding == XmlEncoding_None || stream.GetBufferedLength() < 4096);
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

std::vector<test::VectorRow> Rows(std::string_view table) {
  return test::ReadVectors("document/xml_writer.vec", table);
}

void ExpectLayouts(std::string_view table) {
  for (const test::VectorRow& row : Rows(table)) {
    SCOPED_TRACE(row.Place());
    const WString script = row.Wide("script");
    for (const bool formatted : {false, true}) {
      const WString written = row.Wide(formatted ? "formatted" : "plain");
      EXPECT_EQ(Written(script, formatted), written);
      EXPECT_EQ(Written(script, formatted, EOLType_CRLF), Replaced(written, u"\n", u"\r\n"));
    }
  }
}

TEST(XmlTextWriter, GoesThroughItsStates) { ExpectLayouts("states"); }
TEST(XmlTextWriter, SetsLinesAsSpecified) { ExpectLayouts("lines as specified"); }

void ExpectScopes(std::string_view table) {
  for (const test::VectorRow& row : Rows(table)) {
    EXPECT_EQ(Written(row.Wide("script")), Replaced(row.Wide("plain"), u"XSI", kXsiNamespace)) << row.Place();
  }
}

TEST(XmlTextWriter, ScopesNamespaces) { ExpectScopes("scopes"); }
TEST(XmlTextWriter, LeavesNamespacesToTheCallerAsSpecified) { ExpectScopes("scopes as specified"); }

TEST(XmlTextWriter, GoesOnWithAliasesOfThreeLetters) {
  const WString document = WrittenBy([](CXmlTextWriter& writer) {
    writer.StartElement(u"a", {});
    for (int i = 0; i < 676 + 676 + 1; ++i) writer.WriteAttribute(u"b", FormatString(u"%d", i), {}, ItemType_string);
    writer.EndElement();
  });
  for (const WStringView part :
       {u":AZ=\"25\"", u":BA=\"26\"", u":ZZ=\"675\"", u":AAA=\"676\"", u":AZZ=\"1351\"", u":BAA=\"1352\""}) {
    EXPECT_NE(document.find(part), WString::npos) << ToUtf8(part);
  }
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
  CSerializationContext keepingSections;
  keepingSections.SetStripCDATA(false);
  for (const test::VectorRow& row : Rows("sections")) {
    const WString document = DocumentWith(row.Wide("text"), EOLType_LF);
    EXPECT_EQ(document, u"<a>" + row.Wide("written") + u"</a>") << row.Place();
    const auto load = [&](CXmlDocument& d) { d.LoadXml(document.c_str()); };
    EXPECT_EQ(test::Outcome(load, keepingSections), u"a'" + row.Wide("text") + u"'");
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
    for (const auto& [first, last] : {std::pair{0u, 40u}, {246u, 266u}, {4084u, 4104u}}) {
      for (std::size_t position = first; position <= last; ++position) {
        for (const auto behind : {0u, 1u, 4u, 9u}) visit(fill(position) + WString(mark) + fill(behind), position);
      }
    }
  }
}

void ExpectEscaped(WStringView text, EOLType eol = EOLType_LF, XmlEncoding encoding = XmlEncoding_None) {
  const auto steps = [&](CXmlTextWriter& writer) {
    writer.WriteComment(text);
    writer.StartElement(u"a", {});
    writer.WriteAttribute(u"b", {}, text, ItemType_string);
    writer.WriteText(text, ItemType_string);
    writer.WriteText(u"-", ItemType_string);
    writer.EndElement();
  };
  const WString lineEnd = eol == EOLType_LF ? u"\n" : u"\r\n", content = Escaped(text, false, lineEnd);
  ASSERT_TRUE(WrittenBy(steps, false, eol, encoding) ==
              u"<!--" + content + u"-->" + lineEnd + u"<a b=\"" + Escaped(text, true, {}) + u"\">" + content + u"-</a>")
      << ToUtf8(text);
}

TEST(XmlTextWriter, EscapesAtEveryPosition) {
  for (const WStringView mark : {u"&", u"<", u">", u"\"", u"\n", u"\r", u"\t", u"\x7F", u"\uD7FF", u"\uE000", u"\uFFFD",
                                 u"\U00010000", u"\U0010FFFF", u"\r\n\r\n<&>"}) {
    PlaceEverywhere(mark, [](WStringView text, std::size_t) {
      ExpectEscaped(text);
      ExpectEscaped(text, EOLType_LF, XmlEncoding_UTF8);
    });
  }
}

TEST(XmlTextWriter, WritesPreparedNamesAsOthers) {
  for (const WString& name : {WString(u"n"), WString(15, u'n'), WString(16, u'n'), WString(60, u'n'),
                              WString(u"\u00FC\u20AC"), WString(15, u'\u20AC')}) {
    for (const WStringView ns : {u"", u"urn:default", u"urn:other", u"urn:new"}) {
      for (const XmlEncoding encoding : {XmlEncoding_None, XmlEncoding_UTF8}) {
        const PreparedName prepared(name, ns);
        const auto begin = [&](CXmlTextWriter& writer) {
          writer.SetDefaultNamespace(u"urn:default");
          writer.AddNamespace(u"o", u"urn:other");
          writer.StartElement(u"root", u"urn:default");
        };
        const auto written = [&](CXmlTextWriter& writer) {
          begin(writer);
          writer.WriteAttribute(name, ns, u"v", ItemType_string);
          writer.WriteTextElement(name, ns, u"text", ItemType_string);
          writer.StartElement(name, ns);
          writer.EndElement();
          writer.EndElement();
        };
        const auto writtenPrepared = [&](CXmlTextWriter& writer) {
          begin(writer);
          writer.WritePreparedAttribute(prepared, u"v", ItemType_string);
          writer.WritePreparedElement(prepared, u"text", ItemType_string);
          writer.StartPrepared(prepared);
          writer.EndElement();
          writer.EndElement();
        };
        EXPECT_EQ(WrittenBy(writtenPrepared, true, EOLType_LF, encoding),
                  WrittenBy(written, true, EOLType_LF, encoding));
      }
    }
  }
}

// Runs of what goes out as it is, between and without what does not.
TEST(XmlTextWriter, EscapesAsTheSimpleWayDoes) {
  constexpr WStringView kPieces[] = {u"a",          u" ",  u"'", u"]]", u"\u00FC", u"\u7FFF", u"\u8000",
                                     u"\uFFFD",     u"&",  u"<", u">",  u"\"",     u"\n",     u"\r",
                                     u"\U0001F600", u"\t", u"z", u"-",  u"=",      u"ab<cd>"};
  std::mt19937 random(16);
  for (int i = 0; i < 6000; ++i) {
    WString text;
    for (auto pieces = random() % 12; pieces-- != 0;) {
      const WStringView piece = kPieces[random() % std::size(kPieces)];
      for (auto times = random() % (random() % 50 == 0 ? 1500 : 12); times-- != 0;) text += piece;
    }
    ExpectEscaped(text, i % 2 == 0 ? EOLType_LF : EOLType_CRLF, static_cast<XmlEncoding>(i % 3));
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
  for (const auto& before : {std::pair(u"<a 'x", u"<a>x"), {u"<a <c >", u"<a><c/>"}, {u"<a /", u"<a>"}}) {
    for (const WStringView call : {u"@b=", u"@u|b=", u"^T", u"^u|T", u"0"}) {
      const WString document = WrittenBy([&](CXmlTextWriter& writer) {
        Perform(writer, before.first);
        EXPECT_EQ(MessageOf([&] { Perform(writer, call); }), u"Attributes must be added before elements");
        Perform(writer, u"<u|d > >");
      });
      EXPECT_EQ(document, before.second + WString(uR"(<AA:d xmlns:AA="u"/></a>)"));
    }
  }
}

}  // namespace
}  // namespace OvXmlLib16
