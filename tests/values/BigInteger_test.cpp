#include "ovxmllib/values/BigInteger.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <type_traits>
#include <unordered_set>

#include "ovxmllib/values/Decimal.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;
using test::ReadVectors;

constexpr char kFile[] = "values/big_integer.vec";

// Made before main, as in any file of a user.
const CBigInteger g_early = CBigInteger::MAX_DOUBLE + CBigInteger::MIN_LONG;

TEST(BigInteger, ReadsAndPrintsAsSpecified) {
  for (const char* const table : {"parse", "parse without digits at the end"}) {
    for (const auto& row : ReadVectors(kFile, table)) {
      SCOPED_TRACE(row.Place());
      const CBigInteger value(row.Wide("text"));
      EXPECT_EQ(value.ToString(), row.Wide("prints"));
      EXPECT_EQ(value < 0, row["isBelowZero"] == "1");
    }
  }
  EXPECT_EQ(CBigInteger(static_cast<const WChar*>(nullptr)), 0);
  EXPECT_EQ(CBigInteger::FromUtf8("12").ToUtf8(), "12");
}

TEST(BigInteger, RefusesOtherText) {
  CBigInteger value = 5;
  for (const auto& row : ReadVectors(kFile, "refused")) {
    SCOPED_TRACE(row.Place());
    EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { value.Parse(row.Wide("text")); }), row.Wide("message"));
    EXPECT_EQ(value, 5);
  }
}

TEST(BigInteger, Divides) {
  for (const auto& row : ReadVectors(kFile, "divide")) {
    SCOPED_TRACE(row.Place());
    const CBigInteger a(row.Wide("a")), b(row.Wide("b"));
    EXPECT_EQ((a / b).ToString(), row.Wide("quotient"));
    EXPECT_EQ((a % b).ToString(), row.Wide("remainder"));
  }
  CBigInteger seven = 7;
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { seven / 0; }), u"ERROR: Overflow in operator/.");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { seven % 0; }), u"ERROR: Overflow in operator%.");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { seven /= 0; }), u"ERROR: Overflow in operator /=.");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { seven %= 0; }), u"ERROR: Overflow in operator%=.");
  EXPECT_EQ(seven, 7);
}

// (10^n - 1)(10^m - 1) has a known result, all carries in it, and lengths about every threshold.
TEST(BigInteger, MultipliesAndDividesAtEveryLength) {
  for (const unsigned n : {18u, 36u, 37u, 700u, 719u, 720u, 721u, 738u, 756u, 1440u, 3001u, 6000u}) {
    for (const unsigned m : {18u, 19u, 54u, 719u, 720u, 739u, 1458u, 2900u, 30000u}) {
      const CBigInteger a = CBigInteger::Pow10(n) - 1, b = CBigInteger::Pow10(m) - 1;
      const CBigInteger product = CBigInteger::Pow10(n + m) - CBigInteger::Pow10(n) - CBigInteger::Pow10(m) + 1;
      EXPECT_TRUE(a * b == product && b * a == product) << n << " times " << m;
      EXPECT_TRUE(product / a == b && product % b == 0 && (product - 1) / b == a - 1) << n << " times " << m;
      EXPECT_TRUE((product + a - 1) % a == a - 1) << n << " times " << m;
    }
  }
}

TEST(BigInteger, TakesEveryMachineInteger) {
  const auto expect = [](auto value, const char* text) {
    EXPECT_EQ(CBigInteger(value).ToUtf8(), text);
    EXPECT_EQ(CDecimal(value).ToUtf8(), text);
  };
  expect(std::numeric_limits<signed char>::min(), "-128");
  expect(std::numeric_limits<unsigned char>::max(), "255");
  expect(std::numeric_limits<short>::min(), "-32768");
  expect(std::numeric_limits<unsigned short>::max(), "65535");
  expect(std::numeric_limits<int>::min(), "-2147483648");
  expect(std::numeric_limits<unsigned>::max(), "4294967295");
  expect(std::numeric_limits<long>::min(), "-9223372036854775808");
  expect(std::numeric_limits<unsigned long>::max(), "18446744073709551615");
  expect(std::numeric_limits<long long>::min(), "-9223372036854775808");
  expect(std::numeric_limits<unsigned long long>::max(), "18446744073709551615");
  static_assert(!std::is_constructible_v<CBigInteger, bool> && !std::is_constructible_v<CBigInteger, char> &&
                !std::is_constructible_v<CBigInteger, WChar> && !std::is_constructible_v<CDecimal, wchar_t>);
  static_assert(!std::is_convertible_v<CBigInteger, int> && !std::is_convertible_v<CBigInteger, long long>);
}

