#include "ovxmllib/foundation/TextStream.h"

#include <gtest/gtest.h>

#include <span>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/foundation/BinaryStream.h"
#include "ovxmllib/foundation/Encoder.h"
#include "ovxmllib/foundation/FileBinaryStream.h"
#include "ovxmllib/foundation/FileTextStream.h"
#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;

constexpr XmlEncoding kEncodings[] = {XmlEncoding_None, XmlEncoding_UTF8, XmlEncoding_UTF16, XmlEncoding_UTF16NoHeader};

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

TEST(TextStream, SplitsPairsAtEveryFlush) {
  for (const XmlEncoding encoding : kEncodings) {
    for (std::size_t step = 1; step <= kText.size(); ++step) {
      CTextStream stream(encoding);
      stream.Open();
      WriteInSteps(stream, kText, step);
      stream.Close();
      EXPECT_EQ(stream.GetBufferedLength(), encoding == XmlEncoding_None ? kText.size() : 0u);
      if (encoding != XmlEncoding_None) {
        EXPECT_EQ(stream.GetBytes(), Encoded(kText, encoding)) << step;
      }
      EXPECT_EQ(stream.GetText(), kText) << step;
      EXPECT_EQ(stream.GetString(), kText) << step;
    }
  }
}

TEST(TextStream, SplitsPairsAtBlockBorders) {
  for (const XmlEncoding encoding : {XmlEncoding_UTF8, XmlEncoding_UTF16}) {
    for (std::size_t lead = 8189; lead <= 8192; ++lead) {
      const WString text = WString(lead, u'w') + kText + WString(lead, u'w') + kText;
      CTextStream stream(encoding);
      stream.Write(text);
      EXPECT_EQ(stream.GetBytes(), Encoded(text, encoding)) << lead;
    }
  }
}

TEST(TextStream, MayBeAskedInBetween) {
  for (const XmlEncoding encoding : {XmlEncoding_UTF8, XmlEncoding_UTF16}) {
    CTextStream stream(encoding);
    stream.Open();
    EXPECT_TRUE(stream.GetBytes().IsEmpty());
    EXPECT_EQ(stream.GetString(), WString());
    stream.Write(kText);
    const CBinaryData first = stream.GetBytes();
    stream.Write(kText);
    EXPECT_EQ(stream.GetBytes(), Encoded(kText + kText, encoding));
    EXPECT_EQ(first, Encoded(kText, encoding));
    stream.Write(u"buffered");
    EXPECT_EQ(stream.GetString(), kText + kText + u"buffered");
    stream.Write(WChar{0xD83D});
    stream.Flush();
    stream.Write(WChar{0xDE00});
    EXPECT_EQ(stream.GetText(), kText + kText + u"buffered\U0001F600");
    EXPECT_EQ(stream.GetBytes(), Encoded(kText + kText + u"buffered\U0001F600", encoding));

    stream.Write(WChar{0xD83D});
    stream.Flush();
    stream.Open();
    stream.Write(u"anew");
    EXPECT_EQ(stream.GetBytes(), Encoded(u"anew", encoding)) << "Open drops everything";
    stream.Open();
    stream.Write(WChar{0xDC00});
    EXPECT_TRUE(MessageOf([&] { stream.GetBytes(); }).ends_with(u"at position 0."));
  }
}

TEST(TextStream, LetsNothingOutThatNoDocumentCanHold) {
  const struct {
    WString text;
    std::size_t position;
    WString fault;
  } cases[] = {
      {WString(u"abc\0def", 7), 3, u"character U+0000"},
      {u"abc\xDC00", 3, u"unpaired surrogate U+DC00"},
      {u"abc\xD800-", 3, u"unpaired surrogate U+D800"},
      {u"ab\xD800\xD801\xDC00", 2, u"unpaired surrogate U+D800"},
      {u"abcdefghijk\U0001F600\xDBFF", 13, u"unpaired surrogate U+DBFF"},
  };
  void (*const exits[])(CTextStream&) = {
      [](CTextStream& stream) { stream.GetString(); },
      [](CTextStream& stream) { stream.GetText(); },
      [](CTextStream& stream) { stream.GetBytes(); },
  };
  for (const auto& fault : cases) {
    const WString expected = FormatString(u"The text holds the %s at position %d", fault.fault, fault.position);
    for (const XmlEncoding encoding : kEncodings) {
      for (std::size_t step = 1; step <= fault.text.size(); ++step) {
        for (const auto exit : std::span(exits).first(encoding == XmlEncoding_None ? 2 : 3)) {
          CTextStream stream(encoding);
          const WString message = MessageOf<COvInvalidValueException>([&] {
            WriteInSteps(stream, fault.text, step);
            exit(stream);
          });
          EXPECT_TRUE(message.starts_with(expected)) << ToUtf8(message) << " for steps of " << step;
        }
      }
    }
  }
}

TEST(TextStream, RefusesBytesInAnUnknownEncodingButLosesNothing) {
  for (const int number : {0, 4, -1}) {
    CTextStream stream(static_cast<XmlEncoding>(number));
    EXPECT_EQ(stream.GetEncoding(), number);
    WriteInSteps(stream, kText, 3);
    EXPECT_EQ(MessageOf([&] { stream.GetBytes(); }), u"Unknown Encoding, select UTF-8 (contact our support team)");
    EXPECT_EQ(stream.GetText(), kText);
  }
}

TEST(BinaryStream, CollectsBytes) {
  const unsigned char bytes[] = {1, 2, 3};
  CBinaryStream stream(CBinaryData(bytes, 2));
  stream.Write(static_cast<unsigned char>(9));
  const CBinaryData before = stream.GetData();
  stream.Write(bytes, 3);
  stream.Write(before);
  EXPECT_EQ(before.GetAsHexString(), u"010209");
  EXPECT_EQ(stream.GetData().GetAsHexString(), u"010209010203010209");
}

TEST(Streams, AreMonitoredUnderTheirOwnNames) {
  const CStringBuffer buffer;
  const CTextStream text;
  const CFileTextStream textFile("f", XmlEncoding_UTF8);
  const CBinaryStream binary;
  const CFileBinaryStream binaryFile("f", XmlEncoding_UTF8);
  const WString report = CInstanceMonitor::DumpState();
  for (const WString name : {u"CTextStream", u"CFileTextStream", u"CBinaryStream", u"CFileBinaryStream"}) {
    EXPECT_NE(report.find(u"--> " + name + u" = 1/"), WString::npos) << ToUtf8(report);
  }
  EXPECT_NE(report.find(u"--> CStringBuffer = 3/"), WString::npos) << ToUtf8(report);
}

}  // namespace
}  // namespace OvXmlLib16
