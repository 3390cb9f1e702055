#include "ovxmllib/foundation/Encoder.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

const unsigned char* Bytes(const std::string& text) { return reinterpret_cast<const unsigned char*>(text.data()); }

TEST(Encoder, GoesBothWays) {
  const std::pair<WString, std::string> cases[] = {
      {u"", ""},
      {WString(u"\0x", 2), std::string("\0x", 2)},
      {u"more than a block \u00FC\u20AC\U0001F600\U0010FFFF",
       "more than a block \xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF"},
  };
  for (const auto& [text, bytes] : cases) {
    const CBinaryData encoded = EncodeUtf8(text);
    EXPECT_EQ(std::string(encoded.GetData(), encoded.GetData() + encoded.GetLength()), bytes);
    EXPECT_EQ(DecodeUtf8(Bytes(bytes), bytes.size()), text);
  }
}

TEST(Encoder, RefusesWhatCannotBeConverted) {
  EXPECT_EQ(test::MessageOf<COvInvalidValueException>([] { EncodeUtf8(u"\u20AC123456789\xDC00"); }),
            u"The text holds the unpaired surrogate U+DC00 at position 10.");
  const std::string cut = "123456789\xE2\x82";
  EXPECT_EQ(test::MessageOf<COvInvalidValueException>([&] { DecodeUtf8(Bytes(cut), cut.size()); }),
            u"The bytes are no UTF-8 text at position 9.");
}

TEST(Encoder, TakesUtf16UnitsAsTheyStand) {
  const std::string bytes("?a\0\x00\xD8\xAC\x20\0\0", 9);
  EXPECT_EQ(DecodeUtf16(Bytes(bytes) + 1, 4), WString(u"a\xD800\u20AC\0", 4));
  EXPECT_EQ(DecodeUtf16(nullptr, 0), u"");
}

}  // namespace
}  // namespace OvXmlLib16
