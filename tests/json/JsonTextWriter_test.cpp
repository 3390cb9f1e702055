#include "ovxmllib/json/JsonTextWriter.h"

#include <gtest/gtest.h>

#include "ovxmllib/document/WellKnownNamespaces.h"
#include "tests/json/Roads.h"
#include "tests/support/Documents.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"
#include "tests/support/WriterScript.h"

namespace OvXmlLib16 {
namespace {

using test::Json;
using test::MessageOf;

// Beyond test::Perform: 4:12 and @x=4:12 are values with the number of their type.
struct JsonDialect : test::PlainDialect {
  explicit JsonDialect(CXmlWriter& to) : writer(to) {}

  ItemType TakeType(WStringView& text) const {
    if (text.find(u':') == WStringView::npos) return type;
    return static_cast<ItemType>(std::stoi(ToUtf8(test::script_detail::TakeUntil(text, u':'))));
  }
  void Call(WChar call, WStringView token) const {
    const WString whole = call + WString(token);
    WStringView text = whole;
    const ItemType told = TakeType(text);
    writer.WriteText(text, told);
  }

  CXmlWriter& writer;
};

void Perform(CJsonTextWriter& writer, WStringView script) { test::Perform(writer, script, JsonDialect(writer)); }

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
