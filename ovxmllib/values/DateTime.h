// The eight date and time types of XML Schema in one class: dateTime, date, gYearMonth, gYear, time, gDay, gMonth,
// gMonthDay.
#pragma once

#include <chrono>
#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/platform/SystemTime.h"

namespace OvXmlLib16 {

class CDateTimeSpan;
namespace datetime {
struct Fields;
}

/// A value of one of the eight types, to the nanosecond, with or without a time zone. The type is part of the value:
/// access to a field that it lacks throws, and only Clear, parsing and assignment of another CDateTime change it once
/// it is set.
///
/// Years are numbers of the proleptic Gregorian calendar; the number itself decides on leap years, also below 0. Values
/// are copied freely and never allocate. One value belongs to one thread at a time.
class OVXMLLIB_API CDateTime {
 public:
  /// Which type a value has.
  enum DTType : std::int32_t {
    dt_yearZero = 0,    ///< none: the value is not set
    dt_dateTime = 1,    ///< year, month, day, hour, minute, second, fraction
    dt_date = 2,        ///< year, month, day
    dt_gYearMonth = 3,  ///< year, month
    dt_gYear = 4,       ///< year
    dt_time = 5,        ///< hour, minute, second, fraction
    dt_gDay = 6,        ///< day
    dt_gMonth = 7,      ///< month
    dt_gMonthDay = 8,   ///< month, day
  };

  /// What a comparison says. The order is partial: without a time zone, a value may stand for any of 28 hours.
  enum DTCompareResult : std::int32_t { dtc_equal = 0, dtc_less = 1, dtc_greater = 2, dtc_indeterminate = 3 };

  /// Not set.
  CDateTime() noexcept = default;
  /// All fields 0, for use with the setters. Throws COvInvalidValueException for a number that is no type.
  CDateTime(DTType type);
  CDateTime(const CDateTime&) noexcept = default;
  /// Parses a dateTime; throws what ParseXSDDateTime does.
  CDateTime(const WChar* text) { ParseXSDDateTime(text); }
  explicit CDateTime(WStringView text) { ParseXSDDateTime(text); }
  virtual ~CDateTime() = default;

  /// \name Constructors that swallow COvInvalidValueException
  /// Arguments that make no valid value leave it not set; ask GetType, or use the function of the same arguments, which
  /// throws.
  /// \{
  /// Seconds since 1970-01-01T00:00:00 UTC, given as a dateTime of UTC without zone.
  template <std::integral Integer>
  CDateTime(Integer unixTime) {
    SetUnixTimeOrClear(static_cast<long long>(unixTime));
  }
  CDateTime(const platform::SystemTime& time);
  CDateTime(const platform::FileTime& time);
  /// A date.
  CDateTime(std::int16_t year, std::uint8_t month, std::uint8_t day);
  /// A dateTime.
  CDateTime(std::int16_t year, std::uint8_t month, std::uint8_t day, std::uint8_t hour, std::uint8_t minute,
            std::uint8_t second);
  CDateTime(std::int16_t year, std::uint8_t month, std::uint8_t day, std::uint8_t hour, std::uint8_t minute,
            std::uint8_t second, std::uint16_t milli, std::uint16_t micro, std::uint16_t nano);
  /// \}

  /// Copies type and fields, whatever type this value had.
  CDateTime& operator=(const CDateTime&) noexcept = default;
  /// As the constructors of the same argument, by SetDateTime and with its exceptions. What does not fit a field counts
  /// as the field's largest value, which is refused.
  template <std::integral Integer>
  CDateTime& operator=(Integer unixTime) {
    SetUnixTime(static_cast<long long>(unixTime));
    return *this;
  }
  CDateTime& operator=(const platform::SystemTime& time);
  /// Throws COvInvalidValueException also for a count that is no moment.
  CDateTime& operator=(const platform::FileTime& time);

  /// The machine's local time as a dateTime to the millisecond, without zone.
  static CDateTime GetTickCount();

