// Bound objects to JSON and back.

#include <gtest/gtest.h>

#include <regex>

#include "bench/OrdersDocument.h"
#include "examples/orders/Orders.h"
#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/foundation/Encoder.h"
#include "ovxmllib/foundation/FileTextStream.h"
#include "tests/json/Roads.h"
#include "tests/support/FileTest.h"
#include "tests/support/KitchenSink.h"

namespace OvXmlLib16 {
namespace {

using orders::COrders;
using test::KitchenSink;

CSerializationContext SinkContext(JsonRoundTrip mode = RoundTripFull) {
  CSerializationContext context;
  context.SetDefaultNamespaceURI(test::kNs);
  const std::pair<const WChar*, WStringView> kAliases[] = {
      {u"s", test::kNs}, {u"o", u"urn:other"}, {u"t", u"urn:third"}, {u"xsi", kXsiNamespace}};
  for (const auto& [alias, ns] : kAliases) context.GetNamespaceAliases().Add(alias, WString(ns).c_str());
  context.GetJsonContext()->SetSupportRoundtrip(mode);
  return context;
}

std::string WithoutLineFeeds(const WString& xml) { return std::regex_replace(ToUtf8(xml), std::regex("\n|&#xA;"), ""); }

// JSON keeps no line feeds and does not tell what is nil, and infinities are no JSON. With these numbers no object is
// nil; values with the others are replaced.
CSmartPtr<KitchenSink> Sink(int number) {
  CSmartPtr<KitchenSink> sink = test::FilledSink(number);
  const std::string xml = WithoutLineFeeds(sink->ToXml(/*header=*/false, /*formatted=*/false));
  sink->FromXml(std::string_view(std::regex_replace(xml, std::regex("\\b(INF|NaN)\\b"), "1")));
  return sink;
}
constexpr int kNumbers[] = {0, 4, 6, 10};

template <class Read>
void ExpectSame(const KitchenSink& sink, const Read& read) {
  const CSmartPtr<KitchenSink> again = KitchenSink::Make();
  EXPECT_EQ(test::FailureOf([&] { read(*again); }), "");
  EXPECT_TRUE(Equal(&sink, again)) << ToUtf8(sink.ToXml()) << ToUtf8(again->ToXml());
}

using JsonRoundTripFiles = test::FileTest;

TEST_F(JsonRoundTripFiles, EveryEncodingAndCompressionGivesEqualSinks) {
  const CSerializationContext context = SinkContext();
  const auto file = m_folder / "sink";
  for (const int number : kNumbers) {
    const CSmartPtr<KitchenSink> sink = Sink(number);
    for (const bool formatted : {false, true}) {
      SCOPED_TRACE(testing::Message() << number << formatted);
      const WString text = sink->ToJson(formatted, EOLType_LF, context);
      ExpectSame(*sink, [&](KitchenSink& again) { again.FromJson(text.c_str(), context); });
      const CBinaryData wide = sink->ToJsonStream(formatted, XmlEncoding_UTF16, EOLType_LF, context);
      EXPECT_TRUE(text == DecodeUtf16(wide.GetData(), wide.GetLength() / sizeof(WChar)));
    }
    for (const CompressionType compression : {CompressionType_None, CompressionType_GZip, CompressionType_ZLib}) {
      ExpectSame(*sink, [&](KitchenSink& again) {
        again.FromJsonStream(sink->ToJsonStream(true, XmlEncoding_UTF8, EOLType_CRLF, context, compression), context);
      });
      if (compression == CompressionType_ZLib) continue;
      for (const bool direct : {false, true}) {
        AsyncToXmlFile(direct);
        ExpectSame(*sink, [&](KitchenSink& again) {
          sink->ToJsonFile(file, true, XmlEncoding_UTF8, EOLType_LF, context, compression);
          again.FromJsonFile(file, context);
        });
      }
    }
  }
  EXPECT_EQ(test::FailureOf([&] {
              KitchenSink::Make()->ToJsonFile(file, true, XmlEncoding_UTF8, EOLType_LF, context, CompressionType_ZLib);
            }),
            "ZLIB Compression only available for To Stream methods.");
}

// Without namespaces an object comes back when they are ignored: xsi:type and wildcards cannot.
TEST(JsonRoundTrip, AttributesGiveEqualOrdersWithoutNamespaces) {
  CXmlObjectBase::Register(16, 1);
  for (const JsonRoundTrip mode : {RoundTripFull, RoundTripAttributes}) {
    CSerializationContext context = COrders::MakeContext();
    context.GetJsonContext()->SetSupportRoundtrip(mode);
    for (std::uint64_t seed = 1; seed <= 4; ++seed) {
      const std::string document = bench::MakeOrdersDocument(60'000, seed);
      const CSmartPtr<COrders> orders(new COrders), again(new COrders);
      orders->FromXml(std::string_view(document));
      const std::string json = ToUtf8(orders->ToJson(seed % 2 == 0, EOLType_LF, context));
      EXPECT_EQ(json.find("xmlns") != json.npos, mode == RoundTripFull);
      again->FromJson(std::string_view(json), context);
      EXPECT_EQ(ToUtf8(again->ToXml(false, false)), WithoutLineFeeds(orders->ToXml(false, false)));
      EXPECT_TRUE(test::GoesShortRoad(json, context));
      EXPECT_FALSE(context.GetIgnoreNamespaces());
      test::ReadOnBothRoads(json, context);
    }
  }
}

TEST(JsonRoundTrip, SinksReadTheSameOnBothRoads) {
  for (const JsonRoundTrip mode : {RoundTripFull, RoundTripAttributes, RoundTripNone}) {
    const CSerializationContext context = SinkContext(mode);
    for (int number = 0; number < 12; ++number) {
      const CSmartPtr<KitchenSink> sink = test::FilledSink(number + (number % 2 == 0 ? 0 : test::kMixedContent));
      test::ReadOnBothRoads(ToUtf8(sink->ToJson(number % 3 == 0, EOLType_LF, context)), context);
    }
  }
}

// What is no JSON in the output of sinks, as it is meant: infinities and line feeds.
TEST(JsonRoundTrip, WritesWhatHasNoJsonFormAsSpecified) {
  const std::string json = ToUtf8(test::FilledSink(2)->ToJson(false, EOLType_LF, SinkContext()));
  EXPECT_NE(json.find(": INF,"), std::string::npos);
  EXPECT_NE(json.find('\n'), std::string::npos);
  EXPECT_NE(json.find(": null"), std::string::npos);
}

}  // namespace
}  // namespace OvXmlLib16
