#include "ovxmllib/foundation/Unicode.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "ovxmllib/binding/FormatString.h"
#include "tests/support/Thrown.h"

namespace OvXmlLib16::unicode {
namespace {

using test::MessageOf;

// How many ASCII characters before the case at hand: the converters take eight at a time.
constexpr std::size_t kLeads = 18;

const std::pair<WString, std::string> kSound[] = {
    {u"\x7F", "\x7F"},
    {u"\x80", "\xC2\x80"},
    {u"\x7FF", "\xDF\xBF"},
    {u"\x800", "\xE0\xA0\x80"},
    {u"\xFFF", "\xE0\xBF\xBF"},
    {u"\x1000", "\xE1\x80\x80"},
    {u"\xD7FF", "\xED\x9F\xBF"},
    {u"\xE000", "\xEE\x80\x80"},
    {u"\xFFFF", "\xEF\xBF\xBF"},
    {u"\xD800\xDC00", "\xF0\x90\x80\x80"},
    {u"\xD8BF\xDFFF", "\xF0\xBF\xBF\xBF"},
    {u"\xD8C0\xDC00", "\xF1\x80\x80\x80"},
    {u"\xDBBF\xDFFF", "\xF3\xBF\xBF\xBF"},
    {u"\xDBC0\xDC00", "\xF4\x80\x80\x80"},
    {u"\xDBFF\xDFFF", "\xF4\x8F\xBF\xBF"},
    {u"\xE4\x20AC\xD83D\xDE00z", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80z"},
    {WString(1, u'\0'), std::string(1, '\0')},
};

// The Unicode Standard, section 3.9, table 3-7, and what is cut off.
const std::string kIllFormed[] = {"\x80",
                                  "\xBF",
                                  "\xC0\x80",
                                  "\xC1\xBF",
                                  "\xC2",
                                  "\xC2\x7F",
                                  "\xC2\xC0",
                                  "\xE0\x80\x80",
                                  "\xE0\x9F\xBF",
                                  "\xE1\x80",
                                  "\xE1\x80\x7F",
                                  "\xE1\x7F\x80",
                                  "\xED\xA0\x80",
                                  "\xED\xBF\xBF",
                                  "\xEF\xBF",
                                  "\xF0\x8F\xBF\xBF",
                                  "\xF0\x90\x80",
                                  "\xF1\x80\x80\x7F",
                                  "\xF1\x80\xC0\x80",
                                  "\xF4\x90\x80\x80",
                                  "\xF5\x80\x80\x80",
                                  "\xF8\x88\x80\x80\x80",
                                  "\xFE",
                                  "\xFF"};

const WString kUnpaired[] = {
    u"\xD800", u"\xDBFF", u"\xDC00", u"\xDFFF", u"\xDC00\xD800", u"\xD800z", u"\xD800\xD800\xDC00"};

WString WithoutCr(const std::string& bytes) {
  WString out(bytes.size(), u'?');
  out.resize(Utf8ToWideDroppingCr(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), out.data()));
  return out;
}

TEST(Unicode, ConvertsEveryBoundaryBothWays) {
  for (std::size_t lead = 0; lead < kLeads; ++lead) {
    for (const auto& [wide, utf8] : kSound) {
      const WString wideText = WString(lead, u'w') + wide + wide + WString(lead, u'w');
      const std::string utf8Text = std::string(lead, 'w') + utf8 + utf8 + std::string(lead, 'w');
      EXPECT_EQ(ToUtf8(wideText), utf8Text);
      EXPECT_EQ(ToWide(utf8Text), wideText);
      EXPECT_EQ(WithoutCr(utf8Text), wideText);
      EXPECT_EQ(MeasureUtf8(wideText).written, utf8Text.size());
      EXPECT_EQ(MeasureUtf8(wideText).read, wideText.size());
    }
  }
}

// Every code point, so that each unit and byte stands at some place in the blocks that are converted at once.
TEST(Unicode, ConvertsAndMeasuresEveryCodePoint) {
  for (const std::size_t shift : {0u, 1u, 3u, 6u}) {
    std::u32string points(shift, U'w');
    for (char32_t point = 1; point <= 0x10FFFF; point += point == 0xD7FF ? 0x801 : 1) points += point;
    WString wide;
    for (const char32_t point : points) {
      if (point > 0xFFFF) wide += static_cast<WChar>(0xD7C0 + (point >> 10));
      wide += static_cast<WChar>(point > 0xFFFF ? 0xDC00 + point % 0x400 : point);
    }
    const std::string utf8 = ToUtf8(wide);
    std::string writable(utf8.size(), '?');
    EXPECT_EQ(WritableToUtf8(wide, reinterpret_cast<unsigned char*>(writable.data())).read, wide.size());
    EXPECT_EQ(writable, utf8);
    EXPECT_EQ(ToWide(utf8), wide);
    EXPECT_EQ(MeasureUtf8(wide).written, utf8.size());
    EXPECT_EQ(FindUnwritable(wide), wide.size());
  }
}

TEST(Unicode, StopsAtIllFormedBytes) {
  for (std::size_t lead = 0; lead < kLeads; ++lead) {
    for (const std::string& bad : kIllFormed) {
      const std::string start = std::string(lead, 'w') + "\xC3\xA4";
      EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { ToWide(start + bad); }),
                u"The bytes are no UTF-8 text at position " + ToWide(std::to_string(lead + 2)) + u".");
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

TEST(Unicode, StopsAtUnpairedSurrogates) {
  for (std::size_t lead = 0; lead < kLeads; ++lead) {
    for (const WString& bad : kUnpaired) {
      const WString text = WString(lead, u'w') + u"\xE4" + bad;
      const WString message = MessageOf<COvInvalidValueException>([&] { ToUtf8(text); });
      EXPECT_EQ(message,
                FormatString(u"The text holds the unpaired surrogate U+%04X at position %d.", bad[0], lead + 1));
      EXPECT_EQ(MeasureUtf8(text).read, lead + 1);
      EXPECT_EQ(FindUnwritable(text), lead + 1);
    }
  }
}

TEST(Unicode, FindsWhatNoDocumentCanHold) {
  for (const WStringView filler : {u"a\x7F", u"\x100\x8000", u"\xD83D\xDE00", u"a\xFFFF"}) {
    WString text;
    while (text.size() < 2 * kLeads) text += filler;
    EXPECT_EQ(FindUnwritable(text), text.size());
    for (std::size_t at = 0; at <= text.size(); at += 2) {
      WString bad = text;
      bad.insert(at, 1, u'\0');
      std::string out(bad.size() * kMaxUtf8PerUnit, '?');
      EXPECT_EQ(FindUnwritable(bad), at);
      EXPECT_EQ(WritableToUtf8(bad, reinterpret_cast<unsigned char*>(out.data())).read, at);
      bad[at] = 0xDC00;
      EXPECT_EQ(FindUnwritable(bad), at);
    }
  }
  EXPECT_NE(MessageOf<COvInvalidValueException>([] {
              ThrowUnwritable(WStringView(u"ab\0", 3), 2, 1000);
            }).find(u"U+0000 at position 1002"),
            WString::npos);
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