  /// Makes it not set; type, fields and zone are 0.
  void Clear() noexcept { *this = CDateTime(); }

  /// \name Setters of a whole value
  /// Clear the value, zone included, store type and fields and call Validate, throwing what that throws. A value that
  /// has another type already throws COvInvalidStateException and stays.
  /// \{
  void SetDateTime(std::int16_t year, std::uint8_t month, std::uint8_t day, std::uint8_t hour, std::uint8_t minute,
                   std::uint8_t second);
  void SetDateTime(std::int16_t year, std::uint8_t month, std::uint8_t day, std::uint8_t hour, std::uint8_t minute,
                   std::uint8_t second, std::uint16_t milli, std::uint16_t micro, std::uint16_t nano);
  void SetDate(std::int16_t year, std::uint8_t month, std::uint8_t day);
  void SetTime(std::uint8_t hour, std::uint8_t minute, std::uint8_t second);
  void SetTime(std::uint8_t hour, std::uint8_t minute, std::uint8_t second, std::uint16_t milli, std::uint16_t micro,
               std::uint16_t nano);
  /// A time within the second after midnight.
  void SetFracTime(std::uint16_t milli, std::uint16_t micro, std::uint16_t nano);
  void SetGYear(std::int16_t year);
  void SetGYearMonth(std::int16_t year, std::uint8_t month);
  void SetGMonth(std::uint8_t month);
  void SetGMonthDay(std::uint8_t month, std::uint8_t day);
  void SetGDay(std::uint8_t day);
  /// \}

  /// Takes over all fields of `source`, whatever type this value had, as a value of type `target`; those that the
  /// target lacks stay stored. Throws COvInvalidValueException when CheckConversion says no.
  void SetDateTime(const CDateTime& source, DTType target);
  /// Whether a value of type `from` has the fields of type `to`. Throws COvInvalidValueException for a `from` that is
  /// no type.
  static bool CheckConversion(DTType from, DTType to);

  DTType GetType() const noexcept { return m_type; }
  /// The type's name in XML Schema, "yearZero" for a value that is not set.
  WString GetTypeAsString() const;

  /// \name Fields
  /// All throw COvInvalidStateException when the type lacks the field. Setters store what they are given; call Validate
  /// behind the last.
  /// \{
  std::int16_t GetYear() const;          ///< -9999 to 9999, not 0
  std::uint8_t GetMonth() const;         ///< 1 to 12
  std::uint8_t GetDay() const;           ///< 1 to 31
  std::uint8_t GetHour() const;          ///< 0 to 23
  std::uint8_t GetMinute() const;        ///< 0 to 59
  std::uint8_t GetSecond() const;        ///< 0 to 59
  std::uint16_t GetMilliSecond() const;  ///< 0 to 999
  std::uint16_t GetMicroSecond() const;  ///< 0 to 999, beside the milliseconds
  std::uint16_t GetNanoSecond() const;   ///< 0 to 999, beside the microseconds
  /// Second and fraction in one.
  double GetRealSecond() const;
  void SetYear(std::int16_t year);
  void SetMonth(std::uint8_t month);
  void SetDay(std::uint8_t day);
  void SetHour(std::uint8_t hour);
  void SetMinute(std::uint8_t minute);
  void SetSecond(std::uint8_t second);
  void SetMilliSecond(std::uint16_t milli);
  void SetMicroSecond(std::uint16_t micro);
  void SetNanoSecond(std::uint16_t nano);
  /// \}

  /// True when the value has a time zone at all: "Z" or an offset.
  bool IsUTC() const noexcept { return m_isUTC; }
  /// True when the zone is an offset.
  bool HasTimeZone() const noexcept { return m_hasTimeZone; }
  /// The offset's hours, -23 to 23, and its minutes, 0 to 59, which count in the direction of the hours; with hour 0
  /// eastwards, so "-00:30" cannot be told. Both throw COvInvalidStateException when there is no offset.
  std::int16_t GetZoneHour() const;
  std::uint8_t GetZoneMinute() const;
  /// Gives the value an offset; its other fields stay. Throws COvInvalidValueException beyond 23:59.
  void SetTimeZone(std::int16_t hour, std::uint8_t minute);
  /// Gives the value the zone "Z"; its other fields stay.
  void SetUTC() noexcept;

