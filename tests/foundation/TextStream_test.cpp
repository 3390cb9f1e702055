// The sinks of text: the buffer, the stream over it, and its file.

#include <gtest/gtest.h>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/foundation/Encoder.h"
#include "ovxmllib/foundation/FileTextStream.h"
#include "tests/support/FileTest.h"
#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;
using FileStreams = test::FileTest;

constexpr std::size_t kCapacity = 4095;

WString Pattern(std::size_t length) {
  WString result(length, u'\0');
  for (std::size_t i = 0; i < length; ++i) result[i] = static_cast<WChar>(u'!' + i % 89);
  return result;
}

std::size_t CountBlocks(const CStringBuffer& buffer) {
  std::size_t count = 0;
  buffer.VisitBlocks([&](WStringView) { ++count; });
  return count;
}

TEST(StringBuffer, KeepsTheTextOverBlockBorders) {
  const WString text = Pattern(3 * kCapacity + 2);
  for (const std::size_t step : {1u, 2u, 3u, 7u, 4094u, 4095u, 4096u, 12286u}) {
    CStringBuffer buffer;
    for (std::size_t i = 0; i < text.size(); i += step) {
      step == 1 ? buffer.Append(text[i]) : buffer.Append(WStringView(text).substr(i, step));
    }
    EXPECT_EQ(buffer.GetLength(), text.size());
    EXPECT_EQ(buffer.GetText(), text);
    EXPECT_EQ(CountBlocks(buffer), 4u) << "each but the last is full";
    EXPECT_EQ(buffer.GetString(), text);
    EXPECT_EQ(CountBlocks(buffer), 1u);
    buffer.Append(buffer.GetText());
    EXPECT_EQ(buffer.GetString(), text + text);
    buffer.Reset();
    EXPECT_EQ(buffer.GetString(), WString());
  }
}

TEST(StringBuffer, GivesRoomInOnePiece) {
  for (const std::size_t blockSize : {0u, 1u, 2u, 5u, 4096u}) {
    CStringBuffer buffer(blockSize);
    WString expected;
    for (const std::size_t room : {0u, 3u, 4092u, 1u, 12285u, 4095u}) {
      const WString text = Pattern(room - room / 3);
      WChar* const out = buffer.Reserve(room);
      buffer.Commit(out + text.copy(out, text.size()));
      buffer.Append(u"+");
      expected += text + u"+";
      EXPECT_EQ(buffer.GetText(), expected);
    }
  }
}

constexpr XmlEncoding kEncodings[] = {XmlEncoding_UTF8, XmlEncoding_UTF16, XmlEncoding_UTF16NoHeader};

const WString kText = u"a\u00FC\u20AC\U0001F600\U0001F601b\U0010FFFF and so on, in ASCII \U00010000";

CBinaryData Encoded(WStringView text, XmlEncoding encoding) {
  if (encoding == XmlEncoding_UTF8) return EncodeUtf8(text);
  CBinaryData units;
  units.Append(text);
  return units;
}

// Writes `text` with a flush every `step` units.
void WriteInSteps(CTextStream& stream, WStringView text, std::size_t step) {
  for (std::size_t i = 0; i < text.size(); i += step) {
    step == 1 ? stream.Write(text[i]) : stream.Write(text.substr(i, step));
    stream.Flush();
  }
}

TEST(TextStream, SplitsPairsAtFlushesAndBlocks) {
  for (const XmlEncoding encoding : kEncodings) {
    for (std::size_t step = 1; step <= kText.size(); ++step) {
      CTextStream stream(encoding);
      WriteInSteps(stream, kText, step);
      EXPECT_EQ(stream.GetBufferedLength(), 0u);
      EXPECT_EQ(stream.GetBytes(), Encoded(kText, encoding)) << step;
    }
    for (std::size_t lead = 8189; lead <= 8192; ++lead) {
      const WString text = WString(lead, u'w') + kText + WString(lead, u'w') + kText;
      CTextStream stream(encoding);
      stream.Write(text);
      EXPECT_EQ(stream.GetBytes(), Encoded(text, encoding)) << lead;
    }
  }
}

TEST(TextStream, MayBeAskedInBetween) {
  for (const XmlEncoding encoding : kEncodings) {
    CTextStream stream(encoding);
    EXPECT_TRUE(stream.GetBytes().IsEmpty());
    stream.Write(kText);
    const CBinaryData first = stream.GetBytes();
    stream.Write(u"buffered");
    EXPECT_EQ(stream.GetString(), kText + u"buffered");
    stream.Write(WChar{0xD83D});
    stream.Flush();
    stream.Write(WChar{0xDE00});
    EXPECT_EQ(stream.GetText(), kText + u"buffered\U0001F600");
    EXPECT_EQ(stream.GetBytes(), Encoded(kText + u"buffered\U0001F600", encoding));
    EXPECT_EQ(first, Encoded(kText, encoding));

    stream.Write(WChar{0xD83D});
    stream.Flush();
    stream.Open();
    EXPECT_TRUE(stream.GetBytes().IsEmpty()) << "Open drops everything";
    stream.Write(WChar{0xDC00});
    EXPECT_TRUE(MessageOf([&] { stream.GetBytes(); }).ends_with(u"at position 0."));
  }
}

