// What CDateTime and CDateTimeSpan share inside: the table of the types, and arithmetic on fields whose year has no
// bound.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/DateTime.h"

namespace OvXmlLib16::datetime {

/// What a type has, as bits; hour to nanosecond go together.
enum FieldBit : unsigned { kYear = 1, kMonth = 2, kDay = 4, kTime = 8 };

constexpr unsigned BitOf(CDateTime::DTType type) noexcept { return 1u << type; }

struct TypeRow {
  const WChar* text;
  unsigned fields;       ///< FieldBits; the lexical form follows from them
  unsigned conversions;  ///< the types that it has all fields of, as BitOf, besides itself
};

/// By DTType.
inline constexpr TypeRow kTypes[] = {
    {u"yearZero", 0, 0},
    {u"dateTime", kYear | kMonth | kDay | kTime, ~0u},
    {u"date", kYear | kMonth | kDay,
     BitOf(CDateTime::dt_gDay) | BitOf(CDateTime::dt_gMonth) | BitOf(CDateTime::dt_gYear) |
         BitOf(CDateTime::dt_gMonthDay) | BitOf(CDateTime::dt_gYearMonth)},
    {u"gYearMonth", kYear | kMonth, BitOf(CDateTime::dt_gMonth) | BitOf(CDateTime::dt_gYear)},
    {u"gYear", kYear, 0},
    {u"time", kTime, 0},
    {u"gDay", kDay, 0},
    {u"gMonth", kMonth, 0},
    {u"gMonthDay", kMonth | kDay, BitOf(CDateTime::dt_gDay) | BitOf(CDateTime::dt_gMonth)},
};

constexpr bool IsType(CDateTime::DTType type) noexcept {
  return type >= CDateTime::dt_yearZero && type <= CDateTime::dt_gMonthDay;
}

constexpr unsigned FieldsOf(CDateTime::DTType type) noexcept { return kTypes[type].fields; }

/// The fields of a value, wide enough for any sum of a value and a duration.
struct Fields {
  std::int64_t year = 0;
  int month = 0, day = 0, hour = 0, minute = 0, second = 0, milli = 0, micro = 0, nano = 0;

  /// Second and fraction in one.
  double RealSecond() const noexcept;
  /// Days from 1970-01-01; fields that are out of their range count on.
  std::int64_t Days() const noexcept;
  /// Seconds from midnight.
  std::int64_t SecondsOfDay() const noexcept { return (hour * 60 + minute) * 60 + second; }
  /// The fraction of the second.
  std::int64_t Nanoseconds() const noexcept { return milli * std::int64_t{1'000'000} + micro * 1'000 + nano; }
};

/// CDateTime::AddDateTimeSpan for a value that has the fields `has`.
void Add(Fields& fields, unsigned has, const CDateTimeSpan& span) noexcept;

/// Takes an offset off. No day is clamped, as no month is added.
void ShiftToUtc(Fields& fields, int zoneHour, int zoneMinute) noexcept;

/// The order of two values that have the fields `aHas` and `bHas`, without regard to zones.
CDateTime::DTCompareResult Compare(const Fields& a, unsigned aHas, const Fields& b, unsigned bHas) noexcept;

/// The same as an ordering.
std::partial_ordering OrderingOf(CDateTime::DTCompareResult result) noexcept;

/// `seconds` and `nanoseconds`, which are below 10^9, spread over days, hours, minutes, seconds and fraction. The days
/// must fit 32 bits.
CDateTimeSpan MakeSpan(bool isNegative, std::uint64_t seconds, std::uint32_t nanoseconds) noexcept;

/// A hash over the fields that a value has.
std::size_t HashOf(const Fields& fields, unsigned has) noexcept;

}  // namespace OvXmlLib16::datetime