  /// Throws COvInvalidValueException, naming the field, unless the fields of the type are in their ranges, the day is
  /// one of its month, and all other fields are 0.
  void Validate() const;

  /// \name Parsing
  /// XML Schema Part 2, sections 3.2.7 to 3.2.14. `[-]CCYY-MM-DDThh:mm:ss[.f]`, with one to nine digits f; a date
  /// parser takes each of `[-]CCYY-MM-DD`, `[-]CCYY-MM`, `[-]CCYY`, `--MM-DD`, `---DD`, `--MM` and `--MM--` and sets
  /// the type accordingly; `hh:mm:ss[.f]`. Behind all of them may stand "Z" or `+hh:mm` or `-hh:mm`; text at that place
  /// that begins otherwise is passed over. White space is not. Throw COvInvalidValueException and leave the value
  /// partly filled then. A null pointer throws, too. Nothing is allocated when they succeed.
  /// \{
  void ParseXSDDateTime(const WChar* text);
  void ParseXSDDateTime(WStringView text);
  /// Any type but dateTime and time.
  void ParseXSDDate(const WChar* text);
  void ParseXSDDate(WStringView text);
  void ParseXSDTime(const WChar* text);
  void ParseXSDTime(WStringView text);
  /// \}

  /// Appends the form that the parser of the type reads: the fraction without zeros at its end, the zone as it was
  /// given. Appends "Error: Date Not Set" for a value that is not set, and for one whose fields are all 0 unless it is
  /// a time. Allocates only what `out` lacks in room; 64 units are always enough.
  void AppendTo(WString& out) const;
  /// The same as a text of its own.
  WString ToString() const { return ToString(u"s"); }
  /// "s" gives the form of ToString(), null, "" and "G" give the empty text, others "Unknown Format: " and the format;
  /// a value that is not set gives its error text with all of them.
  WString ToString(const WChar* format) const;

  /// The value in UTC with the offset "+00:00" if it has an offset; a copy otherwise, also of one with "Z".
  ///
  /// A type without month counts as the month before January, so a gYear with an offset goes back a year.
  CDateTime GetNormalized() const;

  /// The order of XML Schema Part 2, section 3.2.7.3: values with a zone compare in UTC, values without among
  /// themselves; one of each only where all offsets up to 14:00 agree. Types with other fields are indeterminate where
  /// a field that only one of them has is not 0.
  DTCompareResult CompareTo(const CDateTime& other) const noexcept;
  /// CompareTo as an operator: where it is indeterminate, != is true and all others are false.
  std::partial_ordering operator<=>(const CDateTime& other) const noexcept;
  bool operator==(const CDateTime& other) const noexcept { return CompareTo(other) == dtc_equal; }

  /// Adds a duration by XML Schema Part 2, appendix E: first its years and months, after which a day beyond the end of
  /// the month becomes the month's last, then the rest with carries. 2000-01-31 plus P1M is 2000-02-29. A zone stays.
  /// The result is not validated and may have the year 0. Throws COvOverFlowException, leaving the value as it was,
  /// when the year leaves 16 bits.
  void AddDateTimeSpan(const CDateTimeSpan& span);
  CDateTime operator+(const CDateTimeSpan& span) const;
  CDateTime& operator+=(const CDateTimeSpan& span);
  /// Moves the value back by the span's magnitude, whatever its sign.
  CDateTime operator-(const CDateTimeSpan& span) const;
  CDateTime& operator-=(const CDateTimeSpan& span);
  /// The exact time from `other` to this value in days, hours, minutes, seconds and fraction, negative when this value
  /// is the earlier; `other` plus it compares equal to this value. Both must be of one type, dateTime, date or time,
  /// and both or none must have a zone: else throws COvInvalidValueException. Include DateTimeSpan.h.
  CDateTimeSpan operator-(const CDateTime& other) const;

