#include "ovxmllib/values/DateTimeSpan.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>

#include "ovxmllib/binding/OvException.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;
using test::ReadVectors;
using test::VectorRow;

constexpr const char* kFile = "values/duration.vec";

CDateTimeSpan Parsed(WStringView text) {
  CDateTimeSpan span(1, 2, 3, 4, 5, 6, 7, 8, 9);
  span.Negate();
  span.ParseXSDDuration(text);
  return span;
}

TEST(DateTimeSpan, ParsesAndPrintsAsSpecified) {
  for (const VectorRow& row : ReadVectors(kFile, "parse")) {
    SCOPED_TRACE(row.Place());
    EXPECT_EQ(Parsed(row.Wide("text")).ToString(), row.Wide("prints"));
    std::ostringstream out;
    out << Parsed(row.Wide("text"));
    EXPECT_EQ(out.str(), row["prints"]);
  }
  const CDateTimeSpan span = Parsed(u"-P1Y2M3DT4H5M6.007008009S");
  const std::array<std::uint64_t, 9> components = {
      span.GetYears(),   span.GetMonths(),       span.GetDays(),         span.GetHours(),      span.GetMinutes(),
      span.GetSeconds(), span.GetMilliSeconds(), span.GetMicroSeconds(), span.GetNanoSeconds()};
  EXPECT_EQ(components, (std::array<std::uint64_t, 9>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_TRUE(span.IsNegative());
}

TEST(DateTimeSpan, RefusesWithMessagesAsSpecified) {
  for (const VectorRow& row : ReadVectors(kFile, "refuse")) {
    SCOPED_TRACE(row.Place());
    EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { Parsed(row.Wide("text")); }), row.Wide("message"));
  }
  const WChar* const none = nullptr;
  EXPECT_EQ(MessageOf([&] { CDateTimeSpan().ParseXSDDuration(none); }), u"Invalid XSD Duration (Null String)");
  EXPECT_NE(MessageOf([&] { Parsed(u"P" + WString(1'000'000, u'9') + u"D"); }), u"(nothing was thrown)");
}

TEST(DateTimeSpan, SurvivesEveryTruncationAndReplacement) {
  const WStringView whole = u"-P1Y2M3DT4H5M6.789S";
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (const WChar c : WStringView(u"-PYMDTHS.9\0\uFFFF", 12)) {
      WString text(whole);
      text[i] = c;
      text.shrink_to_fit();
      for (const WStringView part : {WStringView(text), WStringView(text).substr(0, i), WStringView(text).substr(i)}) {
        MessageOf<COvInvalidValueException>([&] { Parsed(part).ToString(); });
      }
    }
  }
}

TEST(DateTimeSpan, PrintsTheLongestValue) {
  CDateTimeSpan span(65535, ~0u, ~0u, ~0u, ~std::uint64_t{0}, ~std::uint64_t{0}, 65535, 65535, 65535);
  span.Negate();
  EXPECT_EQ(span.ToString(),
            u"-P65535Y4294967295M4294967295DT4294967295H18446744073709551615M18446744073709551615.655356553565535S");
}

TEST(DateTimeSpan, SettersForgetAllElse) {
  CDateTimeSpan span = Parsed(u"-P1Y2M3DT4H5M6.789S");
  span.SetDateTimeSpan(1, 2, 3);
  EXPECT_EQ(span.ToString(), u"PT1H2M3S");
  span.SetDateTimeSpan(1, 2, 3, 4, 5, 6, 7, 8, 9);
  span.SetDateTimeSpan(1, 2, 3, 4, 5, 6);
  EXPECT_EQ(span.ToString(), u"P1Y2M3DT4H5M6S");
}

TEST(DateTimeSpan, NegativeStaysNegativeAsSpecified) {
  const CDateTimeSpan span = Parsed(u"P1D").GetAsNegative();
  EXPECT_EQ(span.ToString(), u"-P1D");
  EXPECT_EQ(span.GetAsNegative().ToString(), u"-P1D");
  CDateTimeSpan turned = span;
  turned.Negate();
  EXPECT_EQ(turned.ToString(), u"P1D");
}

TEST(DateTimeSpan, ComparesFromFourMoments) {
  constexpr std::string_view kResults[] = {"equal", "less", "greater", "indeterminate"};
  constexpr CDateTime::DTCompareResult kReversed[] = {CDateTime::dtc_equal, CDateTime::dtc_greater, CDateTime::dtc_less,
                                                      CDateTime::dtc_indeterminate};
  for (const VectorRow& row : ReadVectors(kFile, "compare")) {
    SCOPED_TRACE(row.Place());
    const CDateTimeSpan a = Parsed(row.Wide("a")), b = Parsed(row.Wide("b"));
    const auto forward = a.CompareTo(b), back = b.CompareTo(a);
    EXPECT_EQ(kResults[forward], row["result"]);
    EXPECT_EQ(back, kReversed[forward]);
    EXPECT_EQ(a < b, forward == CDateTime::dtc_less);
    EXPECT_EQ(a > b, forward == CDateTime::dtc_greater);
    EXPECT_EQ(a != b, forward != CDateTime::dtc_equal);
    if (a == b) {
      EXPECT_EQ(std::hash<CDateTimeSpan>()(a), std::hash<CDateTimeSpan>()(b));
    }
  }
}

TEST(DateTimeSpan, SpeaksChrono) {
  for (const VectorRow& row : ReadVectors(kFile, "chrono")) {
    SCOPED_TRACE(row.Place());
    const std::chrono::nanoseconds duration(row.Number("nanoseconds"));
    const CDateTimeSpan span = CDateTimeSpan::FromChrono(duration);
    EXPECT_EQ(span.ToString(), row.Wide("prints"));
    EXPECT_EQ(span.ToChrono(), duration);
  }
  EXPECT_THROW(Parsed(u"P1M").ToChrono(), COvInvalidStateException);
  EXPECT_THROW(Parsed(u"PT9223372036.854775808S").ToChrono(), COvOverFlowException);
  EXPECT_THROW(Parsed(u"PT18446744073709551615M").ToChrono(), COvOverFlowException);
}

}  // namespace
}  // namespace OvXmlLib16
