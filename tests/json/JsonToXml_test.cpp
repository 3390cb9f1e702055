// JSON texts become XML, and objects.

#include <gtest/gtest.h>

#include "tests/json/Roads.h"
#include "tests/support/Bytes.h"
#include "tests/support/Documents.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::GoesShortRoad;
using test::Json;
using test::MessageOf;
using test::ReadOnBothRoads;

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

std::vector<test::VectorRow> Rows(std::string_view table) { return test::ReadVectors("json/json_to_xml.vec", table); }

TEST(JsonToXml, ConvertsAsSpecified) {
  for (const test::VectorRow& row : Rows("converted")) {
    SCOPED_TRACE(row.Place());
    const CSerializationContext context = test::ContextOf(row["mode"][0], row["root"]);
    CXmlDocument document(context);
    if (row["json"].empty()) continue;
    const std::string json = Json(row["json"]), xml = kDeclaration + row["xml"];
    EXPECT_EQ(test::TextOf(document.LoadJson(json.c_str())), xml);
    EXPECT_EQ(test::TextOf(document.LoadJson(ToWide(json).c_str())), xml);
    EXPECT_EQ(test::TextOf(document.LoadJsonStream(test::Bytes(json), json.size())), xml);
    EXPECT_EQ(document.GetDocumentElement(), nullptr);
    ReadOnBothRoads(json, context);
  }
}

TEST(JsonToXml, RefusesWhatIsNoElement) {
  for (const test::VectorRow& row : Rows("refused")) {
    SCOPED_TRACE(row.Place());
    const CSerializationContext context = test::ContextOf(row["mode"][0], row["root"]);
    EXPECT_EQ(ReadOnBothRoads(Json(row["json"]), context).failure, row["failure"]);
  }
}

// An unpaired surrogate, as an escape and as a unit of the text.
TEST(JsonToXml, RefusesHalvesOfPairs) {
  for (const WString& half : {WString(u"\\ud800"), WString(1, u'\xD800')}) {
    EXPECT_THROW(CXmlDocument().LoadJson((u"{\"a\": \"x" + half + u"\"}").c_str()), COvInvalidStateException);
    EXPECT_THROW(CXmlDocument().LoadJson((u"{\"a" + half + u"\": 1}").c_str()), COvInvalidStateException);
    EXPECT_THROW(CSmartPtr<test::AnyObject>(new test::AnyObject)->FromJson((u"{\"a\": \"" + half + u"\"}").c_str()),
                 COvInvalidStateException);
  }
}

TEST(JsonToXml, TellsTheXmlThatDoesNotFit) {
  const CSerializationContext context;
  const auto outcome = ReadOnBothRoads(R"({"a": 1, "b": 2})", context);
  EXPECT_EQ(outcome.failure, std::string("Error converting JSON to XML:\n") + kDeclaration +
                                 "<a>1</a>\n<b>2</b>\n < junk after document element at line 3");
  EXPECT_TRUE(ReadOnBothRoads(R"({"p:a": 1})", context).failure.ends_with(" < unbound prefix at line 2"));
  EXPECT_TRUE(
      ReadOnBothRoads(R"({"1": 1})", context).failure.ends_with(" < not well-formed (invalid token) at line 2"));
  EXPECT_TRUE(ReadOnBothRoads("{}", context).failure.ends_with(" < no element found at line 2"));
}

TEST(JsonToXml, TellsEmptyInputAndMissingFiles) {
  const test::TemporaryFolder folder;
  CXmlDocument document;
  EXPECT_EQ(MessageOf([&] { document.LoadJson(""); }), u"JSON String is empty!");
  EXPECT_EQ(MessageOf([&] { document.LoadJson(u""); }), u"JSON String is empty!");
  EXPECT_EQ(MessageOf([&] { document.LoadJson(static_cast<const WChar*>(nullptr)); }), u"JSON String is empty!");
  EXPECT_EQ(MessageOf([&] { document.LoadJsonStream(nullptr, 0); }), u"JSON Stream is empty!");
  const WString missing = (folder / "missing").u16string();
  EXPECT_EQ(MessageOf([&] { document.LoadJsonFile(missing.c_str()); }),
            u"Failed to open the file [" + missing + u"] Error [0x00000002]");
  EXPECT_TRUE(MessageOf([&] { document.LoadJson("{\"a\": \"\xFF\"}"); }).starts_with(u"The bytes are no UTF-8 text"));
  EXPECT_TRUE(MessageOf([&] { document.LoadJson("{} \xC3"); }).starts_with(u"The bytes are no UTF-8 text"));
}

