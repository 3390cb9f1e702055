#include "ovxmllib/fastinfoset/FastInfosetReader.h"

#include <gtest/gtest.h>

#include "ovxmllib/binding/FormatString.h"
#include "tests/fastinfoset/Octets.h"
#include "tests/support/AnyObject.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::Loading;
using test::MessageOf;
using test::OctetsOf;
using test::Outcome;

const std::string kHead = OctetsOf("E0 00 00 01 00");

std::vector<test::VectorRow> Rows(std::string_view table) { return test::ReadVectors("fastinfoset/reader.vec", table); }

WString FailureOf(const std::string& octets, const CSerializationContext& context = {}) {
  CXmlDocument document(context);
  return MessageOf([&] { Loading(octets)(document); });
}

TEST(FastInfosetReader, ReadsOverHeadsAsSpecified) {
  for (const test::VectorRow& row : Rows("heads")) {
    SCOPED_TRACE(row.Place());
    EXPECT_EQ(Outcome(Loading(OctetsOf(row["octets"]))), row.Wide("tree"));
  }
}

TEST(FastInfosetReader, ReadsElementsAsSpecified) {
  for (const test::VectorRow& row : Rows("elements")) {
    SCOPED_TRACE(row.Place());
    EXPECT_EQ(Outcome(Loading(kHead + OctetsOf(row["octets"]))), row.Wide("tree"));
  }
}

// Two blanks stand in the messages about marker bits.
TEST(FastInfosetReader, RefusesWhatIsBrokenAsSpecified) {
  for (const test::VectorRow& row : Rows("broken")) {
    SCOPED_TRACE(row.Place());
    EXPECT_EQ(FailureOf(kHead + OctetsOf(row["octets"])), row.Wide("message"));
  }
}

TEST(FastInfosetReader, LeavesTheRestToTheXmlParser) {
  for (const test::VectorRow& row : Rows("other")) {
    SCOPED_TRACE(row.Place());
    EXPECT_EQ(FailureOf(OctetsOf(row["octets"])), row.Wide("message"));
  }
}

TEST(FastInfosetReader, TellsTheOctetOfAFailure) {
  CXmlDocument document;
  try {
    Loading(kHead + OctetsOf("3C 00 'a' C0 00"))(document);
    FAIL();
  } catch (const COvException& exception) {
    EXPECT_EQ(exception.GetFullMessage(),
              u"Failed to parse FastInfoset. Invalid Encoding of Element type.\nOctet 9 of 10.");
  }
}

TEST(FastInfosetReader, DeclaresNamespaces) {
  CXmlDocument document;
  Loading(kHead + OctetsOf("38 CF 00 'p' 00 'u' CD 00 'd' F0 3C 00 'a' 38 CF 81 82 F0 00 FF"))(document);
  EXPECT_EQ(document.LookupNamespaceFromAlias(u"p"), u"d") << "the last one counts";
  EXPECT_EQ(document.LookupAliasFromNamespace(u"d"), u"");
}

TEST(FastInfosetReader, AsksNoCallbackAsSpecified) {
  const std::string octets = kHead + OctetsOf("3C 00 'a' 3C 00 'b' FF");
  EXPECT_EQ(Outcome(Loading(octets), {}, [](CXmlElement*) { return true; }), u"a(b)");
}

TEST(FastInfosetReader, KeepsToTheLimits) {
  CSerializationContext context;
  context.SetMaxElementDepth(2);
  context.SetMaxAttributesPerElement(2);
  context.SetMaxNameLength(3);
  context.SetMaxTextLength(4);
  context.SetAllowDoctype(false);
  EXPECT_EQ(Outcome(Loading(kHead + OctetsOf("7C 00 'a' 78 00 'x' 43 'four' 78 00 'y' 80 F0 00 93 'x' F0 F0")), context)
                .substr(0, 6),
            u"Failed");
  const struct {
    const char *octets, *setter;
  } kRows[] = {{"3C 00 'a' 00 00", "SetMaxElementDepth"},
               {"7C 00 'a' 78 00 'x' FF 78 00 'y' FF 78 00 'z' FF", "SetMaxAttributesPerElement"},
               {"38 CC CC CC", "SetMaxAttributesPerElement"},
               {"3C 03 'four'", "SetMaxNameLength"},
               {"3C 00 'a' 82 02 'fives'", "SetMaxTextLength"},
               {"3C 00 'a' 92 00 'abc' A0", "SetMaxTextLength"},
               {"7C 00 'a' 78 00 'x' 04 'fives'", "SetMaxTextLength"},
               {"C4", "SetAllowDoctype"}};
  for (const auto& row : kRows) {
    EXPECT_NE(FailureOf(kHead + OctetsOf(row.octets), context).find(ToWide(row.setter)), WString::npos) << row.octets;
  }
}

