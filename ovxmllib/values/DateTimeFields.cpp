#include "ovxmllib/values/DateTimeFields.h"

#include <algorithm>
#include <cstdlib>
#include <functional>

#include "ovxmllib/values/Calendar.h"
#include "ovxmllib/values/DateTimeSpan.h"

namespace OvXmlLib16::datetime {

namespace {

using calendar::FloorDivide;
using calendar::FloorModulo;

// Adds sign * amount and the carry from the field below to a field of 0 to base - 1. Returns the carry to the field
// above. The amount may have 64 bits, so it is divided before it meets a sign.
template <unsigned kBase>
std::int64_t AddWithCarry(int& field, std::int64_t sign, std::uint64_t amount, std::int64_t carry) noexcept {
  const auto whole = static_cast<std::int64_t>(amount / kBase), rest = static_cast<std::int64_t>(amount % kBase);
  const std::int64_t sum = field + sign * rest + carry;
  field = static_cast<int>(FloorModulo(sum, kBase));
  return FloorDivide(sum, kBase) + sign * whole;
}

void AddDays(Fields& fields, std::int64_t days) noexcept {
  if (days == 0) return;
  // Going back within the month also holds for a day beyond the month's end.
  const std::int64_t day = fields.day + days;
  const bool staysInMonth = day >= 1 && (days < 0 || day <= calendar::DaysInMonth(fields.year, fields.month));
  if (staysInMonth) {
    fields.day = static_cast<int>(day);
    return;
  }
  const calendar::Date date = calendar::CivilFromDays(fields.Days() + days);
  fields.year = date.year;
  fields.month = date.month;
  fields.day = date.day;
}

// Decided: a day beyond the end of the new month becomes its last day; docs/decisions.md.
void ClampDay(Fields& fields, unsigned has) noexcept {
  if ((has & (kMonth | kDay)) != (kMonth | kDay)) return;
  const int last = (has & kYear) != 0 ? calendar::DaysInMonth(fields.year, fields.month)
                                      : calendar::kDaysInMonth[static_cast<unsigned>(fields.month)];
  fields.day = std::min(fields.day, last);
}

// Deliberate: a field that one side lacks reads as -1 there, which makes a date less than the dateTime of its midnight.
template <class Number>
CDateTime::DTCompareResult CompareField(bool aHas, Number a, bool bHas, Number b) noexcept {
  if (aHas != bHas && (aHas ? a : b) != Number{0}) return CDateTime::dtc_indeterminate;
  const Number left = aHas ? a : Number{-1}, right = bHas ? b : Number{-1};
  if (left == right) return CDateTime::dtc_equal;
  return left < right ? CDateTime::dtc_less : CDateTime::dtc_greater;
}

}  // namespace

double Fields::RealSecond() const noexcept { return second + milli / 1000.0 + micro / 1000000.0 + nano / 1000000000.0; }

std::int64_t Fields::Days() const noexcept {
  const std::int64_t months = month - 1;
  return calendar::DaysFromCivil(year + FloorDivide(months, 12), static_cast<int>(FloorModulo(months, 12)) + 1, day);
}

void Add(Fields& fields, unsigned has, const CDateTimeSpan& span) noexcept {
  const std::int64_t sign = span.IsNegative() ? -1 : 1;
  // Deliberate: month 0, of a type that has none, becomes the December of the year before.
  const std::int64_t months = fields.month + sign * span.GetMonths() - 1;
  fields.month = static_cast<int>(FloorModulo(months, 12)) + 1;
  fields.year += FloorDivide(months, 12) + sign * span.GetYears();
  if ((span.GetYears() | span.GetMonths()) != 0) ClampDay(fields, has);

  std::int64_t carry = AddWithCarry<1000>(fields.nano, sign, span.GetNanoSeconds(), 0);
  carry = AddWithCarry<1000>(fields.micro, sign, span.GetMicroSeconds(), carry);
  carry = AddWithCarry<1000>(fields.milli, sign, span.GetMilliSeconds(), carry);
  carry = AddWithCarry<60>(fields.second, sign, span.GetSeconds(), carry);
  carry = AddWithCarry<60>(fields.minute, sign, span.GetMinutes(), carry);
  carry = AddWithCarry<24>(fields.hour, sign, span.GetHours(), carry);
  AddDays(fields, carry + sign * span.GetDays());
}

void ShiftToUtc(Fields& fields, int zoneHour, int zoneMinute) noexcept {
  CDateTimeSpan offset(static_cast<std::uint32_t>(std::abs(zoneHour)), static_cast<std::uint64_t>(zoneMinute), 0);
  if (zoneHour >= 0) offset.Negate();
  Add(fields, 0, offset);
}

CDateTime::DTCompareResult Compare(const Fields& a, unsigned aHas, const Fields& b, unsigned bHas) noexcept {
  const struct {
    unsigned bit;
    std::int64_t a, b;
  } fields[] = {{kYear, a.year, b.year},
                {kMonth, a.month, b.month},
                {kDay, a.day, b.day},
                {kTime, a.hour, b.hour},
                {kTime, a.minute, b.minute}};
  for (const auto& field : fields) {
    const auto result = CompareField((aHas & field.bit) != 0, field.a, (bHas & field.bit) != 0, field.b);
    if (result != CDateTime::dtc_equal) return result;
  }
  // A double loses no nanosecond: below 60 its error is some 10^-14.
  return CompareField((aHas & kTime) != 0, a.RealSecond(), (bHas & kTime) != 0, b.RealSecond());
}

std::partial_ordering OrderingOf(CDateTime::DTCompareResult result) noexcept {
  switch (result) {
    case CDateTime::dtc_equal:
      return std::partial_ordering::equivalent;
    case CDateTime::dtc_less:
      return std::partial_ordering::less;
    case CDateTime::dtc_greater:
      return std::partial_ordering::greater;
    case CDateTime::dtc_indeterminate:
      break;
  }
  return std::partial_ordering::unordered;
}

CDateTimeSpan MakeSpan(bool isNegative, std::uint64_t seconds, std::uint32_t nanoseconds) noexcept {
  CDateTimeSpan span(0, 0, static_cast<std::uint32_t>(seconds / 86400), static_cast<std::uint32_t>(seconds / 3600 % 24),
                     seconds / 60 % 60, seconds % 60, static_cast<std::uint16_t>(nanoseconds / 1'000'000),
                     static_cast<std::uint16_t>(nanoseconds / 1000 % 1000),
                     static_cast<std::uint16_t>(nanoseconds % 1000));
  if (isNegative) span.Negate();
  return span;
}

std::size_t HashOf(const Fields& fields, unsigned has) noexcept {
  std::uint64_t hash = has;
  const auto mix = [&](std::uint64_t value) { hash = (hash ^ value) * 0x9E3779B97F4A7C15u; };
  if ((has & kYear) != 0) mix(static_cast<std::uint64_t>(fields.year));
  if ((has & kMonth) != 0) mix(static_cast<std::uint64_t>(fields.month));
  if ((has & kDay) != 0) mix(static_cast<std::uint64_t>(fields.day));
  if ((has & kTime) != 0) {
    mix(static_cast<std::uint64_t>(fields.hour * 60 + fields.minute));
    mix(std::hash<double>()(fields.RealSecond()));
  }
  return static_cast<std::size_t>(hash ^ hash >> 32);
}

}  // namespace OvXmlLib16::datetime
