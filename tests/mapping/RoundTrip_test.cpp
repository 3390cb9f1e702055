#include <gtest/gtest.h>

#include "ovxmllib/document/XmlDocument.h"
#include "tests/mapping/Failures.h"
#include "tests/support/KitchenSink.h"
#include "tests/support/TemporaryFolder.h"

namespace OvXmlLib16 {
namespace {

using test::FailureOf;
using test::FilledSink;
using test::KitchenSink;

constexpr int kNumbers = 12;

// What `read` makes of a new object must equal `sink`.
template <class Read>
void ExpectSame(const KitchenSink& sink, const Read& read) {
  const CSmartPtr<KitchenSink> again = KitchenSink::Make();
  EXPECT_EQ(FailureOf([&] { read(*again); }), "");
  EXPECT_TRUE(Equal(&sink, again));
}

void ExpectSameThroughText(const KitchenSink& sink, bool formatted) {
  const CSerializationContext context;
  WString text;
  EXPECT_EQ(FailureOf([&] { text = sink.ToXml(/*header=*/true, formatted, EOLType_LF, context); }), "");
  ExpectSame(sink, [&](KitchenSink& again) {
    again.FromXml(text.c_str(), context);
    EXPECT_EQ(ToUtf8(again.ToXml(true, formatted, EOLType_LF, context)), ToUtf8(text));
  });
}

TEST(RoundTrip, TextGivesEqualObjects) {
  for (int number = 0; number < kNumbers; ++number) {
    SCOPED_TRACE(number);
    ExpectSameThroughText(*FilledSink(number), /*formatted=*/false);
    ExpectSameThroughText(*FilledSink(number), /*formatted=*/true);
    ExpectSameThroughText(*FilledSink(test::kMixedContent + number), /*formatted=*/false);
  }
  ExpectSameThroughText(*test::LeastSink(), /*formatted=*/true);
}

// Comparing has to see what differs, or the tests here would pass for anything.
TEST(RoundTrip, SeesWhatDiffers) {
  for (int number = 0; number < kNumbers; ++number) {
    EXPECT_FALSE(Equal(FilledSink(number), FilledSink(number + 1)));
    const CSmartPtr<KitchenSink> one = FilledSink(number), other = FilledSink(number);
    EXPECT_TRUE(Equal(one, other));
    other->anys->Item(0)->GetAttributes()->Item(0)->SetValue(u"changed");
    EXPECT_FALSE(Equal(one, other));
  }
}

TEST(RoundTrip, EveryEncodingAndCompressionGivesEqualObjects) {
  const test::TemporaryFolder folder;
  const auto file = folder / "sink";
  const CSerializationContext context;
  for (const XmlEncoding encoding : {XmlEncoding_UTF8, XmlEncoding_UTF16, XmlEncoding_UTF16NoHeader}) {
    for (const EOLType eol : {EOLType_LF, EOLType_CRLF}) {
      for (const CompressionType compression : {CompressionType_None, CompressionType_GZip, CompressionType_ZLib}) {
        SCOPED_TRACE(testing::Message() << encoding << ' ' << eol << ' ' << compression);
        const CSmartPtr<KitchenSink> sink = FilledSink(encoding + 4 * compression + eol);
        ExpectSame(*sink, [&](KitchenSink& again) {
          again.FromXmlStream(sink->ToXmlStream(true, true, encoding, eol, context, compression), context);
        });
        if (compression == CompressionType_ZLib) continue;
        ExpectSame(*sink, [&](KitchenSink& again) {
          sink->ToXmlFile(file, true, true, encoding, eol, context, compression);
          again.FromXmlFile(file, context);
        });
      }
    }
  }
}

TEST(RoundTrip, WritesTheDefaultOrLeavesItOut) {
  CSerializationContext context;
  context.SetWriteDefaultElementValues(true);
  context.SetNoOptionalAttributeDefaultOutput(true);
  const CSmartPtr<KitchenSink> sink = FilledSink(1), again = KitchenSink::Make();
  const std::string text = ToUtf8(sink->ToXml(false, false, EOLType_LF, context));
  EXPECT_NE(text.find(":byDefault>42<"), std::string::npos);
  EXPECT_NE(text.find(":shadeByDefault>dark<"), std::string::npos);
  EXPECT_EQ(text.find("withDefault="), std::string::npos);
  again->FromXml(text.c_str());
  EXPECT_FALSE(again->withDefault.IsSet()) << "the default of an attribute plays no part on reading";
}

}  // namespace
}  // namespace OvXmlLib16
