#include "ovxmllib/values/DateTime.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <type_traits>
#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/values/Calendar.h"
#include "ovxmllib/values/DateTimeFields.h"
#include "ovxmllib/values/DateTimeSpan.h"

namespace OvXmlLib16 {

using datetime::Fields;
using datetime::FieldsOf;
using datetime::kDay;
using datetime::kMonth;
using datetime::kTime;
using datetime::kYear;

namespace {

// The text of a message whose only argument is the type's name.
using TypeMessage = FormatLiteral<const WChar*>;

[[noreturn]] void ThrowUnknown(CDateTime::DTType type) {
  throw COvInvalidValueException(FormatString(u"Unknown date type %d.", type));
}

const WChar* TextOf(CDateTime::DTType type) {
  if (!datetime::IsType(type)) ThrowUnknown(type);
  return datetime::kTypes[type].text;
}

template <class Exception>
[[noreturn]] void ThrowOfType(TypeMessage message, CDateTime::DTType type) {
  throw Exception(FormatString<const WChar*>(message, TextOf(type)));
}

// What a getter and a setter share: the types that have the field are those with one of these bits.
struct FieldRule {
  unsigned field;
  TypeMessage message;
};

// Deliberate: setters report a failed getter.
constexpr FieldRule kYearRule{kYear, u"Failed to GetYear. Invalid Date Type: %s."};
constexpr FieldRule kMonthRule{kMonth, u"Failed to GetMonth. Invalid Date Type: %s."};
constexpr FieldRule kDayRule{kDay, u"Failed to GetDay. Invalid Date Type: %s."};
constexpr FieldRule kHourRule{kTime, u"Failed to GetHour. Invalid Date Type: %s."};
constexpr FieldRule kMinuteRule{kTime, u"Failed to GetMinute. Invalid Date Type: %s."};
constexpr FieldRule kSecondRule{kTime, u"Failed to GetSecond. Invalid Date Type: %s."};
constexpr FieldRule kRealSecondRule{kTime, u"Failed to GetRealSecond. Invalid Date Type: %s."};
constexpr FieldRule kMilliSecondRule{kTime, u"Failed to GetMilliSecond. Invalid Date Type: %s."};
constexpr FieldRule kMicroSecondRule{kTime, u"Failed to GetMicroSecond. Invalid Date Type: %s."};
constexpr FieldRule kNanoSecondRule{kTime, u"Failed to GetNanoSecond. Invalid Date Type: %s."};

// The field, for reading or writing, of a value of the given type.
template <class Field>
Field& Checked(CDateTime::DTType type, const FieldRule& rule, Field& field) {
  if ((FieldsOf(type) & rule.field) == 0) ThrowOfType<COvInvalidStateException>(rule.message, type);
  return field;
}

bool IsDay(CDateTime::DTType type) noexcept { return type == CDateTime::dt_dateTime || type == CDateTime::dt_date; }

template <class Target, class Number>
Target Saturated(Number value) noexcept {
  constexpr Number kLow = std::numeric_limits<Target>::min(), kHigh = std::numeric_limits<Target>::max();
  return static_cast<Target>(std::clamp(value, kLow, kHigh));
}

[[noreturn]] void ThrowInvalidMonth(int month) {
  throw COvInvalidValueException(FormatString(u"Invalid Month [%d] (1 <= month <= 12)", month));
}

CDateTime::DTCompareResult Reversed(CDateTime::DTCompareResult result) noexcept {
  if (result == CDateTime::dtc_less) return CDateTime::dtc_greater;
  return result == CDateTime::dtc_greater ? CDateTime::dtc_less : result;
}

// Fields in UTC against fields that may be of any zone up to 14:00 (XML Schema Part 2, section 3.2.7.3).
CDateTime::DTCompareResult CompareWithoutZone(const Fields& utc, unsigned utcHas, const Fields& local,
                                              unsigned localHas) noexcept {
  Fields earliest = local, latest = local;
  datetime::ShiftToUtc(earliest, 14, 0);
  if (datetime::Compare(utc, utcHas, earliest, localHas) == CDateTime::dtc_less) return CDateTime::dtc_less;
  datetime::ShiftToUtc(latest, -14, 0);
  if (datetime::Compare(utc, utcHas, latest, localHas) == CDateTime::dtc_greater) return CDateTime::dtc_greater;
  return CDateTime::dtc_indeterminate;
}

// Whole seconds and the nanoseconds above them, from 1970 or, for a type without date, from midnight.
std::pair<std::int64_t, std::int64_t> InstantOf(const Fields& fields, unsigned has) noexcept {
  const std::int64_t date = (has & kDay) != 0 ? fields.Days() * 86400 : 0;
  if ((has & kTime) == 0) return {date, 0};
  const std::int64_t nanoseconds = fields.Nanoseconds();
  return {date + fields.SecondsOfDay() + nanoseconds / 1'000'000'000, nanoseconds % 1'000'000'000};
}

}  // namespace

CDateTime::CDateTime(DTType type) : m_type(type) { TextOf(type); }

template <class Setter>
void CDateTime::SetOrClear(const Setter& setter) {
  try {
    setter();
  } catch (const COvInvalidValueException&) {
    Clear();
  }
}

CDateTime::CDateTime(const platform::SystemTime& time) {
  SetOrClear([&] { *this = time; });
}

CDateTime::CDateTime(const platform::FileTime& time) {
  SetOrClear([&] { *this = time; });
}

CDateTime::CDateTime(std::int16_t year, std::uint8_t month, std::uint8_t day) {
  SetOrClear([&] { SetDate(year, month, day); });
}

CDateTime::CDateTime(std::int16_t year, std::uint8_t month, std::uint8_t day, std::uint8_t hour, std::uint8_t minute,
                     std::uint8_t second)
    : CDateTime(year, month, day, hour, minute, second, 0, 0, 0) {}

CDateTime::CDateTime(std::int16_t year, std::uint8_t month, std::uint8_t day, std::uint8_t hour, std::uint8_t minute,
                     std::uint8_t second, std::uint16_t milli, std::uint16_t micro, std::uint16_t nano) {
  SetOrClear([&] { SetDateTime(year, month, day, hour, minute, second, milli, micro, nano); });
}

void CDateTime::SetUnixTimeOrClear(long long seconds) {
  SetOrClear([&] { SetUnixTime(seconds); });
}

void CDateTime::SetUnixTime(long long seconds) {
  const auto [year, month, day] = calendar::CivilFromDays(calendar::FloorDivide(seconds, 86400));
  const int time = static_cast<int>(calendar::FloorModulo(seconds, 86400));
  Set(dt_dateTime,
      {.year = year, .month = month, .day = day, .hour = time / 3600, .minute = time / 60 % 60, .second = time % 60});
}

CDateTime& CDateTime::operator=(const platform::SystemTime& time) {
  Set(dt_dateTime, {.year = time.wYear,
                    .month = time.wMonth,
                    .day = time.wDay,
                    .hour = time.wHour,
                    .minute = time.wMinute,
                    .second = time.wSecond,
                    .milli = time.wMilliseconds});
  return *this;
}

CDateTime& CDateTime::operator=(const platform::FileTime& time) {
  platform::SystemTime systemTime;
  if (!platform::FileTimeToSystemTime(time, systemTime)) {
    throw COvInvalidValueException(u"Failed to convert FILETIME to SYSTEMTIME");
  }
  return *this = systemTime;
}

CDateTime CDateTime::GetTickCount() { return platform::GetLocalTime(); }

void CDateTime::Set(DTType type, const Fields& fields) {
  if (m_type != dt_yearZero && m_type != type) {
    throw COvInvalidStateException(
        FormatString(u"Failed to copy CDateTime. Invalid Date Type: %s, expected: %s.", TextOf(type), TextOf(m_type)));
  }
  Clear();
  m_type = type;
  m_year = Saturated<std::int16_t>(fields.year);
  m_month = Saturated<std::uint8_t>(fields.month);
  m_day = Saturated<std::uint8_t>(fields.day);
  m_hour = Saturated<std::uint8_t>(fields.hour);
  m_minute = Saturated<std::uint8_t>(fields.minute);
  m_second = Saturated<std::uint8_t>(fields.second);
  m_milliSecond = Saturated<std::uint16_t>(fields.milli);
  m_microSecond = Saturated<std::uint16_t>(fields.micro);
  m_nanoSecond = Saturated<std::uint16_t>(fields.nano);
  Validate();
}

void CDateTime::SetDateTime(std::int16_t year, std::uint8_t month, std::uint8_t day, std::uint8_t hour,
                            std::uint8_t minute, std::uint8_t second) {
  Set(dt_dateTime, {year, month, day, hour, minute, second});
}

void CDateTime::SetDateTime(std::int16_t year, std::uint8_t month, std::uint8_t day, std::uint8_t hour,
                            std::uint8_t minute, std::uint8_t second, std::uint16_t milli, std::uint16_t micro,
                            std::uint16_t nano) {
  Set(dt_dateTime, {year, month, day, hour, minute, second, milli, micro, nano});
}

void CDateTime::SetDate(std::int16_t year, std::uint8_t month, std::uint8_t day) { Set(dt_date, {year, month, day}); }

void CDateTime::SetTime(std::uint8_t hour, std::uint8_t minute, std::uint8_t second) {
  SetTime(hour, minute, second, 0, 0, 0);
}

void CDateTime::SetTime(std::uint8_t hour, std::uint8_t minute, std::uint8_t second, std::uint16_t milli,
                        std::uint16_t micro, std::uint16_t nano) {
  Set(dt_time, {.hour = hour, .minute = minute, .second = second, .milli = milli, .micro = micro, .nano = nano});
}

void CDateTime::SetFracTime(std::uint16_t milli, std::uint16_t micro, std::uint16_t nano) {
  SetTime(0, 0, 0, milli, micro, nano);
}

void CDateTime::SetGYear(std::int16_t year) { Set(dt_gYear, {.year = year}); }

void CDateTime::SetGYearMonth(std::int16_t year, std::uint8_t month) {
  Set(dt_gYearMonth, {.year = year, .month = month});
}

void CDateTime::SetGMonth(std::uint8_t month) { Set(dt_gMonth, {.month = month}); }

void CDateTime::SetGMonthDay(std::uint8_t month, std::uint8_t day) { Set(dt_gMonthDay, {.month = month, .day = day}); }

void CDateTime::SetGDay(std::uint8_t day) { Set(dt_gDay, {.day = day}); }

void CDateTime::SetDateTime(const CDateTime& source, DTType target) {
  if (!CheckConversion(source.m_type, target)) {
    // Deliberate: the misspelling.
    throw COvInvalidValueException(
        FormatString(u"Attempting to set a CDateTime of type %s using an XmlDateTime of type %s. The source CDateTime "
                     u"does not contian enough data to allow the conversion.",
                     TextOf(target), TextOf(source.m_type)));
  }
  *this = source;
  m_type = target;
}

bool CDateTime::CheckConversion(DTType from, DTType to) {
  if (from == to || to == dt_yearZero) return true;
  TextOf(from);
  return datetime::IsType(to) && (datetime::kTypes[from].conversions & datetime::BitOf(to)) != 0;
}

WString CDateTime::GetTypeAsString() const { return TextOf(m_type); }

std::int16_t CDateTime::GetYear() const { return Checked(m_type, kYearRule, m_year); }
std::uint8_t CDateTime::GetMonth() const { return Checked(m_type, kMonthRule, m_month); }
std::uint8_t CDateTime::GetDay() const { return Checked(m_type, kDayRule, m_day); }
std::uint8_t CDateTime::GetHour() const { return Checked(m_type, kHourRule, m_hour); }
std::uint8_t CDateTime::GetMinute() const { return Checked(m_type, kMinuteRule, m_minute); }
std::uint8_t CDateTime::GetSecond() const { return Checked(m_type, kSecondRule, m_second); }
std::uint16_t CDateTime::GetMilliSecond() const { return Checked(m_type, kMilliSecondRule, m_milliSecond); }
std::uint16_t CDateTime::GetMicroSecond() const { return Checked(m_type, kMicroSecondRule, m_microSecond); }
std::uint16_t CDateTime::GetNanoSecond() const { return Checked(m_type, kNanoSecondRule, m_nanoSecond); }
double CDateTime::GetRealSecond() const { return Checked(m_type, kRealSecondRule, *this).GetFields().RealSecond(); }

void CDateTime::SetYear(std::int16_t year) { Checked(m_type, kYearRule, m_year) = year; }
void CDateTime::SetMonth(std::uint8_t month) { Checked(m_type, kMonthRule, m_month) = month; }
void CDateTime::SetDay(std::uint8_t day) { Checked(m_type, kDayRule, m_day) = day; }
void CDateTime::SetHour(std::uint8_t hour) { Checked(m_type, kHourRule, m_hour) = hour; }
void CDateTime::SetMinute(std::uint8_t minute) { Checked(m_type, kMinuteRule, m_minute) = minute; }
void CDateTime::SetSecond(std::uint8_t second) { Checked(m_type, kSecondRule, m_second) = second; }
void CDateTime::SetMilliSecond(std::uint16_t milli) { Checked(m_type, kMilliSecondRule, m_milliSecond) = milli; }
void CDateTime::SetMicroSecond(std::uint16_t micro) { Checked(m_type, kMicroSecondRule, m_microSecond) = micro; }
void CDateTime::SetNanoSecond(std::uint16_t nano) { Checked(m_type, kNanoSecondRule, m_nanoSecond) = nano; }

namespace {

void RequireTimeZone(bool hasTimeZone) {
  if (!hasTimeZone) throw COvInvalidStateException(u"TimeZone is not been used");
}

}  // namespace

std::int16_t CDateTime::GetZoneHour() const {
  RequireTimeZone(m_hasTimeZone);
  return m_zoneHour;
}

std::uint8_t CDateTime::GetZoneMinute() const {
  RequireTimeZone(m_hasTimeZone);
  return m_zoneMinute;
}

void CDateTime::SetTimeZone(std::int16_t hour, std::uint8_t minute) {
  if (hour < -23 || hour > 23 || minute > 59) {
    throw COvInvalidValueException(FormatString(u"Invalid TimeZone [%d:%d]", hour, minute));
  }
  m_isUTC = m_hasTimeZone = true;
  m_zoneHour = hour;
  m_zoneMinute = minute;
}

void CDateTime::SetUTC() noexcept {
  m_isUTC = true;
  m_hasTimeZone = false;
  m_zoneHour = 0;
  m_zoneMinute = 0;
}

namespace {

template <class... Args>
[[noreturn]] void ThrowInvalid(FormatLiteral<std::type_identity_t<Args>...> message, const Args&... args) {
  throw COvInvalidValueException(FormatString<Args...>(message, args...));
}

constexpr int kYearMin = -9999, kYearMax = 9999;

struct TimeRule {
  int max;
  FormatLiteral<int> outOfRange;
  FormatLiteral<int, const WChar*> lacking;
};

// In the order of the fields.
constexpr TimeRule kTimeRules[] = {
    {23, u"Invalid Hour [%d] (0 <= hour <= 23)", u"Invalid Hour [%d] for type %s"},
    {59, u"Invalid Minute [%d] (0 <= minute <= 59)", u"Invalid Minute [%d] for type %s"},
    {59, u"Invalid Second [%d] (0 <= second <= 59)", u"Invalid Second [%d] for type %s"},
    {999, u"Invalid Milli-Second [%d] (0 <= milli <= 999)", u"Invalid Milli-Second [%d] for type %s"},
    {999, u"Invalid Micro-Second [%d] (0 <= micro <= 999)", u"Invalid Micro-Second [%d] for type %s"},
    {999, u"Invalid Nano-Second [%d] (0 <= nano <= 999)", u"Invalid Nano-Second [%d] for type %s"},
};

}  // namespace

void CDateTime::Validate() const {
  ValidateDate();
  ValidateTime();
}

void CDateTime::ValidateDate() const {
  if (m_type == dt_yearZero) throw COvInvalidValueException(u"Invalid Year Zero");
  const auto [text, fields, conversions] = datetime::kTypes[m_type];
  if ((fields & kMonth) != 0) {
    if (m_month < 1 || m_month > 12) ThrowInvalidMonth(m_month);
  } else if (m_month != 0) {
    ThrowInvalid(u"Invalid Month [%d] for type %s", int{m_month}, text);
  }
  if ((fields & kYear) != 0) {
    if (m_year == 0 || m_year < kYearMin || m_year > kYearMax) {
      ThrowInvalid(u"Invalid Year [%d] (%d <= year <= %d && year != 0)", int{m_year}, kYearMin, kYearMax);
    }
  } else if (m_year != 0) {
    ThrowInvalid(u"Invalid Year [%d] for type %s", int{m_year}, text);
  }
  ValidateDay();
}

void CDateTime::ValidateDay() const {
  const int day = m_day;
  if (IsDay(m_type)) {
    // Deliberate: the parenthesis that is not closed.
    if (day < 1 || day > calendar::DaysInMonth(m_year, m_month)) {
      ThrowInvalid(u"Invalid Day [%d] (1 <= day <= days in month", day);
    }
  } else if (m_type == dt_gMonthDay) {
    if (day < 1 || day > calendar::kDaysInMonth[m_month]) {
      ThrowInvalid(u"Invalid Day [%d] (1 <= day <= days in month)", day);
    }
  } else if (m_type == dt_gDay) {
    if (day < 1 || day > 31) ThrowInvalid(u"Invalid Day [%d] (1 <= day <= 31)", day);
  } else if (day != 0) {
    ThrowInvalid(u"Invalid Day [%d] for type %s", day, datetime::kTypes[m_type].text);
  }
}

void CDateTime::ValidateTime() const {
  const int values[] = {m_hour, m_minute, m_second, m_milliSecond, m_microSecond, m_nanoSecond};
  const bool hasTime = (FieldsOf(m_type) & kTime) != 0;
  for (std::size_t i = 0; i < std::size(values); ++i) {
    if (values[i] <= (hasTime ? kTimeRules[i].max : 0)) continue;
    if (hasTime) ThrowInvalid(kTimeRules[i].outOfRange, values[i]);
    ThrowInvalid(kTimeRules[i].lacking, values[i], datetime::kTypes[m_type].text);
  }
}

bool CDateTime::IsSet() const noexcept {
  if (m_type == dt_yearZero) return false;
  if (m_type == dt_time || m_year != 0) return true;
  return (m_month | m_day | m_hour | m_minute | m_second | m_milliSecond | m_microSecond | m_nanoSecond) != 0;
}

Fields CDateTime::GetFields() const noexcept {
  return {m_year, m_month, m_day, m_hour, m_minute, m_second, m_milliSecond, m_microSecond, m_nanoSecond};
}

Fields CDateTime::GetNormalizedFields() const noexcept {
  Fields fields = GetFields();
  if (m_hasTimeZone) datetime::ShiftToUtc(fields, m_zoneHour, m_zoneMinute);
  return fields;
}

void CDateTime::Store(const Fields& fields) {
  // Decided: a year that 16 bits do not hold is not cut; docs/decisions.md.
  if (fields.year != static_cast<std::int16_t>(fields.year)) {
    throw COvOverFlowException(FormatString(u"The year %d does not fit in a CDateTime.", fields.year));
  }
  m_year = static_cast<std::int16_t>(fields.year);
  m_month = static_cast<std::uint8_t>(fields.month);
  m_day = static_cast<std::uint8_t>(fields.day);
  m_hour = static_cast<std::uint8_t>(fields.hour);
  m_minute = static_cast<std::uint8_t>(fields.minute);
  m_second = static_cast<std::uint8_t>(fields.second);
  m_milliSecond = static_cast<std::uint16_t>(fields.milli);
  m_microSecond = static_cast<std::uint16_t>(fields.micro);
  m_nanoSecond = static_cast<std::uint16_t>(fields.nano);
}

CDateTime CDateTime::GetNormalized() const {
  CDateTime result = *this;
  if (!m_hasTimeZone) return result;
  result.Store(GetNormalizedFields());
  result.SetTimeZone(0, 0);
  return result;
}

CDateTime::DTCompareResult CDateTime::CompareTo(const CDateTime& other) const noexcept {
  const Fields a = GetNormalizedFields(), b = other.GetNormalizedFields();
  const unsigned aHas = FieldsOf(m_type), bHas = FieldsOf(other.m_type);
  if (m_isUTC == other.m_isUTC) return datetime::Compare(a, aHas, b, bHas);
  return m_isUTC ? CompareWithoutZone(a, aHas, b, bHas) : Reversed(CompareWithoutZone(b, bHas, a, aHas));
}

std::partial_ordering CDateTime::operator<=>(const CDateTime& other) const noexcept {
  return datetime::OrderingOf(CompareTo(other));
}

std::size_t CDateTime::GetHash() const noexcept {
  return datetime::HashOf(GetNormalizedFields(), FieldsOf(m_type)) ^ std::size_t{m_isUTC};
}

void CDateTime::AddDateTimeSpan(const CDateTimeSpan& span) {
  Fields fields = GetFields();
  datetime::Add(fields, FieldsOf(m_type), span);
  Store(fields);
}

CDateTime CDateTime::operator+(const CDateTimeSpan& span) const { return CDateTime(*this) += span; }

CDateTime& CDateTime::operator+=(const CDateTimeSpan& span) {
  AddDateTimeSpan(span);
  return *this;
}

CDateTime CDateTime::operator-(const CDateTimeSpan& span) const { return CDateTime(*this) -= span; }

// Deliberate: a negative span moves back as its positive form does.
CDateTime& CDateTime::operator-=(const CDateTimeSpan& span) { return *this += span.GetAsNegative(); }

// Decided: what a difference is, and between which values; docs/decisions.md.
CDateTimeSpan CDateTime::operator-(const CDateTime& other) const {
  if (m_type != other.m_type || !(IsDay(m_type) || m_type == dt_time)) {
    ThrowInvalid(u"Failed to subtract a CDateTime of type %s from one of type %s.", TextOf(other.m_type),
                 TextOf(m_type));
  }
  if (m_isUTC != other.m_isUTC) {
    throw COvInvalidValueException(u"Failed to subtract two CDateTime of which only one has a time zone.");
  }
  const auto later = InstantOf(GetNormalizedFields(), FieldsOf(m_type));
  const auto earlier = InstantOf(other.GetNormalizedFields(), FieldsOf(m_type));
  if (later < earlier) {
    CDateTimeSpan span = other - *this;
    span.Negate();
    return span;
  }
  const bool borrows = later.second < earlier.second;
  const std::int64_t nanoseconds = later.second - earlier.second + (borrows ? 1'000'000'000 : 0);
  return datetime::MakeSpan(/*isNegative=*/false, static_cast<std::uint64_t>(later.first - earlier.first - borrows),
                            static_cast<std::uint32_t>(nanoseconds));
}

long long CDateTime::GetTime() const {
  if (!IsDay(m_type)) {
    ThrowOfType<COvInvalidValueException>(
        u"Failed to GetTime, Date Status must be dateTime or date. Invalid Date Type: %s.", m_type);
  }
  return InstantOf(GetNormalizedFields(), FieldsOf(m_type)).first;
}

std::uint8_t CDateTime::GetDayOfWeek() const {
  if (!IsDay(m_type)) {
    ThrowOfType<COvInvalidStateException>(u"Failed to GetDayOfWeek. Invalid Date Type: %s.", m_type);
  }
  constexpr std::int64_t kThursday = 4;  // 1970-01-01, counted from Sunday as 0
  const std::int64_t days = calendar::FloorDivide(GetTime(), 86400);
  return static_cast<std::uint8_t>(calendar::FloorModulo(days + kThursday, 7) + 1);
}

std::uint16_t CDateTime::GetDayOfYear() const {
  if (!IsDay(m_type)) {
    ThrowOfType<COvInvalidStateException>(u"Failed to GetDayOfYear. Invalid Date Type: %s.", m_type);
  }
  if (m_month < 1 || m_month > 12) ThrowInvalidMonth(m_month);
  const int leapDay = m_month > 2 && calendar::IsLeapYear(m_year) ? 1 : 0;
  return static_cast<std::uint16_t>(calendar::kDaysBeforeMonth[m_month] + m_day + leapDay);
}

platform::SystemTime CDateTime::GetAsSystemTime() const {
  if (m_type != dt_dateTime) {
    ThrowOfType<COvInvalidValueException>(
        u"Failed to GetAsSystemTime, Date Status must be dateTime. Invalid Date Type: %s.", m_type);
  }
  return {.wYear = static_cast<std::uint16_t>(m_year),
          .wMonth = m_month,
          .wDayOfWeek = static_cast<std::uint16_t>(GetDayOfWeek() - 1),
          .wDay = m_day,
          .wHour = m_hour,
          .wMinute = m_minute,
          .wSecond = m_second,
          .wMilliseconds = m_milliSecond};
}

CDateTime CDateTime::FromChrono(std::chrono::sys_time<std::chrono::nanoseconds> time) {
  // Not by std::chrono::floor: the second in which the least value stands begins below 64 bits.
  const std::int64_t count = time.time_since_epoch().count();
  const auto fraction = static_cast<unsigned>(calendar::FloorModulo(count, 1'000'000'000));
  CDateTime result(calendar::FloorDivide(count, 1'000'000'000));
  result.m_milliSecond = static_cast<std::uint16_t>(fraction / 1'000'000);
  result.m_microSecond = static_cast<std::uint16_t>(fraction / 1000 % 1000);
  result.m_nanoSecond = static_cast<std::uint16_t>(fraction % 1000);
  result.SetUTC();
  return result;
}

CDateTime CDateTime::FromChrono(std::chrono::year_month_day date) {
  CDateTime result;
  result.Set(dt_date, {.year = static_cast<int>(date.year()),
                       .month = static_cast<int>(static_cast<unsigned>(date.month())),
                       .day = static_cast<int>(static_cast<unsigned>(date.day()))});
  return result;
}

std::chrono::sys_time<std::chrono::nanoseconds> CDateTime::ToSysTime() const {
  GetTime();  // checks the type
  const auto [seconds, fraction] = InstantOf(GetNormalizedFields(), FieldsOf(m_type));
  // Counted from the end of the second before 1970, so that the least value does not overflow on the way.
  const bool isNegative = seconds < 0;
  std::int64_t count = 0;
  if (__builtin_mul_overflow(seconds + isNegative, std::int64_t{1'000'000'000}, &count) ||
      __builtin_add_overflow(count, fraction - (isNegative ? 1'000'000'000 : 0), &count)) {
    throw COvOverFlowException(FormatString(u"The value [%s] does not fit in 64 bits of nanoseconds.", ToString()));
  }
  return std::chrono::sys_time<std::chrono::nanoseconds>(std::chrono::nanoseconds(count));
}

std::chrono::year_month_day CDateTime::ToYearMonthDay() const {
  return {std::chrono::year(GetYear()), std::chrono::month(GetMonth()), std::chrono::day(GetDay())};
}

}  // namespace OvXmlLib16