TEST(BigInteger, ConvertsBack) {
  const auto toInt = [](const CBigInteger& value) { return static_cast<int>(value); };
  const auto toLongLong = [](const CBigInteger& value) { return static_cast<long long>(value); };
  EXPECT_EQ(toInt(CBigInteger::MIN_LONG), std::numeric_limits<int>::min());
  EXPECT_EQ(toInt(CBigInteger::MAX_LONG), std::numeric_limits<int>::max());
  EXPECT_EQ(toLongLong(CBigInteger::MIN_LONGLONG), std::numeric_limits<long long>::min());
  EXPECT_EQ(toLongLong(CBigInteger::MAX_LONGLONG), std::numeric_limits<long long>::max());
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { toInt(CBigInteger::MAX_LONG + 1); }),
            u"ERROR: Value out of bound of int.");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { toLongLong(CBigInteger::MIN_LONGLONG - 1); }),
            u"ERROR: Value out of bound of LONGLONG.");
}

TEST(BigInteger, ReadsDoublesAsSpecified) {
  for (const auto& row : ReadVectors(kFile, "double")) {
    EXPECT_EQ(CBigInteger(std::stod(row["value"])).ToString(), row.Wide("prints")) << row.Place();
  }
  for (const double value : {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { CBigInteger{value}; }),
              u"A Big Integer can not be made of a double that is not finite.");
  }
}

TEST(BigInteger, ConstantsExistBeforeAnythingRuns) {
  EXPECT_EQ(g_early.ToUtf8(), "16" + std::string(297, '9') + "7852516352");
  EXPECT_EQ(CBigInteger::MAX_DOUBLE, CBigInteger(CDecimal(u"1.7E+308")));
  EXPECT_EQ(CBigInteger::MIN_DOUBLE, CBigInteger(CDecimal(u"-1.7E+308")));
  CBigInteger copy = CBigInteger::MAX_DOUBLE;
  copy -= copy / 3;
  EXPECT_EQ(CBigInteger::MAX_DOUBLE, CBigInteger::Pow10(307) * 17);
}

TEST(BigInteger, ZeroHasASignAsSpecified) {
  const CBigInteger negativeZero(u"-0"), zero;
  EXPECT_TRUE(negativeZero == zero && negativeZero < zero && zero > negativeZero && !(negativeZero >= zero));
  EXPECT_EQ(negativeZero.ToString(), u"0");
  EXPECT_EQ(std::unordered_set<CBigInteger>({negativeZero, zero, 5, -5}).size(), 3u);
  EXPECT_LT(CBigInteger(-6) % 3, zero);
  EXPECT_EQ(MessageOf([&] { negativeZero.SquareRoot(); }), u"ERROR: Negative Number in function SquareRoot().");
  EXPECT_EQ(MessageOf([&] { zero.SquareRoot(); }), u"ERROR: Overflow in operator/.");
}

TEST(BigInteger, MinusChangesItsOperandAsSpecified) {
  CBigInteger value = 5;
  EXPECT_EQ(value.GetNegative(), -5);
  EXPECT_EQ(value, 5);
  EXPECT_EQ(&-value, &value);
  EXPECT_EQ(value, -5);
  EXPECT_EQ(value.GetAbs(), 5);
  value.Abs();
  EXPECT_EQ(value, 5);
}

TEST(BigInteger, CopiesAndMoves) {
  for (const unsigned digits : {1u, 20u, 40u, 400u}) {
    const CBigInteger expected = CBigInteger::Pow10(digits) - 7;
    for (const unsigned before : {0u, 30u, 100u}) {
      CBigInteger value = CBigInteger::Pow10(before), copy = expected;
      value = copy;
      EXPECT_EQ(value, expected);
      const CBigInteger& same = value;
      value = same;
      EXPECT_EQ(value, expected);
      value = CBigInteger::Pow10(before);
      value = std::move(copy);
      EXPECT_TRUE(value == expected && copy == 0);
      copy = value;
      EXPECT_EQ(CBigInteger(std::move(copy)), expected);
    }
  }
  std::ostringstream out;
  out << CBigInteger(-12);
  EXPECT_EQ(out.str(), "-12");
}

TEST(BigInteger, AMillionDigitsReadAndPrint) {
  WString digits(1'000'000, u'4');
  digits.front() = u'-';
  EXPECT_TRUE(CBigInteger(digits).ToString() == digits);
  EXPECT_EQ(CBigInteger(WString(10'000'000, u'0') + u"12"), 12);
  EXPECT_EQ(CBigInteger(WString(10'000'000, u' ') + u"12"), 12);
}

}  // namespace
}  // namespace OvXmlLib16
