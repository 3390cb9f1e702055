#include "ovxmllib/foundation/Unicode.h"

#include <gtest/gtest.h>

#include <string>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/foundation/Encoder.h"
#include "tests/support/Bytes.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16::unicode {
namespace {

using test::MessageOf;

// How many ASCII characters before the case at hand: the converters take eight at a time.
constexpr std::size_t kLeads = 18;

WString WithoutCr(const std::string& bytes) {
  WString out(bytes.size(), u'?');
  out.resize(Utf8ToWideDroppingCr(test::Bytes(bytes), bytes.size(), out.data()));
  return out;
}

// By the bit distribution (The Unicode Standard, table 3-6).
void Append(std::uint32_t point, WString& wide, std::string& utf8) {
  if (point > 0xFFFF) wide += static_cast<WChar>(0xD7C0 + (point >> 10));
  wide += static_cast<WChar>(point > 0xFFFF ? 0xDC00 + point % 0x400 : point);
  const unsigned trailing = point < 0x80 ? 0 : point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
  utf8 += static_cast<char>((trailing == 0 ? 0 : 0xF0u << (3 - trailing)) | point >> 6 * trailing);
  for (unsigned i = trailing; i-- != 0;) utf8 += static_cast<char>(0x80 | (point >> 6 * i & 0x3F));
}

// Every code point, in runs and apart, so that each unit and byte stands at some place in the blocks that are converted
// at once.
TEST(Unicode, ConvertsAndMeasuresEveryCodePoint) {
  for (const auto apart : {0u, 1u, 3u, 6u, 11u}) {
    WString wide(apart, u'w');
    std::string utf8(apart, 'w');
    for (std::uint32_t point = 1; point <= 0x10FFFF; point += apart / 2 * 5 + 1) {
      if (point > 0xD7FF && point < 0xE000) continue;
      Append(point, wide, utf8);
      wide.append(apart, u'w');
      utf8.append(apart, 'w');
    }
    std::string writable(utf8.size(), '?');
    EXPECT_EQ(WritableToUtf8(wide, reinterpret_cast<unsigned char*>(writable.data())).read, wide.size());
    EXPECT_TRUE(writable == utf8);
    EXPECT_TRUE(ToUtf8(wide) == utf8 && test::TextOf(EncodeUtf8(wide)) == utf8);
    EXPECT_TRUE(ToWide(utf8) == wide && DecodeUtf8(test::Bytes(utf8), utf8.size()) == wide);
    std::erase(wide, u'\r');
    EXPECT_TRUE(WithoutCr(utf8) == wide);
    EXPECT_EQ(MeasureUtf8(wide).written, ToUtf8(wide).size());
    EXPECT_EQ(FindUnwritable(wide), wide.size());
  }
  const std::string nul("\0x", 2), units("?a\0\x00\xD8\xAC\x20\0\0", 9);
  EXPECT_EQ(ToUtf8(ToWide(nul)), nul);
  EXPECT_EQ(DecodeUtf16(test::Bytes(units) + 1, 4), WString(u"a\xD800\u20AC\0", 4)) << "units as they stand";
  EXPECT_EQ(DecodeUtf16(nullptr, 0), u"");
}

TEST(Unicode, StopsAtIllFormedBytes) {
  for (std::size_t lead = 0; lead < kLeads; ++lead) {
    for (const test::VectorRow& row : test::ReadVectors("foundation/utf8.vec", "ill-formed")) {
      const std::string& bad = row["bytes"];
      const std::string start = std::string(lead, 'w') + "\xC3\xA4", text = start + bad;
      const WString message = FormatString(u"The bytes are no UTF-8 text at position %d.", lead + 2);
      EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { ToWide(text); }), message) << row.Place();
      EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { DecodeUtf8(test::Bytes(text), text.size()); }), message);
      EXPECT_EQ(WithoutCr(start + bad), WString(lead, u'w') + u"\xE4");
    }
  }
}

TEST(Unicode, ReadsNothingBehindTheEnd) {
  for (const std::string_view whole : {"\xDF\xBF", "\xEF\xBF\xBF", "\xF4\x8F\xBF\xBF"}) {
    for (std::size_t cut = 1; cut < whole.size(); ++cut) {
      EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { ToWide(whole.substr(0, cut)); }),
                u"The bytes are no UTF-8 text at position 0.");
    }
  }
  EXPECT_THROW(ToUtf8(WStringView(u"\xD83D\xDE00").substr(0, 1)), COvInvalidValueException);
}

TEST(Unicode, StopsAtWhatNoDocumentCanHold) {
  for (const WStringView filler : {u"a\x7F", u"\x100\x8000", u"\xD83D\xDE00", u"a\xFFFF"}) {
    for (const WString& bad : {WString(1, u'\0'), WString(u"\xD800"), WString(u"\xDBFF"), WString(u"\xDC00"),
                               WString(u"\xDFFF"), WString(u"\xDC00\xD800"), WString(u"\xD800\xD800\xDC00")}) {
      for (std::size_t length = 0; length < 4 * kLeads; ++length) {
        WString text(length % 2, u'w');
        while (text.size() < length / 2) text += filler;
        const std::size_t place = text.size();
        text += bad + WString(length % 4 < 2 ? 0 : kLeads, u'w');
        std::string out(text.size() * kMaxUtf8PerUnit, '?');
        EXPECT_EQ(FindUnwritable(text), place);
        EXPECT_EQ(WritableToUtf8(text, reinterpret_cast<unsigned char*>(out.data())).read, place);
        if (bad[0] == 0) continue;
        const WString message =
            FormatString(u"The text holds the unpaired surrogate U+%04X at position %d.", bad[0], place);
        EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { ToUtf8(text); }), message);
        EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { EncodeUtf8(text); }), message);
        EXPECT_EQ(MeasureUtf8(text).read, place);
      }
    }
  }
}

TEST(Unicode, DropsCarriageReturns) {
  for (std::size_t lead = 0; lead < kLeads; ++lead) {
    const std::string text = std::string(lead, 'w');
    EXPECT_EQ(WithoutCr(text + "\r\n\x0C\x0E\x8D"), ToWide(text) + u"\n\x0C\x0E");
    EXPECT_EQ(WithoutCr(text + "\r\r" + text + "\xC3\xA4\r"), ToWide(text + text + "\xC3\xA4"));
  }
}

TEST(Unicode, ReplacesInMessagesWhatCannotBeConverted) {
  EXPECT_EQ(ToUtf8Lossy(u"a\xD800"
                        u"b\xDC00"),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
  EXPECT_EQ(ToWideLossy("a\xFF"
                        "b\xE2\x82"),
            u"a\uFFFDb\uFFFD\uFFFD");
  EXPECT_EQ(ToUtf8Lossy({}), "");
}

}  // namespace
}  // namespace OvXmlLib16::unicode
