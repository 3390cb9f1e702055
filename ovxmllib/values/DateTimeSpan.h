// Durations: the XML Schema type duration.
#pragma once

#include <chrono>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/DateTime.h"

namespace OvXmlLib16 {

/// A duration as it was given: each component is kept and nothing carries, so that "PT90M" stays 90 minutes. The
/// components are magnitudes; one sign holds for all of them.
///
/// Values are copied freely and never allocate. One value belongs to one thread at a time.
class OVXMLLIB_API CDateTimeSpan {
 public:
  /// Nothing, positive.
  CDateTimeSpan() noexcept = default;
  CDateTimeSpan(const CDateTimeSpan&) noexcept = default;
  /// Positive durations; what is not given is 0.
  CDateTimeSpan(std::uint32_t hours, std::uint64_t minutes, std::uint64_t seconds) noexcept;
  CDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days, std::uint32_t hours,
                std::uint64_t minutes, std::uint64_t seconds) noexcept;
  /// The micro- and nanoseconds stand beside the milliseconds: 123, 456, 789 are .123456789 seconds.
  CDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days, std::uint32_t hours,
                std::uint64_t minutes, std::uint64_t seconds, std::uint16_t milli, std::uint16_t micro,
                std::uint16_t nano) noexcept;
  virtual ~CDateTimeSpan() = default;
  CDateTimeSpan& operator=(const CDateTimeSpan&) noexcept = default;

  /// The same as a new value of these arguments; the sign becomes positive.
  void SetDateTimeSpan(std::uint32_t hours, std::uint64_t minutes, std::uint64_t seconds) noexcept;
  void SetDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days, std::uint32_t hours,
                       std::uint64_t minutes, std::uint64_t seconds) noexcept;
  void SetDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days, std::uint32_t hours,
                       std::uint64_t minutes, std::uint64_t seconds, std::uint16_t milli, std::uint16_t micro,
                       std::uint16_t nano) noexcept;

  /// \name Components
  /// As stored. Setters take any number and leave the sign alone.
  /// \{
  std::uint16_t GetYears() const noexcept { return m_years; }
  std::uint32_t GetMonths() const noexcept { return m_months; }
  std::uint32_t GetDays() const noexcept { return m_days; }
  std::uint32_t GetHours() const noexcept { return m_hours; }
  std::uint64_t GetMinutes() const noexcept { return m_minutes; }
  std::uint64_t GetSeconds() const noexcept { return m_seconds; }
  std::uint16_t GetMilliSeconds() const noexcept { return m_milliSeconds; }
  std::uint16_t GetMicroSeconds() const noexcept { return m_microSeconds; }
  std::uint16_t GetNanoSeconds() const noexcept { return m_nanoSeconds; }
  void SetYears(std::uint16_t years) noexcept { m_years = years; }
  void SetMonths(std::uint32_t months) noexcept { m_months = months; }
  void SetDays(std::uint32_t days) noexcept { m_days = days; }
  void SetHours(std::uint32_t hours) noexcept { m_hours = hours; }
  void SetMinutes(std::uint64_t minutes) noexcept { m_minutes = minutes; }
  void SetSeconds(std::uint64_t seconds) noexcept { m_seconds = seconds; }
  void SetMilliSeconds(std::uint16_t milli) noexcept { m_milliSeconds = milli; }
  void SetMicroSeconds(std::uint16_t micro) noexcept { m_microSeconds = micro; }
  void SetNanoSeconds(std::uint16_t nano) noexcept { m_nanoSeconds = nano; }
  /// \}

  bool IsNegative() const noexcept { return m_negative; }
  /// Turns the sign.
  void Negate() noexcept { m_negative = !m_negative; }
  /// A copy that is negative, whatever the sign was.
  CDateTimeSpan GetAsNegative() const noexcept;

  /// Parses `[-]P[nY][nM][nD][T[nH][nM][n[.f]S]]` with at least one component and one to nine digits f (XML Schema
  /// Part 2, section 3.2.6.1). A designator without number counts as 0, and 'Y' may stand behind other components.
  /// Numbers go up to what the component holds: minutes and seconds to 2^64 - 1, months, days and hours to 2^32 - 1;
  /// years to 2^31 - 1, of which the low 16 bits are kept. Throws COvInvalidValueException and leaves the value partly
  /// filled then; a null pointer throws, too. Nothing is allocated when it succeeds.
  void ParseXSDDuration(const WChar* text);
  void ParseXSDDuration(WStringView text);

  /// Appends the form that ParseXSDDuration reads, components of 0 left out; "P" when all are, which is not read.
  /// Allocates only what `out` lacks in room; 128 units are always enough.
  void AppendTo(WString& out) const;
  /// The same as a text of its own.
  WString ToString() const;

  /// The order of XML Schema Part 2, section 3.2.6.2: both durations are added to four moments, and where the sums do
  /// not compare alike, the result is indeterminate. P1M is neither less nor greater than P30D, nor equal. The sums are
  /// exact for every duration, whatever years they reach.
  CDateTime::DTCompareResult CompareTo(const CDateTimeSpan& other) const noexcept;
  /// CompareTo as an operator: where it is indeterminate, != is true and all others are false.
  std::partial_ordering operator<=>(const CDateTimeSpan& other) const noexcept;
  bool operator==(const CDateTimeSpan& other) const noexcept { return CompareTo(other) == CDateTime::dtc_equal; }

  /// In days, hours, minutes, seconds and fraction.
  static CDateTimeSpan FromChrono(std::chrono::nanoseconds duration) noexcept;
  /// Throws COvInvalidStateException when years or months are not 0, since they have no fixed length, and
  /// COvOverFlowException beyond 64 bits (292 years).
  std::chrono::nanoseconds ToChrono() const;

  /// Equal for values that compare equal.
  std::size_t GetHash() const noexcept;

 private:
  // Read the next component and say at which stage the text is then.
  unsigned TakeComponent(WStringView& rest, unsigned stage, WStringView text);
  unsigned TakeFraction(WStringView& rest, WStringView text);

  std::uint16_t m_years = 0;
  std::uint32_t m_months = 0;
  std::uint32_t m_days = 0;
  std::uint32_t m_hours = 0;
  std::uint64_t m_minutes = 0;
  std::uint64_t m_seconds = 0;
  std::uint16_t m_milliSeconds = 0;
  std::uint16_t m_microSeconds = 0;
  std::uint16_t m_nanoSeconds = 0;
  bool m_negative = false;
};

/// Prints ToString in UTF-8.
OVXMLLIB_API std::ostream& operator<<(std::ostream& out, const CDateTimeSpan& span);

}  // namespace OvXmlLib16

template <>
struct std::hash<OvXmlLib16::CDateTimeSpan> {
  std::size_t operator()(const OvXmlLib16::CDateTimeSpan& span) const noexcept { return span.GetHash(); }
};
