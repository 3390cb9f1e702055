#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "ovxmllib/values/BigInteger.h"
#include "ovxmllib/values/Decimal.h"
#include "ovxmllib/values/OvVariant.h"
#include "tests/support/AllocationCounters.h"

namespace OvXmlLib16 {
namespace {

// Keeps the compiler from leaving out what is measured.
bool g_seen = false;

// Everything that a document's value goes through, printed into the buffer.
template <class Value>
void LiveThrough(WStringView text, WString& buffer) {
  Value value(text), copy(value), moved(std::move(copy));
  copy = value;
  value = std::move(moved);
  value += copy;
  value -= copy;
  g_seen = value < copy || value == copy;
  buffer.clear();
  value.AppendTo(buffer);
}

// The road of a property's value.
template <ItemType kType>
void ThroughAVariant(WStringView text, WString& buffer) {
  OvVariant value, moved;
  value.FromString(text, kType, CWhitespaceUtils::WhitespaceRule_Collapse);
  moved = std::move(value);
  OvVariant again(std::move(moved));
  buffer.clear();
  again.AppendTo(buffer);
}

struct Row {
  const char* name;
  void (*call)(WStringView text, WString& buffer);
  std::initializer_list<WStringView> texts;
};

const Row kRows[] = {
    {"integer",
     LiveThrough<CBigInteger>,
     {u"0", u"-7", u" 42 ", u"999999999999999999", u"-999999999999999999", u"000000000000000000000000000000000001"}},
    {"decimal",
     LiveThrough<CDecimal>,
     {u"0", u"-0.5", u"12.50", u" 1 234.5 ", u"499999999999999999", u"-9.99999999999999999", u"0.000000000000000001",
      u"123456789.123456789"}},
    {"i1", ThroughAVariant<ItemType_i1>, {u" -128 "}},
    {"i4", ThroughAVariant<ItemType_i4>, {u"-2147483648", u" 7"}},
    {"ui8", ThroughAVariant<ItemType_ui8>, {u"18446744073709551615"}},
    {"r4", ThroughAVariant<ItemType_r4>, {u"1.5e-30", u"INF"}},
    {"r8", ThroughAVariant<ItemType_r8>, {u"-0.1234567890123456789e-300", u"NaN"}},
    {"boolean", ThroughAVariant<ItemType_boolean>, {u"false"}},
    {"duration", ThroughAVariant<ItemType_duration>, {u"-P1Y2M3DT4H5M6.789012345S"}},
    {"datetime", ThroughAVariant<ItemType_datetime>, {u"-2000-01-01T12:34:56.123456789+14:00"}},
    {"date", ThroughAVariant<ItemType_date>, {u"2000-02-29Z"}},
    {"time", ThroughAVariant<ItemType_time>, {u"23:59:59.999-05:00"}},
    {"year", ThroughAVariant<ItemType_year>, {u"2026"}},
    {"monthDay", ThroughAVariant<ItemType_monthDay>, {u"--02-29"}},
    {"decimal in a variant", ThroughAVariant<ItemType_decimal>, {u"-123456789.123456789"}},
    {"integer in a variant", ThroughAVariant<ItemType_integer>, {u"999999999999999999"}},
};

TEST(ValueAllocation, SmallValuesNeedNone) {
  WString buffer;
  buffer.reserve(100);
  for (const Row& row : kRows) {
    for (const WStringView text : row.texts) {
      const std::size_t before = test::g_bytesAsked;
      row.call(text, buffer);
      EXPECT_EQ(test::g_bytesAsked - before, 0u) << row.name << " " << ToUtf8(text);
    }
  }
}

TEST(ValueAllocation, BigValuesSurviveFailure) {
  const WString digits(5000, u'7');
  const CBigInteger integer(digits.c_str());
  const CDecimal decimal((u"-1." + digits).c_str());
  const std::function<void(CBigInteger&, CDecimal&)> calls[] = {
      [&](CBigInteger& i, CDecimal&) { i += integer; },      [&](CBigInteger& i, CDecimal&) { i -= integer; },
      [&](CBigInteger& i, CDecimal&) { i *= integer; },      [&](CBigInteger& i, CDecimal&) { i /= 7; },
      [&](CBigInteger& i, CDecimal&) { i %= integer; },      [&](CBigInteger& i, CDecimal&) { i = integer; },
      [&](CBigInteger& i, CDecimal&) { i.Parse(digits); },   [&](CBigInteger& i, CDecimal&) { i = i.SquareRoot(); },
      [&](CBigInteger&, CDecimal& d) { d += integer; },      [&](CBigInteger&, CDecimal& d) { d *= integer; },
      [&](CBigInteger&, CDecimal& d) { d /= integer; },      [&](CBigInteger&, CDecimal& d) { d = decimal + integer; },
      [&](CBigInteger&, CDecimal& d) { d = CDecimal(7.5); }, [&](CBigInteger&, CDecimal& d) { --d; }};
  for (const auto& call : calls) {
    for (std::size_t failing = 1, left = 0; left == 0; ++failing) {
      CBigInteger i = integer * integer;
      CDecimal d = i;
      const CBigInteger wasInteger = i;
      const CDecimal wasDecimal = d;
      const std::ptrdiff_t before = test::g_liveBlocks;
      test::g_callsToFailure = failing;
      try {
        call(i, d);
        left = test::g_callsToFailure;
        test::g_callsToFailure = 0;
      } catch (const std::bad_alloc&) {
        EXPECT_TRUE(i == wasInteger && d == wasDecimal) << "unchanged, call " << &call - calls;
        EXPECT_EQ(test::g_liveBlocks, before) << "call " << &call - calls;
      }
    }
  }
}

}  // namespace
}  // namespace OvXmlLib16