// Writes UTF-8 in place.
void PutUtf8(CTextStream& stream, std::string_view bytes) {
  stream.CommitUtf8(std::copy(bytes.begin(), bytes.end(), stream.ReserveUtf8(bytes.size())));
}

TEST(TextStream, TakesUtf8BetweenText) {
  const std::string bytes = ToUtf8(kText);
  for (std::size_t times = 1; times <= 300; times += 13) {
    CTextStream stream(XmlEncoding_UTF8);
    WString expected;
    for (std::size_t i = 0; i < times; ++i) {
      if (i % 3 == 0) stream.Write(kText);
      if (i % 5 == 0) stream.Flush();
      if (i % 7 == 0) {
        EXPECT_EQ(stream.GetString(), expected + (i % 3 == 0 ? kText : WString()));
      }
      PutUtf8(stream, bytes);
      expected += (i % 3 == 0 ? kText : WString()) + kText;
    }
    EXPECT_EQ(stream.GetBytes(), EncodeUtf8(expected)) << times;
    stream.Write(u"more");
    stream.Write(WChar{0xDC00});
    EXPECT_TRUE(MessageOf([&] { stream.Flush(); }).ends_with(FormatString(u"at position %d.", expected.size() + 4)));
  }
  CTextStream cut(XmlEncoding_UTF8);
  cut.Write(WChar{0xD83D});
  EXPECT_TRUE(MessageOf([&] { PutUtf8(cut, bytes); }).ends_with(u"U+D83D at position 0."));
}

TEST(TextStream, LetsNothingOutThatNoDocumentCanHold) {
  const struct {
    WString text, expected;
  } cases[] = {
      {WString(u"abc\0def", 7), u"The text holds the character U+0000 at position 3, which no document can hold."},
      {u"abc\xDC00", u"The text holds the unpaired surrogate U+DC00 at position 3."},
      {u"abc\xD800-", u"The text holds the unpaired surrogate U+D800 at position 3."},
      {u"ab\xD800\xD801\xDC00", u"The text holds the unpaired surrogate U+D800 at position 2."},
      {u"abcdefghijk\U0001F600\xDBFF", u"The text holds the unpaired surrogate U+DBFF at position 13."},
  };
  for (const auto& fault : cases) {
    for (std::size_t step = 1; step <= fault.text.size(); ++step) {
      for (int exit = 0; exit < 12; ++exit) {
        CTextStream stream(static_cast<XmlEncoding>(exit % 4));
        const auto write = [&] {
          WriteInSteps(stream, fault.text, step);
          if (exit / 4 == 0) stream.GetString();
          if (exit / 4 == 1) stream.GetText();
          if (exit / 4 == 2) stream.GetBytes();
        };
        if (exit == 8) continue;  // no bytes without an encoding
        EXPECT_EQ(MessageOf<COvInvalidValueException>(write), fault.expected) << step;
      }
    }
  }
}

TEST(TextStream, RefusesBytesInAnUnknownEncodingButLosesNothing) {
  for (const int number : {0, 4, -1}) {
    CTextStream stream(static_cast<XmlEncoding>(number));
    WriteInSteps(stream, kText, 3);
    EXPECT_EQ(MessageOf([&] { stream.GetBytes(); }), u"Unknown Encoding, select UTF-8 (contact our support team)");
    EXPECT_EQ(stream.GetBufferedLength(), kText.size());
    EXPECT_EQ(stream.GetString(), kText);
    EXPECT_EQ(stream.GetText(), kText);
  }
}

TEST_F(FileStreams, CloseTheFileWhenAPieceFails) {
  for (const bool inClose : {false, true}) {
    CFileTextStream stream("/dev/full", XmlEncoding_UTF8);
    stream.Open();
    stream.Write(u"text");
    EXPECT_EQ(MessageOf([&] { inClose ? stream.Close() : stream.Flush(); }),
              u"Failed to write data to the file. Error [0x0000001C]");
    EXPECT_TRUE(AllFilesAreClosed());
    stream.Write(u"more");
    EXPECT_EQ(MessageOf([&] { stream.Close(); }), u"Failed to write data to the file. Error [0x00000009]");
  }
}

// Behind the whole part of a text that ends in half of a pair.
TEST_F(FileStreams, LeaveThePartThatWasWritten) {
  CFileTextStream stream(m_folder / "f", XmlEncoding_UTF8);
  stream.Open();
  stream.Write(u"one ");
  stream.Flush();
  stream.Write(u"two\xD800");
  EXPECT_TRUE(MessageOf<COvInvalidValueException>([&] { stream.Close(); }).ends_with(u"at position 7."));
  EXPECT_TRUE(AllFilesAreClosed());
  EXPECT_EQ(test::ReadFile(m_folder / "f"), "one two");
  stream.Open();
  stream.Write(u"lost");
  stream.Open();
  stream.Close();
  EXPECT_EQ(test::ReadFile(m_folder / "f"), "");
}

}  // namespace
}  // namespace OvXmlLib16