TEST(JsonToXml, TakesFilesAndCompressedBytes) {
  const test::TemporaryFolder folder;
  const std::string json = "\xEF\xBB\xBF{\"a\": [" + test::Repeated("1, ", 100) + "2]}";
  CSerializationContext context = test::ContextOf('f');
  const auto countIn = [&](const auto& read) {
    const CSmartPtr<test::AnyObject> object(new test::AnyObject);
    read(*object);
    return object->children.size();
  };
  const std::string wrapped = "{\"r\": " + json.substr(3) + "}", marked = json.substr(0, 3) + wrapped;
  for (const std::string& bytes :
       {marked, test::Packed(marked, CompressionType_GZip), test::Packed(wrapped, CompressionType_ZLib)}) {
    test::WriteFile(folder / "file", bytes);
    EXPECT_EQ(countIn([&](auto& object) { object.FromJsonFile(folder / "file", context); }), 101u);
    EXPECT_EQ(countIn([&](auto& object) { object.FromJsonStream(test::Data(bytes), context); }), 101u);
  }
  EXPECT_EQ(countIn([&](auto& object) { object.FromJson(marked.c_str(), context); }), 101u);
  EXPECT_EQ(countIn([&](auto& object) { object.FromJson(ToWide(wrapped).c_str(), context); }), 101u);
  context.SetMaxInputBytes(100);
  EXPECT_TRUE(
      MessageOf([&] { CXmlDocument(context).LoadJson(wrapped.c_str()); }).starts_with(u"The document is longer"));
  context.SetMaxDecompressedBytes(100);
  EXPECT_TRUE(
      MessageOf([&] { CXmlDocument(context).LoadJsonFile(folder / "file"); }).starts_with(u"The input expands"));
}

// Names and namespaces as Expat resolves them.
TEST(JsonToXml, ResolvesNamespacesOnBothRoads) {
  const CSerializationContext context;
  for (const char* text : {
           "{'a': {'@xmlns': 'u', '@x': 1, 'b': {'@xmlns': 'v', 'c': 1}, 'd': 2}}",
           "{'p:a': {'@xmlns:p': 'u', '@p:x': 1, '@y': 2, 'p:b': {'@xmlns:p': 'v', 'p:c': [1, 2]}, 'p:d': 2}}",
           "{'p:a': {'@p:x': 1, '@xmlns:p': 'u', 'b': [{'@xmlns:q': 'w', 'q:c': 1}, {'@y': 1}]}}",
           "{'a': {'@xml:lang': 'de', '@_x-1.y': '', 'b': 'more text than fits into a block or two, \xC3\xBC'}}",
           "{'a': {'@xmlns:p': 'u&amp;\\\"<', 'p:b': {}, 'p:c': null, 'p:d': []}}",
           "{'a': {'b': {'c': {'#text': 'x'}, 'd': 1}, '#text': 'mixed\\nlines\\t'}}",
           "{'a': {'@x': 'v\\\\', '@y': '\\u00e9\\ud83d\\ude00', 'b': '\\/'}}",
       }) {
    EXPECT_EQ(ReadOnBothRoads(Json(text), context).failure, "") << text;
    EXPECT_TRUE(GoesShortRoad(Json(text), context)) << text;
  }
  // What is left to the parser.
  for (const char* text : {
           "{'a': {'b': {'@xmlns:p': 'u'}, 'p:c': 1}}",
           "{'a': {'@p:x': 1}}",
           "{'a': {'@x': 1, '@x': 2}}",
           "{'a': {'@xmlns:p': 'u', '@xmlns:q': 'u', '@p:x': 1, '@q:x': 2}}",
           "{'a': {'@xmlns:p': ''}}",
           "{'a': {'@xmlns': '', 'b': 1}}",
           "{'a': {'@xmlns:xml': 'u'}}",
           "{'a': {'@xmlns:xmlns': 'u'}}",
           "{'a': {'@xmlns:p': 'http://www.w3.org/XML/1998/namespace'}}",
           "{'a': {'@xmlns': 'u|v'}}",
           "{'xmlns:a': 1}",
           "{'a': {'@x': 'a\\tb'}}",
           "{'a': 'x\\ry'}",
           "{'a': '<![CDATA[x]]>y'}",
           "{'\xC3\xBC': 1}",
           "{':a': 1}",
           "{'a:': 1}",
           "{'\\u0061': 1}",
           "{'a': '\xEF\xBF\xBE'}",
           "{'a': '\x7F'}",
           "{'a': '\x01'}",
       }) {
    ReadOnBothRoads(Json(text), context);
  }
  CSerializationContext plain;
  plain.SetSchemaType(SchemaType_NoNamespaces);
  const auto outcome = ReadOnBothRoads(Json("{'p:a': {'@xmlns:q': 'u', '@q:x': 1}}"), plain);
  EXPECT_EQ(outcome.object->attributes.size(), 2u);
  EXPECT_EQ(outcome.object->GetElementName(), u"p:a");
}