TEST(FastInfosetReader, TakesAnyDepthAndAnyNumberOfAttributes) {
  CSerializationContext context;
  context.SetMaxElementDepth(0);
  context.SetMaxAttributesPerElement(0);
  CXmlDocument document(context);
  const std::size_t depth = 300'000;
  Loading(kHead + OctetsOf("3C 00 'a'") + std::string(depth, '\0') + std::string(depth + 1, '\xF0'))(document);
  EXPECT_EQ(document.GetDocumentElement()->GetFirstElement()->GetLocalName(), u"a");
  std::string many = kHead + OctetsOf("7C 00 'a'");
  for (int i = 0; i < 20'000; ++i) many += OctetsOf("78 05") + "x" + std::to_string(10'000 + i) + '\xFF';
  Loading(many + "\xFF")(document);
  EXPECT_EQ(document.GetDocumentElement()->GetAttributes().size(), 20'000u);
  EXPECT_EQ(FailureOf(many + OctetsOf("00 FF FF"), context),
            u"Failed to parse FastInfoset. An element has two attributes of the same name.");
}

// One stored chunk of 64 KiB, referred to 20,000 times: 1.2 GiB of text in 84 KiB.
TEST(FastInfosetReader, RefusesTheIndexBomb) {
  const std::string chunk = kHead + OctetsOf("3C 00 'a' 93 00 00 FE FD") + std::string(0x10000, 'x');
  EXPECT_EQ(FailureOf(chunk + std::string(20'000, '\xA0') + "\xFF"),
            u"Failed to parse FastInfoset. Texts by index multiply the document more than a hundredfold.");
  EXPECT_EQ(FailureOf(chunk + std::string(63, '\xA0') + "\xFF"), u"(nothing was thrown)");
  const std::string value = kHead + OctetsOf("7C 00 'a' 78 00 'x' 4C 00 00 FE F7") + std::string(0x10000, 'x') + "\xF0";
  EXPECT_EQ(FailureOf(value + test::Repeated(OctetsOf("40 00 80 FF"), 20'000) + "\xFF"),
            u"Failed to parse FastInfoset. Texts by index multiply the document more than a hundredfold.");
}

TEST(FastInfosetReader, UsesThePreparedVocabulary) {
  CSerializationContext context;
  CFIVocabulary& vocabulary = *context.GetFIContext()->GetVocabulary();
  vocabulary.AddElement(u"p", u"u", u"a");
  vocabulary.AddAttribute(u"", u"", u"\u00FC");
  vocabulary.AddElementValue(u"long\r text");
  vocabulary.AddAttributeValue(u"long value");
  vocabulary.m_restrictedAlphabets.push_back(u"AB");
  // A second namespace behind the prepared one, an alphabet of the third index.
  const std::string octets =
      OctetsOf("E0 00 00 01 20 10 00 00 'u' 78 CF 81 81 F0 00 00 80 7D 81 80 FF F0 A0 88 08 13 3D 00 'v' 80 FF");
  EXPECT_EQ(FailureOf(octets, context), u"Failed to parse FastInfoset. There is no part of a name of this index.");
  context.GetFIContext()->SetUseGeneratedVocabulary(true);
  EXPECT_EQ(Outcome(Loading(octets), context), u"{u}a[\u00FC=long value][{u}a=]'long textABA'({v}a)");
}

TEST(FastInfosetReader, TakesPrefixesAsPartOfNamesWhereTheSchemaKnowsNoNamespaces) {
  CSerializationContext context;
  context.SetSchemaType(SchemaType_NoNamespaces);
  EXPECT_EQ(Outcome(Loading(kHead + OctetsOf("3C 02 'p:a' F0")), context), u"p:a");
}

// Everything that a document may hold.
const std::string kEverything = OctetsOf(
    "E0 00 00 01 7F 00 00 'u' 00 00 1F FF 00 'u' 00 01 'AB' 00 00 'g' 00 00 'p' 00 00 'n' 00 00 'l' 00 00 'o' 00 00 "
    "'u' 00 00 'v' 00 20 00 00 00 00 's' 00 03 00 00 00 00 00 00 C3 00 'n' 00 's' 80 F0 D1 00 'e' 80 80 80 F0 00 'x' "
    "00 00 '1' E1 00 't' 00 'd' E2 00 'c' C7 00 's' 00 'p' E1 80 FF F0 78 CF 00 'p' 00 'u' CD 00 'd' F0 3F 81 81 00 "
    "'a' "
    "78 00 'x' 40 '1' 7B 81 81 00 'y' 01 C3 BC F0 E1 80 80 E2 FF CB 00 'e' 80 80 90 't' A0 3D 82 00 'b' 86 03 20 AC D8 "
    "3D DE 00 FF");
const std::string kEverythingMore =
    OctetsOf("40 00 80 FF 88 06 02 20 01 A0 1A 01 8C 0E 05 00*3 01 00*3 02 3C 80 8C 24 't' 8C 14 38 FF");

// The first part ends its root early where it is a document of its own.
std::string Everything() {
  std::string octets = kEverything;
  octets.back() = '\xF0';
  return octets + kEverythingMore;
}

TEST(FastInfosetReader, GoesThroughEveryTruncation) {
  const std::string octets = Everything();
  EXPECT_EQ(Outcome(Loading(octets)).substr(0, 5), u"{u}a[") << ToUtf8(Outcome(Loading(octets)));
  for (std::size_t length = 5; length < octets.size(); ++length) {
    EXPECT_EQ(FailureOf(octets.substr(0, length)), u"Failed to parse FastInfoset. Unexpected End of File.") << length;
  }
}

TEST(FastInfosetReader, GoesThroughEveryOctetInEveryPlace) {
  const std::string octets = Everything();
  std::size_t trees = 0;
  for (std::size_t at = 4; at < octets.size(); ++at) {
    for (int value = 0; value < 256; ++value) {
      std::string changed = octets;
      changed[at] = static_cast<char>(value);
      trees += FailureOf(changed) == u"(nothing was thrown)" ? 1 : 0;
    }
  }
  EXPECT_GT(trees, octets.size()) << "the octet as it was, at least";
}

}  // namespace
}  // namespace OvXmlLib16