  /// Seconds from 1970-01-01T00:00:00 UTC, below 0 before; without zone the fields count as UTC, a date as its midnight
  /// after GetNormalized. The fraction is cut. Throws COvInvalidValueException for other types than dateTime and date.
  long long GetTime() const;
  /// The day of week of GetTime, 1 for Sunday to 7 for Saturday. Throws COvInvalidStateException for other types.
  std::uint8_t GetDayOfWeek() const;
  /// 1 for 1 January. Throws COvInvalidStateException for other types than dateTime and date, COvInvalidValueException
  /// for a month that is none.
  std::uint16_t GetDayOfYear() const;
  /// The fields as stored, and GetDayOfWeek; a negative year modulo 65,536. Throws COvInvalidValueException for other
  /// types than dateTime.
  platform::SystemTime GetAsSystemTime() const;

  /// A dateTime with "Z".
  static CDateTime FromChrono(std::chrono::sys_time<std::chrono::nanoseconds> time);
  /// A date without zone. Throws COvInvalidValueException as SetDate does.
  static CDateTime FromChrono(std::chrono::year_month_day date);
  /// GetTime with the fraction. Throws also COvOverFlowException outside 1677-09-21 to 2262-04-11.
  std::chrono::sys_time<std::chrono::nanoseconds> ToSysTime() const;
  /// The date as stored, without regard to the zone. Throws COvInvalidStateException as GetYear, GetMonth and GetDay.
  std::chrono::year_month_day ToYearMonthDay() const;

  /// Equal for values that compare equal.
  std::size_t GetHash() const noexcept;

 private:
  // Clears, fills and validates the value; what is above a field counts as its largest value.
  void Set(DTType type, const datetime::Fields& fields);
  template <class Setter>
  void SetOrClear(const Setter& setter);
  void SetUnixTime(long long seconds);
  void SetUnixTimeOrClear(long long seconds);

  bool SetUsualDate(WStringView text) noexcept;
  void SetXSDDate(WStringView text);
  bool SetDateFields(WStringView text) noexcept;
  void SetXSDTime(WStringView text);
  WStringView SetFraction(WStringView digits, WStringView text);
  void SetZone(WStringView text);

  // Print at `out` and return where the text ends.
  WChar* PutDate(WChar* out) const noexcept;
  WChar* PutTime(WChar* out) const noexcept;
  WChar* PutZone(WChar* out) const noexcept;

  // What Validate checks of year, month and day; parsed times are in their ranges.
  void ValidateDate() const;
  void ValidateDay() const;
  void ValidateTime() const;
  bool IsSet() const noexcept;

  datetime::Fields GetFields() const noexcept;
  datetime::Fields GetNormalizedFields() const noexcept;
  void Store(const datetime::Fields& fields);

  DTType m_type = dt_yearZero;
  std::int16_t m_year = 0;
  std::uint8_t m_month = 0;
  std::uint8_t m_day = 0;
  std::uint8_t m_hour = 0;
  std::uint8_t m_minute = 0;
  std::uint8_t m_second = 0;
  std::uint16_t m_milliSecond = 0;
  std::uint16_t m_microSecond = 0;
  std::uint16_t m_nanoSecond = 0;
  bool m_isUTC = false;
  bool m_hasTimeZone = false;
  std::int16_t m_zoneHour = 0;
  std::uint8_t m_zoneMinute = 0;
};

/// Prints ToString in UTF-8.
OVXMLLIB_API std::ostream& operator<<(std::ostream& out, const CDateTime& value);

}  // namespace OvXmlLib16

template <>
struct std::hash<OvXmlLib16::CDateTime> {
  std::size_t operator()(const OvXmlLib16::CDateTime& value) const noexcept { return value.GetHash(); }
};
