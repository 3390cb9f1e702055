#include "ovxmllib/foundation/TextStream.h"

#include <gtest/gtest.h>

#include "ovxmllib/foundation/Encoder.h"
#include "ovxmllib/foundation/FileBinaryStream.h"
#include "ovxmllib/foundation/FileTextStream.h"
#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;

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
  void (*const exits[])(CTextStream&) = {
      [](CTextStream& stream) { stream.GetString(); },
      [](CTextStream& stream) { stream.GetText(); },
      [](CTextStream& stream) { stream.GetBytes(); },
  };
  for (const auto& fault : cases) {
    for (std::size_t step = 1; step <= fault.text.size(); ++step) {
      for (const auto exit : exits) {
        for (const XmlEncoding encoding : kEncodings) {
          CTextStream stream(encoding);
          const auto write = [&] {
            WriteInSteps(stream, fault.text, step);
            exit(stream);
          };
          EXPECT_EQ(MessageOf<COvInvalidValueException>(write), fault.expected) << step;
        }
      }
    }
    CTextStream wide;
    WriteInSteps(wide, fault.text, 2);
    EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { wide.GetString(); }), fault.expected);
    EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { wide.GetText(); }), fault.expected);
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

TEST(Streams, AreMonitoredUnderTheirOwnNames) {
  const CTextStream text;
  const CFileTextStream textFile("f", XmlEncoding_UTF8);
  const CBinaryStream binary;
  const CFileBinaryStream binaryFile("f", XmlEncoding_UTF8);
  const WString report = CInstanceMonitor::DumpState();
  for (const WString name : {u"CTextStream", u"CFileTextStream", u"CBinaryStream", u"CFileBinaryStream"}) {
    EXPECT_NE(report.find(u"--> " + name + u" = 1/"), WString::npos) << ToUtf8(report);
  }
}

}  // namespace
}  // namespace OvXmlLib16
