// Objects and documents through Fast Infoset and back.

#include <gtest/gtest.h>

#include <functional>

#include "bench/OrdersDocument.h"
#include "examples/orders/Orders.h"
#include "ovxmllib/fastinfoset/BinaryForms.h"
#include "ovxmllib/fastinfoset/FastInfosetWriter.h"
#include "ovxmllib/fastinfoset/OctetReader.h"
#include "tests/fastinfoset/Octets.h"
#include "tests/mapping/Failures.h"
#include "tests/support/KitchenSink.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

using test::FailureOf;
using test::FilledSink;
using test::KitchenSink;

constexpr int kNumbers = 12;

void ExpectSame(const KitchenSink& sink, const CBinaryData& data, const CSerializationContext& context) {
  const CSmartPtr<KitchenSink> again = KitchenSink::Make();
  EXPECT_EQ(FailureOf([&] { again->FromXmlStream(data, context); }), "");
  EXPECT_TRUE(Equal(&sink, again));
}

// What is written of each sink, in every compression and as a file, reads as an equal object.
void ExpectSameSinks(const CSerializationContext& context) {
  const test::TemporaryFolder folder;
  const auto file = folder / "sink.fi";
  for (int number = 0; number < kNumbers; ++number) {
    SCOPED_TRACE(number);
    const CSmartPtr<KitchenSink> sink = FilledSink(number);
    for (const CompressionType compression : {CompressionType_None, CompressionType_GZip, CompressionType_ZLib}) {
      const auto declaration = static_cast<FInfoDecl>((number + compression) % 10);
      ExpectSame(*sink, sink->ToFastInfosetStream(declaration, context, compression), context);
      if (compression == CompressionType_ZLib) continue;
      sink->ToFastInfosetFile(file, declaration, context, compression);
      const CSmartPtr<KitchenSink> again = KitchenSink::Make();
      again->FromXmlFile(file, context);
      EXPECT_TRUE(Equal(sink, again));
    }
  }
  ExpectSame(*test::LeastSink(), test::LeastSink()->ToFastInfosetStream(FInfoDecl_None, context), context);
}

TEST(RoundTrip, GivesEqualObjects) {
  CSerializationContext context;
  ExpectSameSinks(context);
  context.SetWriteDefaultElementValues(true);
  context.GetFIContext()->SetElementMaxAddLength(1000);
  context.GetFIContext()->SetAttributeMaxAddLength(0);
  ExpectSameSinks(context);
}

// The sinks hold what the suggested encodings do not: fractions of seconds, zones ahead of UTC, an integer above the
// signed range. With those types as text all are equal.
TEST(RoundTrip, GivesEqualObjectsWithSuggestedValues) {
  CSerializationContext context;
  const std::size_t plain = FilledSink(0)->ToFastInfosetStream().GetLength();
  context.GetFIContext()->SetSuggestedValues();
  EXPECT_NE(FailureOf([&] { FilledSink(0)->ToFastInfosetStream(FInfoDecl_None, context); }), "");
  for (const ItemType type : {ItemType_ui8, ItemType_yearMonth, ItemType_date, ItemType_datetime, ItemType_time}) {
    context.GetFIContext()->SetEncoding(static_cast<std::uint32_t>(type), {});
  }
  ExpectSameSinks(context);
  EXPECT_LT(FilledSink(0)->ToFastInfosetStream(FInfoDecl_None, context).GetLength(), plain);
}

// The vocabulary that a generator would make of a document of the classes: all its names.
void AddNames(CFIVocabulary& vocabulary, const CXmlElement& element) {
  const auto prefix = [](const WString& ns) { return ns.empty() ? u"" : u"AA"; };
  vocabulary.AddElement(prefix(element.GetNamespaceURI()), element.GetNamespaceURI(), element.GetLocalName());
  for (const CXmlAttribute* a : element.GetAttributes()) {
    vocabulary.AddAttribute(prefix(a->GetNamespaceURI()), a->GetNamespaceURI(), a->GetLocalName());
  }
  const CXmlElement* child = const_cast<CXmlElement&>(element).GetFirstElement();
  for (; child != nullptr; child = child->GetNextSiblingElement()) AddNames(vocabulary, *child);
}

TEST(RoundTrip, GivesEqualObjectsWithAVocabulary) {
  CSerializationContext context;
  CXmlDocument names;
  names.LoadXml(FilledSink(1)->ToXml().c_str());
  AddNames(*context.GetFIContext()->GetVocabulary(), *names.GetDocumentElement());
  const std::size_t plain = FilledSink(1)->ToFastInfosetStream(FInfoDecl_None, context).GetLength();
  context.GetFIContext()->SetUseGeneratedVocabulary(true);
  ExpectSameSinks(context);
  context.GetFIContext()->SetExternalVocabularyURI(u"urn:sink");
  ExpectSameSinks(CSerializationContext(context));
  const CBinaryData data = FilledSink(1)->ToFastInfosetStream(FInfoDecl_None, context);
  EXPECT_LT(data.GetLength(), plain);
  // One side alone has it.
  EXPECT_EQ(test::MessageOf([&] { KitchenSink::Make()->FromXmlStream(data); }),
            u"Failed to parse FastInfoset. There is no name of this index.");
}

