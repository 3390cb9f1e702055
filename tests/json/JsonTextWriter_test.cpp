#include "ovxmllib/json/JsonTextWriter.h"

#include <gtest/gtest.h>

#include "ovxmllib/document/WellKnownNamespaces.h"
#include "tests/json/Roads.h"
#include "tests/support/Documents.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::Json;
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

ItemType TakeType(WStringView& text) {
  if (text.find(u':') == WStringView::npos) return ItemType_string;
  return static_cast<ItemType>(std::stoi(ToUtf8(TakeUntil(text, u':'))));
}

// Makes a call for each token of a script; blanks separate them. XSI and XML stand for their namespaces.
//
//     <ns|name    StartElement    >            EndElement            [  ]         SetArrayState(1), (3)
//     @ns|name=v  WriteAttribute  'text        WriteText, a string   4:12 @x=4:5  values with the number of their type
//     :ns|alias   AddNamespace    =ns|         SetDefaultNamespace   ^ns|type     WriteXsiType
//     0           WriteXsiNil     ?text +text  instruction, schema   !text        WriteComment
void Perform(CJsonTextWriter& writer, WStringView script) {
  while (!script.empty()) {
    WStringView token = TakeUntil(script, u' ');
    if (token.empty()) continue;
    const WChar call = token.front();
    if (token.size() > 1 && call >= u'0' && call <= u'9') {
      const ItemType type = TakeType(token);
      writer.WriteText(token, type);
      continue;
    }
    token.remove_prefix(1);
    const bool hasNamespace = WStringView(u"<@:=^").find(call) != WStringView::npos;
    const WStringView ns = hasNamespace ? TakeNamespace(token) : WStringView();
    const WStringView name = call == u'@' ? TakeUntil(token, u'=') : token;
    if (call == u'<') writer.StartElement(name, ns);
    if (call == u'>') writer.EndElement();
    if (call == u'[') writer.SetArrayState(1);
    if (call == u']') writer.SetArrayState(3);
    if (call == u'\'') writer.WriteText(token, ItemType_string);
    if (call == u':') writer.AddNamespace(token, ns);
    if (call == u'=') writer.SetDefaultNamespace(ns);
    if (call == u'^') writer.WriteXsiType(ns, token, ItemType_string);
    if (call == u'0') writer.WriteXsiNil();
    if (call == u'?') writer.WriteProcessingInstruction(token);
    if (call == u'+') writer.WriteInlineSchema(token);
    if (call == u'!') writer.WriteComment(token);
    if (call == u'@') {
      const ItemType type = TakeType(token);
      writer.WriteAttribute(name, ns, token, type);
    }
  }
}

struct Form {
  bool formatted = false;
  EOLType eol = EOLType_LF;
  JsonRoundTrip mode = RoundTripFull;
  XmlEncoding encoding = XmlEncoding_None;
};

template <class Steps>
std::string WrittenBy(const Steps& steps, const Form& form = {}) {
  CTextStream stream(form.encoding);
  CJsonTextWriter writer(&stream);
  writer.Open();
  writer.SetFormatted(form.formatted);
  writer.SetEOLType(form.eol);
  writer.SetRoundTrip(form.mode);
  writer.WriteDocumentStart();
  steps(writer);
  writer.WriteDocumentEnd();
  writer.Close();
  return ToUtf8(stream.GetText());
}

std::string Written(WStringView script, const Form& form = {}) {
  return WrittenBy([&](CJsonTextWriter& writer) { Perform(writer, script); }, form);
}

std::vector<test::VectorRow> Rows(std::string_view table) { return test::ReadVectors("json/json_writer.vec", table); }

// What formatting adds, which is white space outside of strings and comments.
std::string WithoutLines(const std::string& text) {
  std::string result;
  bool inString = false;
  for (const char c : text) {
    if (c == '"') inString = !inString;
    if (inString || (c != '\n' && c != '\t')) result += c;
  }
  return result;
}

TEST(JsonTextWriter, WritesValuesAndArraysAsSpecified) {
  for (const char* table : {"values", "arrays"}) {
    for (const test::VectorRow& row : Rows(table)) {
      SCOPED_TRACE(row.Place());
      EXPECT_EQ(Written(row.Wide("script")), Json(row["plain"]));
      EXPECT_EQ(WithoutLines(Written(row.Wide("script"), {.formatted = true})), WithoutLines(Json(row["plain"])));
    }
  }
}