TEST(JsonToXml, KeepsTheLimits) {
  CSerializationContext context;
  context.SetMaxElementDepth(3);
  context.SetMaxTextLength(9);
  context.SetMaxAttributesPerElement(2);
  context.SetMaxNameLength(4);
  for (const char* text :
       {"{'a': {'b': {'c': {'d': 1}}}}", "{'a': '0123456789'}", "{'a': {'b': '', 'c': '', 'd': '', 'e': '', 'f': ''}}",
        "{'a': {'@x': 1, '@y': 2, '@xmlns:z': 'u'}}", "{'abcde': 1}", "{'a': {'@x': '0123456789'}}"}) {
    EXPECT_NE(ReadOnBothRoads(Json(text), context).failure.find(" sets this limit."), std::string::npos) << text;
  }
  EXPECT_EQ(
      ReadOnBothRoads(Json("{'a': {'@x': '012345678', '@xmlns:z': 'u', 'b': {'c': '012345678'}}}"), context).failure,
      "");
}

// Each array leaves an element open: a few bytes a level, and a tab for each level ahead of each element.
TEST(JsonToXml, BoundsWhatEmptyArraysOpen) {
  const std::string deep = "{" + test::Repeated("\"a\":[],", 1'000'000) + "\"b\":1}";
  EXPECT_EQ(
      ReadOnBothRoads(deep, {}).failure,
      "The elements are nested deeper than 1000 levels. CSerializationContext::SetMaxElementDepth sets this limit.");
  const std::string wide = "{" + test::Repeated("\"a\":[],", 990) + test::Repeated("\"b\":1,", 100'000) + "\"b\":1}";
  EXPECT_NE(ReadOnBothRoads(wide, {}).failure.find("a hundred times"), std::string::npos);
}

// Whatever becomes of a text, both roads agree.
TEST(JsonToXml, EndsSoundlyForEveryCutAndEveryChange) {
  const std::string sample = Json(
      "{'p:a': {'@xmlns:p': 'u', '@x': -1.5e+3, 'b': [{'c': true, 'd': null}, 2, 'x\\u00e9\\n'], 'e': {}, "
      "/* c */ '#text': 'y'}}");
  const CSerializationContext context;
  for (std::size_t i = 0; i < sample.size(); ++i) ReadOnBothRoads(sample.substr(0, i), context);
  for (std::size_t i = 0; i < sample.size(); ++i) {
    for (const char c : std::string("{}[]\"\\,:0x@#<\n\r\xC3")) {
      std::string changed = sample;
      changed[i] = c;
      ReadOnBothRoads(changed, context);
    }
  }
}

TEST(JsonToXml, OptionsAreCopiedWithTheirContext) {
  CSerializationContext context = test::ContextOf('a', "r"), other = context;
  CJsonContext* const options = other.GetJsonContext();
  EXPECT_NE(options, context.GetJsonContext());
  EXPECT_EQ(options->GetRootElementName(), u"r");
  options->GetAllowComments(false);
  EXPECT_TRUE(context.GetJsonContext()->GetAllowComments());
  other = CSerializationContext();
  EXPECT_EQ(other.GetJsonContext(), options) << "stays the same object";
  EXPECT_EQ(options->GetSupportRoundtrip(), RoundTripFull);
  EXPECT_TRUE(options->GetAllowComments());
  other = context;
  EXPECT_EQ(options->GetSupportRoundtrip(), RoundTripAttributes);
}

class Watcher : public test::AnyObject {
 protected:
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* child, const CSerializationContext& context,
                           bool optionalChoice) override {
    ignored = context.GetIgnoreNamespaces();
    if (parent->GetLocalName() == u"bad") throw COvException(u"No.");
    if (parent->GetLocalName() == u"worse") throw 5;
    return AnyObject::FromXml_Int(parent, child, context, optionalChoice);
  }

 public:
  bool ignored = false;
};

// The context that was handed in never changes.
TEST(JsonToXml, IgnoresNamespacesInACopyOfTheContext) {
  for (const char mode : {'n', 'a', 'f'}) {
    const CSerializationContext context = test::ContextOf(mode);
    const CSmartPtr<Watcher> watcher(new Watcher);
    watcher->FromJson("{\"good\": 1}", context);
    EXPECT_EQ(watcher->ignored, mode != 'f');
    EXPECT_EQ(test::FailureOf([&] { watcher->FromJson("{\"bad\": 1}", context); }),
              std::string("Error converting JSON to XML:\n") + kDeclaration + "<bad>1</bad>\n < No.");
    EXPECT_THROW(watcher->FromJson("{\"worse\": 1}", context), int);
    EXPECT_FALSE(context.GetIgnoreNamespaces());
  }
}

}  // namespace
}  // namespace OvXmlLib16