TEST(RoundTrip, GivesEqualOrders) {
  CSerializationContext context = orders::COrders::MakeContext();
  const std::string document = bench::MakeOrdersDocument(60'000);
  const CSmartPtr<orders::COrders> first(new orders::COrders), second(new orders::COrders);
  first->FromXml(std::string_view(document));
  const CBinaryData data = first->ToFastInfosetStream(FInfoDecl_None, context);
  second->FromXmlStream(data);
  EXPECT_EQ(ToUtf8(second->ToXml()), ToUtf8(first->ToXml()));
  EXPECT_LT(2 * data.GetLength(), document.size());
}

TEST(RoundTrip, RefusesZLibFilesAndSmallCompression) {
  const CSmartPtr<KitchenSink> sink = FilledSink(0);
  EXPECT_EQ(
      test::MessageOf([&] { sink->ToFastInfosetFile(u"/nowhere/at all", FInfoDecl_None, {}, CompressionType_ZLib); }),
      u"ZLIB Compression only available for To Stream methods.");
  EXPECT_THROW(sink->ToFastInfosetFile(u"/nowhere/at all"), COvException);
}

// A string of each length at a boundary of a form, as name, value and text.
TEST(RoundTrip, KeepsLengthsAtTheBoundariesOfTheForms) {
  for (const std::size_t boundary : {1u, 2u, 3u, 8u, 9u, 64u, 65u, 258u, 259u, 264u, 265u, 320u, 321u, 70'000u}) {
    for (std::size_t length = std::max<std::size_t>(boundary, 2) - 1; length <= boundary + 1; ++length) {
      const WString text(length, u'x'), wide(length, u'\u20AC');
      CBinaryStream stream;
      CFastInfosetContext context;
      CFastInfosetWriter writer(&context, &stream);
      writer.WriteDocumentStart(FInfoDecl_None);
      writer.StartElement(text, u"");
      writer.WriteAttribute(u"x", u"", text, ItemType_string);
      writer.WriteAttribute(u"y", u"", wide, ItemType_string);
      writer.WriteText(text, ItemType_string);
      writer.WriteText(wide, ItemType_string);
      writer.EndElement();
      writer.WriteDocumentEnd();
      EXPECT_EQ(test::Outcome(test::Loading(test::TextOf(stream.GetData()))),
                text + u"[x=" + text + u"][y=" + wide + u"]'" + text + wide + u"'")
          << length;
    }
  }
}

// The row's own octets, around each boundary, read back behind any other bits.
template <const fastinfoset::NumberForm& kForm>
void ExpectNumbersKept() {
  for (const fastinfoset::NumberRow& row : kForm.rows) {
    for (const std::uint64_t number : {row.first, row.first + (row.last - row.first) / 2, row.last}) {
      unsigned char octets[fastinfoset::kMaxNumberOctets];
      const unsigned char* const end = fastinfoset::PutNumber(kForm, 0, number, octets);
      EXPECT_EQ(end - octets, row.octets + 1);
      fastinfoset::OctetReader in(octets, static_cast<std::size_t>(end - octets), 1);
      EXPECT_EQ(in.ReadNumber<kForm>(octets[0]), number) << ToUtf8(kForm.failure);
      EXPECT_EQ(test::MessageOf([&] { in.Read(); }), u"Failed to parse FastInfoset. Unexpected End of File.");
    }
  }
}

TEST(RoundTrip, KeepsNumbersAtTheBoundariesOfTheForms) {
  using namespace fastinfoset;
  ExpectNumbersKept<kIndexOnSecondBit>();
  ExpectNumbersKept<kIndexOrZeroOnSecondBit>();
  ExpectNumbersKept<kIndexOnThirdBit>();
  ExpectNumbersKept<kIndexOnFourthBit>();
  ExpectNumbersKept<kLengthOnSecondBit>();
  ExpectNumbersKept<kLengthOnFifthBit>();
  ExpectNumbersKept<kLengthOnSeventhBit>();
  ExpectNumbersKept<kSequenceLength>();
}

// Indexes of every size, up to the last that the tables have, and what comes behind it.
TEST(RoundTrip, KeepsIndexesUpToTheEndOfTheTables) {
  constexpr std::uint32_t kLast = 1u << 20;
  CFastInfosetContext context;
  CBinaryStream stream;
  CFastInfosetWriter writer(&context, &stream);
  const auto text = [](std::uint32_t number) {
    return WString{static_cast<WChar>(u'A' + number / 0x4000), static_cast<WChar>(0x3400 + number % 0x4000 % 128),
                   static_cast<WChar>(0x3400 + number % 0x4000 / 128)};
  };
  writer.WriteDocumentStart(FInfoDecl_None);
  writer.StartElement(u"r", u"");
  for (std::uint32_t number = 0; number <= kLast; ++number) writer.WriteText(text(number), ItemType_string);
  const std::uint32_t kAsked[] = {1, 16, 17, 1040, 1041, 263184, 263185, kLast, kLast + 1};
  WString expected;
  for (const std::uint32_t index : kAsked) {
    writer.StartElement(u"a", u"");
    writer.WriteText(text(index - 1), ItemType_string);
    writer.EndElement();
    expected += text(index - 1) + u" ";
  }
  writer.EndElement();
  writer.WriteDocumentEnd();
  CXmlDocument document;
  test::Loading(test::TextOf(stream.GetData()))(document);
  WString got;
  for (CXmlElement* a = document.GetDocumentElement()->GetFirstElement(); a != nullptr;
       a = a->GetNextSiblingElement()) {
    got += a->GetText() + u" ";
  }
  EXPECT_EQ(got, expected);
}

}  // namespace
}  // namespace OvXmlLib16
