#include "ovxmllib/values/Decimal.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <unordered_set>

#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;
using test::ReadVectors;

constexpr char kFile[] = "values/decimal.vec";

WString InvalidAt(const std::string& position, const WString& text) {
  return u"The string representing a Decimal, contained an invalid char at position " + ToWide(position) + u" [" +
         text + u"].";
}

TEST(Decimal, ReadsAndPrintsAsSpecified) {
  for (const auto& row : ReadVectors(kFile, "parse")) {
    const CDecimal value(row.Wide("text"));
    EXPECT_EQ(value.ToString(), row.Wide("prints")) << row.Place();
    EXPECT_EQ(CDecimal::FromUtf8(value.ToUtf8()), value) << row.Place();
  }
  std::ostringstream out;
  out << CDecimal(u"-0.50");
  EXPECT_EQ(out.str(), "-0.5");
  EXPECT_EQ(CDecimal(static_cast<const WChar*>(nullptr)), 0);
}

TEST(Decimal, RefusesOtherText) {
  for (const auto& row : ReadVectors(kFile, "refused")) {
    const WString text = row.Wide("text");
    EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { CDecimal{text}; }), InvalidAt(row["position"], text))
        << row.Place();
  }
}

TEST(Decimal, RoundsHalvesAwayFromZeroInPlacesAsSpecified) {
  for (const auto& row : ReadVectors(kFile, "places")) {
    const auto places = static_cast<std::int32_t>(row.Number("places"));
    EXPECT_EQ(CDecimal(row.Wide("text")).ToString(places), row.Wide("prints")) << row.Place();
  }
}

TEST(Decimal, Calculates) {
  for (const auto& row : ReadVectors(kFile, "calculate")) {
    CDecimal a(row.Wide("a")), b(row.Wide("b"));
    const char sign = row["operator"].front();
    const CDecimal result = sign == '/' ? a / b : sign == '*' ? a * b : sign == '+' ? a + b : a - b;
    EXPECT_EQ(result.ToString(), row.Wide("prints")) << row.Place();
  }
  CDecimal value(u"0.5");
  EXPECT_EQ((value++).ToUtf8(), "0.5");
  EXPECT_EQ((++value).ToUtf8(), "2.5");
  EXPECT_EQ((value--).ToUtf8(), "2.5");
  EXPECT_EQ((--value).ToUtf8(), "0.5");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { value /= CDecimal(u"-0.0"); }), u"ERROR: Overflow in operator/.");
  EXPECT_EQ(CBigInteger(2) + value, CDecimal(u"2.5"));
}

TEST(Decimal, ComparesPartsWithTheirSignsAsSpecified) {
  for (const auto& row : ReadVectors(kFile, "compare")) {
    const CDecimal a(row.Wide("a")), b(row.Wide("b"));
    std::string verdicts;
    for (const bool holds : {a == b, a != b, a<b, a> b, a <= b, a >= b}) verdicts += holds ? '1' : '0';
    EXPECT_EQ(verdicts, row["verdicts"]) << row.Place();
  }
  EXPECT_TRUE(CDecimal(u"-5") < CDecimal(-5) && CDecimal(u"-5") == CDecimal(-5));
  EXPECT_EQ(std::unordered_set<CDecimal>({CDecimal(u"1.5"), CDecimal(u"-0"), CDecimal(u"0.00"), 0, -5}).size(), 3u);
}

// Parts of different signs come from negating what was made of a negative integer.
TEST(Decimal, NegatedIntegersAddUp) {
  EXPECT_EQ((CDecimal(u"-2") - CDecimal(-5)).ToUtf8(), "3");
  EXPECT_EQ((CDecimal(-5).GetNegative() + CDecimal(u"-2")).GetFractionDivider(), 1);
  EXPECT_FALSE(CDecimal(u"-2") - CDecimal(-5) < CDecimal(3));
}

TEST(Decimal, Converts) {
  for (const auto& row : ReadVectors(kFile, "overflow")) {
    const CDecimal value(row.Wide("text"));
    std::ostringstream result;
    try {
      if (row["conversion"] == "long") result << value.ToLong();
      if (row["conversion"] == "longlong") result << value.ToLongLong();
      if (row["conversion"] == "double") result << value.ToDouble();
    } catch (const COvOverFlowException& exception) {
      result << exception;
    }
    EXPECT_EQ(result.str(), row["result"]) << row.Place();
  }
  EXPECT_EQ(CDecimal(0.1).ToUtf8(), "0.1");
  EXPECT_EQ(CDecimal(std::numeric_limits<double>::max()).ToUtf8().size(), 309u);
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(MessageOf<COvInvalidValueException>([=] { CDecimal{infinity}; }), InvalidAt("0", u"inf\n"));
  EXPECT_EQ(MessageOf<COvInvalidValueException>([=] { CDecimal{-infinity}; }), InvalidAt("1", u"-inf\n"));
}

TEST(Decimal, KeepsAsManyPlacesAsIsSet) {
  struct Restore {
    ~Restore() { CDecimal::SetMaxDecimalPlaces(30); }
  } restore;
  const auto third = [](std::int32_t places) {
    CDecimal::SetMaxDecimalPlaces(places);
    EXPECT_EQ(CDecimal::GetMaxDecimalPlaces(), places);
    return (CDecimal(1) / 3).ToUtf8();
  };
  EXPECT_EQ(third(40), "0." + std::string(40, '3'));
  EXPECT_EQ(third(3), "0.333");
  EXPECT_EQ(third(0), "0");
  EXPECT_EQ(third(std::numeric_limits<std::int32_t>::min()), "0");
  EXPECT_EQ(CDecimal(u"1.6").ToUtf8(), "2");
  const CDecimal wholes[] = {CDecimal(u"12"), CDecimal(u"1234567890123456789012")};
  CDecimal::SetMaxDecimalPlaces(30);
  EXPECT_EQ(wholes[0].ToString(2), u"12.00");
  EXPECT_EQ(wholes[1].ToString(2), u"1234567890123456789012.00");
  EXPECT_EQ(third(std::numeric_limits<std::int32_t>::max()).size(), 1'000'002u);
}

TEST(Decimal, LongTextsTakeTimeInProportion) {
  const WString zeros(1'000'000, u'0'), nines(1'000'000, u'9');
  const std::pair<WString, std::string> vectors[] = {{u"0." + zeros + u"1", "0"},
                                                     {u"-0." + nines, "-1"},
                                                     {zeros + u"." + zeros, "0"},
                                                     {u"1" + zeros + u"e-1000", "1" + std::string(999'000, '0')},
                                                     {nines + u"e-1000", "1" + std::string(999'000, '0')},
                                                     {u"." + nines + u"E1000", "1" + std::string(1000, '0')},
                                                     {WString(1'000'000, u' ') + u"7", "7"}};
  for (const auto& [text, expected] : vectors) {
    EXPECT_TRUE(CDecimal(text).ToUtf8() == expected) << ToUtf8(text.substr(0, 20));
  }
  const CDecimal big(nines);
  EXPECT_TRUE((big + big - big).ToString() == nines);
  EXPECT_TRUE(big == big && big <= big && !(big < big));
}

}  // namespace
}  // namespace OvXmlLib16
