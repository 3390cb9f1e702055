#include <gtest/gtest.h>

#include "ovxmllib/fastinfoset/FastInfosetBinaryData.h"
#include "ovxmllib/fastinfoset/RestrictedAlphabet.h"
#include "tests/fastinfoset/Octets.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::HexOf;
using test::MessageOf;
using test::OctetsOf;

std::vector<test::VectorRow> Rows(std::string_view table) {
  return test::ReadVectors("fastinfoset/encoded_values.vec", table);
}

std::uint32_t AlgorithmOf(const test::VectorRow& row) { return static_cast<std::uint32_t>(row.Number("algorithm")); }

CFastInfosetBinaryData DataOf(const test::VectorRow& row) { return test::Data(OctetsOf(row["octets"])); }

TEST(EncodedValues, GoBothWays) {
  for (const test::VectorRow& row : Rows("both")) {
    SCOPED_TRACE(row.Place());
    CFastInfosetBinaryData data(u"old");
    data.SetAsEncodedString(AlgorithmOf(row), row.Wide("text").c_str());
    EXPECT_EQ(HexOf(data), HexOf(OctetsOf(row["octets"])));
    EXPECT_EQ(data.GetAsString(AlgorithmOf(row)), row.Wide("reads as"));
  }
}

void ExpectRead(std::string_view table) {
  for (const test::VectorRow& row : Rows(table)) {
    SCOPED_TRACE(row.Place());
    EXPECT_EQ(DataOf(row).GetAsString(AlgorithmOf(row)), row.Wide("reads as"));
  }
}

TEST(EncodedValues, ReadLists) { ExpectRead("read"); }
TEST(EncodedValues, ReadBooleansAsSpecified) { ExpectRead("booleans as specified"); }

TEST(EncodedValues, RefuseWhatIsNoValue) {
  for (const test::VectorRow& row : Rows("unreadable")) {
    SCOPED_TRACE(row.Place());
    EXPECT_EQ(MessageOf([&] { DataOf(row).GetAsString(AlgorithmOf(row)); }), row.Wide("message"));
  }
  for (const test::VectorRow& row : Rows("unwritable")) {
    SCOPED_TRACE(row.Place());
    CFastInfosetBinaryData data(u"old");
    EXPECT_EQ(MessageOf([&] { data.SetAsEncodedString(AlgorithmOf(row), row.Wide("text").c_str()); }),
              row.Wide("message"));
    EXPECT_TRUE(data.IsEmpty()) << "the old data are gone";
  }
  CFastInfosetBinaryData data;
  for (const auto& [algorithm, text] : {std::pair(3u, u"32768"),
                                        {4u, u"2147483648"},
                                        {5u, u"9223372036854775808"},
                                        {6u, u"yes"},
                                        {7u, u"1,5"},
                                        {8u, u""}}) {
    EXPECT_THROW(data.SetAsEncodedString(algorithm, text), COvInvalidValueException) << algorithm;
  }
  EXPECT_THROW(data.SetAsEncodedString(10, u"\xDC00"), COvInvalidValueException);
}

TEST(EncodedValues, ReadAlphabetsOfAnyWidth) {
  for (const test::VectorRow& row : Rows("alphabets")) {
    SCOPED_TRACE(row.Place());
    const std::string octets = OctetsOf(row["octets"]);
    WString text;
    fastinfoset::DecodeAlphabet(row.Wide("alphabet"), {test::Bytes(octets), octets.size()}, text);
    EXPECT_EQ(text, row.Wide("text"));
  }
  const auto decode = [](std::size_t size) {
    const unsigned char octets[] = {0x01, 0x02, 0xFE};
    WString alphabet(size, u'x'), text;
    fastinfoset::DecodeAlphabet(alphabet, octets, text);
    return text;
  };
  EXPECT_EQ(decode(255), u"xxx");
  EXPECT_EQ(decode(0x100000), u"x") << "21 bits of 24";
  const WString size =
      u"Failed to parse FastInfoset. Invalid Encoding of Restricted Alphabet. Alphabet must contain between 2 and 2^20 "
      u"characters.";
  EXPECT_EQ(MessageOf([&] { decode(1); }), size);
  EXPECT_EQ(MessageOf([&] { decode(0x100001); }), size);
  EXPECT_EQ(MessageOf([&] { decode(2); }),
            u"Failed to parse FastInfoset. Invalid character position for Restricted Alphabet.");
}

}  // namespace
}  // namespace OvXmlLib16