TEST(JsonTextWriter, WritesTheModesAsSpecified) {
  for (const test::VectorRow& row : Rows("modes")) {
    const CSerializationContext context = test::ContextOf(row["mode"][0]);
    std::string plain = Json(row["plain"]);
    if (const std::size_t xsi = plain.find("XSI"); xsi != plain.npos) plain.replace(xsi, 3, ToUtf8(kXsiNamespace));
    EXPECT_EQ(Written(row.Wide("script"), {.mode = context.GetJsonContext()->GetSupportRoundtrip()}), plain)
        << row.Place();
  }
}

TEST(JsonTextWriter, SetsLinesAsSpecified) {
  const std::string lines = Json(
      "{\n\t'Order': {\n\t\t'@id': 5,\n\t\t'name': 'x',\n\t\t'item': [\n\t\t\t{\n\t\t\t\t'@a': 1\n\t\t\t},\n\t\t\t{\n"
      "\t\t\t\t'@a': 2\n\t\t\t}\n\t\t],\n\t\t'y': [\n\t\t\t1,\n\t\t\t{\n\t\t\t\t'z': [\n\t\t\t\t\tnull\n\t\t\t\t]\n"
      "\t\t\t}\n\t\t],\n\t\t'#text': 't'\n\t}\n}");
  const WStringView script =
      u"<Order @id=4:5 <name 'x > [ <item @a=4:1 > <item @a=4:2 > ] [ <y 4:1 > <y [ <z > ] > ] 't >";
  EXPECT_EQ(Written(script, {.formatted = true}), lines);
  std::string crlf;
  for (const char c : lines) crlf += c == '\n' ? "\r\n" : std::string(1, c);
  EXPECT_EQ(Written(script, {.formatted = true, .eol = EOLType_CRLF}), crlf);
  EXPECT_EQ(Written(u"=u| <u|a 'x >", {.formatted = true}),
            Json("{\n\t'a': {\n\t\t'@xmlns': 'u',\n\t\t'#text': 'x'\n\t}\n}"));
}

TEST(JsonTextWriter, RefusesUnknownNamespacesAndOpenElements) {
  for (const test::VectorRow& row : Rows("refused")) {
    EXPECT_EQ(MessageOf([&] { Written(row.Wide("script")); }), row.Wide("failure")) << row.Place();
  }
  EXPECT_EQ(MessageOf([&] { Written({}, {.eol = static_cast<EOLType>(2)}); }), u"Invalid EOL type.");
}

std::string WrittenText(WStringView text, const Form& form = {}) {
  const auto steps = [&](CJsonTextWriter& writer) {
    writer.StartElement(u"a", {});
    writer.WriteText(text, ItemType_string);
    writer.EndElement();
  };
  return WrittenBy(steps, form);
}

TEST(JsonTextWriter, EscapesWhereverAMarkStands) {
  for (const test::VectorRow& row : Rows("escapes")) {
    for (const std::size_t before : {0u, 1u, 3u, 7u, 8u, 9u, 17u, 2040u, 2047u, 2048u, 5000u}) {
      for (const std::size_t behind : {0u, 1u, 4u, 8u, 20u}) {
        const std::string head(before, 'x'), tail(behind, 'y');
        ASSERT_EQ(WrittenText(ToWide(head + row["text"] + tail), {.encoding = XmlEncoding_UTF8}),
                  "{\"a\": \"" + head + row["written"] + tail + "\"}")
            << row.Place() << ' ' << before << ' ' << behind;
      }
    }
  }
}

// A line feed is the line end, as it stands, which readers of plain JSON refuse and ours drops.
TEST(JsonTextWriter, WritesLineFeedsRawAsSpecified) {
  EXPECT_EQ(WrittenText(u"a\nb"), "{\"a\": \"a\nb\"}");
  EXPECT_EQ(WrittenText(u"a\nb", {.eol = EOLType_CRLF}), "{\"a\": \"a\r\nb\"}");
}

TEST(JsonTextWriter, RefusesWhatNoDocumentCanHold) {
  EXPECT_THROW(WrittenText(WStringView(u"a\0b", 3)), COvInvalidValueException);
  EXPECT_THROW(WrittenText(WString(u"a") + u'\xD800'), COvInvalidValueException);
  EXPECT_THROW(WrittenText(WString(5000, u'\xDC00'), {.encoding = XmlEncoding_UTF8}), COvInvalidValueException);
}

}  // namespace
}  // namespace OvXmlLib16
