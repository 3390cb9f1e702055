#include "ovxmllib/fastinfoset/FastInfosetWriter.h"

#include <gtest/gtest.h>

#include "ovxmllib/fastinfoset/RestrictedAlphabet.h"
#include "ovxmllib/values/OvVariant.h"
#include "ovxmllib/values/PrimitiveRows.h"
#include "tests/fastinfoset/Octets.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"
#include "tests/support/WriterScript.h"

namespace OvXmlLib16 {
namespace {

using test::HexOf;
using test::MessageOf;
using test::OctetsOf;

const CFastInfosetContext kDefaults;

template <class Steps>
CBinaryData WrittenBy(const CFastInfosetContext& context, const Steps& steps, FInfoDecl declaration = FInfoDecl_None) {
  CBinaryStream stream;
  CFastInfosetWriter writer(&context, &stream);
  writer.Open();
  writer.WriteDocumentStart(declaration);
  steps(writer);
  writer.WriteDocumentEnd();
  writer.Close();
  return stream.GetData();
}

CBinaryData Written(const CFastInfosetContext& context, WStringView script, ItemType type = ItemType_string) {
  return WrittenBy(context, [&](CXmlWriter& writer) { test::Perform(writer, script, test::PlainDialect{type}); });
}

std::vector<test::VectorRow> Rows(std::string_view table) { return test::ReadVectors("fastinfoset/writer.vec", table); }

void ExpectDocuments(std::string_view table) {
  for (const test::VectorRow& row : Rows(table)) {
    SCOPED_TRACE(row.Place());
    EXPECT_EQ(HexOf(Written(kDefaults, row.Wide("script"))), HexOf(OctetsOf("E0 00 00 01 00 " + row["octets"])));
  }
}

TEST(FastInfosetWriter, WritesDocuments) { ExpectDocuments("documents"); }
TEST(FastInfosetWriter, WritesTypesAsSpecified) { ExpectDocuments("types as specified"); }

ItemType TypeOf(std::string_view name) {
  ItemType found = ItemType_none;
  for (int type = 0; type <= ItemType_XmlCollection; ++type) {
    VisitPrimitive(static_cast<ItemType>(type), [&](auto row) {
      if (ToUtf8(row.kName) == name) found = row.kType;
    });
  }
  return found;
}

TEST(FastInfosetWriter, WritesValuesAsSuggested) {
  CFastInfosetContext context;
  context.SetSuggestedValues();
  for (const test::VectorRow& row : Rows("suggested")) {
    SCOPED_TRACE(row.Place());
    const ItemType type = TypeOf(row["type"]);
    const WString value = row.Wide("value");
    EXPECT_EQ(HexOf(Written(context, u"<a @x=" + value + u" >", type)),
              HexOf(OctetsOf("E0 00 00 01 00 78 F0 3C 00 'a' 78 00 'x' " + row["attribute"] + " F0 FF")));
    EXPECT_EQ(HexOf(Written(context, u"<a '" + value + u" >", type)),
              HexOf(OctetsOf("E0 00 00 01 00 38 F0 3C 00 'a' " + row["text"] + " FF")));
  }
  // The tables know texts and not types.
  const auto twice = [](CXmlWriter& writer) {
    writer.StartElement(u"a", u"");
    writer.WriteText(u"5", ItemType_i4);
    writer.WriteText(u"5", ItemType_string);
    writer.EndElement();
  };
  EXPECT_EQ(HexOf(WrittenBy(context, twice)),
            HexOf(OctetsOf("E0 00 00 01 00 38 F0 3C 00 'a' 9C 0E 01 00 00 00 05 A0 FF")));
}

TEST(FastInfosetWriter, NamesTheVocabularyInForce) {
  CFastInfosetContext context;
  context.GetVocabulary()->AddElement(u"", u"", u"a");
  context.GetVocabulary()->AddAttribute(u"", u"", u"x");
  context.GetVocabulary()->AddElementValue(u"a long text");
  context.SetElementMaxAddLength(20);
  context.SetExternalVocabularyURI(u"urn:v");
  EXPECT_EQ(HexOf(Written(context, u"<a >")), HexOf(OctetsOf("E0 00 00 01 00 38 F0 3C 00 'a' FF")));
  context.SetUseGeneratedVocabulary(true);
  const auto script = [](CXmlWriter& writer) {
    writer.StartElement(u"a", u"");
    writer.WriteAttribute(u"x", u"", u"1", ItemType_string);
    writer.WriteText(u"a long text", ItemType_string);
    writer.EndElement();
  };
  for (int document = 0; document < 2; ++document) {
    EXPECT_EQ(HexOf(WrittenBy(context, script)),
              HexOf(OctetsOf("E0 00 00 01 20 10 00 04 'urn:v' 78 F0 00 00 40 '1' F0 A0 FF")))
        << "a document adds nothing to the vocabulary";
  }
  context.SetExternalVocabularyURI(u"");
  EXPECT_EQ(test::TextOf(Written(context, u"<a >")).substr(7, 5), OctetsOf("22 'urn:'"));
}

TEST(FastInfosetWriter, PutsADeclarationAhead) {
  const auto script = [](CXmlWriter& writer) { test::Perform(writer, u"<a >"); };
  const std::string plain = test::TextOf(WrittenBy(kDefaults, script));
  EXPECT_EQ(test::TextOf(WrittenBy(kDefaults, script, FInfoDecl_Encoding)), "<?xml encoding='finf'?>" + plain);
  EXPECT_EQ(test::TextOf(WrittenBy(kDefaults, script, FInfoDecl_V11NotStandalone)),
            "<?xml version='1.1' encoding='finf' standalone='no'?>" + plain);
  EXPECT_EQ(test::TextOf(WrittenBy(kDefaults, script, static_cast<FInfoDecl>(10))), plain);
}

// A descendant may choose the default encoding, of which the writer knows one.
struct WideContext : CFastInfosetContext {
  WideContext() { m_byDefaultStringEncoding = 1; }
};

TEST(FastInfosetWriter, RefusesWhatItCannotWrite) {
  for (const test::VectorRow& row : Rows("failures")) {
    SCOPED_TRACE(row.Place());
    CFastInfosetContext context;
    context.SetEncoding(ItemType_string, {static_cast<std::uint32_t>(row.Number("kind")),
                                          static_cast<std::uint32_t>(row.Number("index"))});
    EXPECT_EQ(ToUtf8(MessageOf([&] { Written(context, row.Wide("script")); })), row["message"]);
  }
  EXPECT_EQ(MessageOf([] { Written(WideContext(), u"<a 't"); }),
            u"Failed to write FastInfoset. Unsupported Feature UTF16BE in EncodedCharacterStringBit5.");
  for (const WStringView text : {u"\u0001", u"longerText\xD800", u"\uFFFF"}) {
    EXPECT_NE(MessageOf<COvInvalidValueException>([&] { Written(kDefaults, u"<a '" + WString(text)); }).find(u"U+"),
              WString::npos);
  }
}

TEST(FastInfosetWriter, TellsTheSizeOfAlphabets) {
  unsigned char out[8];
  const auto encode = [&](std::size_t size) {
    WString alphabet;
    for (std::size_t i = 0; i < size; ++i) alphabet += static_cast<WChar>(u'A' + i);
    return MessageOf([&] { fastinfoset::EncodeAlphabet(alphabet, u"BA", out); });
  };
  const WString wrongSize =
      u"Failed to write FastInfoset. Invalid Restricted Alphabet. Alphabet must contain between 2 and 2^20 characters.";
  const WString unsupported = u"Failed to write FastInfoset. Unsupported Feature in AppendRestrictedAlphabetString.";
  EXPECT_EQ(encode(1), wrongSize);
  EXPECT_EQ(encode(0x100001), wrongSize);
  EXPECT_EQ(encode(7), unsupported);
  EXPECT_EQ(encode(16), unsupported);
  EXPECT_EQ(encode(256), unsupported);
  WString alphabet(200, u'\0');
  for (std::size_t i = 0; i < alphabet.size(); ++i) alphabet[i] = static_cast<WChar>(0x100 + i);
  EXPECT_EQ(fastinfoset::EncodeAlphabet(alphabet, u"\u0101\u0100\u01C7", out), 3u);
  EXPECT_EQ(HexOf(CBinaryData(out, 3)), "01 00 C7");
}

// A start tag longer than the writer's memory: the octet that tells of its attributes is far away when they come.
TEST(FastInfosetWriter, KeepsTheStartOfALongTag) {
  WString ns(100'000, u'u');
  const auto steps = [&](CXmlWriter& writer) {
    writer.StartElement(u"r", u"");
    writer.StartElement(u"a", ns);
    for (int i = 0; i < 3; ++i) writer.WriteAttribute(ToWide("x" + std::to_string(i)), u"", ns, ItemType_string);
    writer.EndElement();
    writer.EndElement();
  };
  const CBinaryData data = WrittenBy(kDefaults, steps);
  WString expected = u"r({" + ns + u"}a";
  for (const WStringView name : {u"x0", u"x1", u"x2"}) expected += u"[" + WString(name) + u"=" + ns + u"]";
  EXPECT_EQ(test::Outcome(test::Loading(test::TextOf(data))), expected + u")");
}

}  // namespace
}  // namespace OvXmlLib16
