// The proleptic Gregorian calendar over any year number, year 0 included and leap.
#pragma once

#include <array>
#include <cstdint>

namespace OvXmlLib16::calendar {

/// a / b rounded towards minus infinity, and what is left then, 0 to b - 1. `b` is above 0.
constexpr std::int64_t FloorDivide(std::int64_t a, std::int64_t b) noexcept { return a / b - (a % b < 0); }
constexpr std::int64_t FloorModulo(std::int64_t a, std::int64_t b) noexcept { return a % b + (a % b < 0 ? b : 0); }

constexpr bool IsLeapYear(std::int64_t year) noexcept { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

/// By month, 1 to 12; February as in a leap year.
inline constexpr std::array<int, 13> kDaysInMonth = {0, 31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
/// By month, 1 to 12, in a year that is not leap.
inline constexpr std::array<int, 13> kDaysBeforeMonth = {0, 0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};

/// `month` is 1 to 12.
constexpr int DaysInMonth(std::int64_t year, int month) noexcept {
  return month == 2 && !IsLeapYear(year) ? 28 : kDaysInMonth[static_cast<unsigned>(month)];
}

struct Date {
  std::int64_t year;
  int month, day;
};

// A calendar whose years begin in March has the leap day at their end, and 400 years are always 146,097 days.
inline constexpr std::int64_t kDaysIn400Years = 146'097;
inline constexpr std::int64_t kMarchOfYear0 = 719'468;  // days from 0000-03-01 to 1970-01-01

/// Days from 1970-01-01; `month` is 1 to 12, and a `day` outside its month counts on from it. Algorithm: H. Hinnant,
/// "chrono-Compatible Low-Level Date Algorithms", days_from_civil.
constexpr std::int64_t DaysFromCivil(std::int64_t year, int month, int day) noexcept {
  const std::int64_t y = year - (month <= 2);
  const std::int64_t era = FloorDivide(y, 400), yearOfEra = y - era * 400;
  const std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * kDaysIn400Years + dayOfEra - kMarchOfYear0 + day - 1;
}

/// The inverse: civil_from_days of the same source.
constexpr Date CivilFromDays(std::int64_t days) noexcept {
  const std::int64_t z = days + kMarchOfYear0;
  const std::int64_t era = FloorDivide(z, kDaysIn400Years), dayOfEra = z - era * kDaysIn400Years;
  const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1'460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t marchMonth = (5 * dayOfYear + 2) / 153;
  const int month = static_cast<int>(marchMonth < 10 ? marchMonth + 3 : marchMonth - 9);
  const int day = static_cast<int>(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
  return {era * 400 + yearOfEra + (month <= 2), month, day};
}

static_assert(DaysFromCivil(1970, 1, 1) == 0 && DaysFromCivil(0, 3, 1) == -kMarchOfYear0);
static_assert(DaysFromCivil(2000, 2, 29) + 1 == DaysFromCivil(2000, 3, 1));

}  // namespace OvXmlLib16::calendar
