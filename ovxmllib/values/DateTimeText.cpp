// Parsing and printing of CDateTime.
#include <cstdlib>
#include <ostream>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/values/DateTime.h"
#include "ovxmllib/values/DateTimeDigits.h"
#include "ovxmllib/values/DateTimeFields.h"

namespace OvXmlLib16 {

using datetime::FieldsOf;
using datetime::kDay;
using datetime::kMonth;
using datetime::kTime;
using datetime::kYear;

namespace {

constexpr std::size_t kDateLength = 10;  // of CCYY-MM-DD

[[noreturn]] void ThrowBadDate(WStringView text) {
  throw COvInvalidValueException(FormatString(u"Invalid XSD Date [%s] expected CCYY-MM-DD[Z|[+|-]hh:mm]", text));
}

[[noreturn]] void ThrowBadTime(WStringView text) {
  throw COvInvalidValueException(FormatString(u"Invalid XSD Time [%s] expected hh:mm:ss[.ff]", text));
}

[[noreturn]] void ThrowBadZone(WStringView text) {
  throw COvInvalidValueException(FormatString(u"Invalid XSD Time Zone [%s].", text));
}

void RequireText(const WChar* text, const WChar* message) {
  if (text == nullptr) throw COvInvalidValueException(message);
}

// The length of the zone at the end of a date: "Z", or a sign and hh:mm.
std::size_t ZoneLengthOf(WStringView date) {
  const bool endsInZ = date.back() == u'Z';
  bool hasColon = false;
  for (const WChar c : date) {
    if (c == u'T') throw COvInvalidValueException(u"Invalid Date ('T' not allowed)");
    hasColon |= c == u':';
  }
  if (endsInZ && hasColon) throw COvInvalidValueException(u"Invalid Date (Bad Zone value)");
  return endsInZ ? 1 : hasColon ? 6 : 0;
}

// The type of a form that begins with two hyphens.
CDateTime::DTType TypeWithoutYear(std::size_t length) noexcept {
  switch (length) {
    case 4:  // --MM
    case 6:  // --MM--, as XML Schema had it before its errata
      return CDateTime::dt_gMonth;
    case 5:  // ---DD
      return CDateTime::dt_gDay;
    case 7:  // --MM-DD
      return CDateTime::dt_gMonthDay;
    default:
      return CDateTime::dt_yearZero;
  }
}

CDateTime::DTType TypeWithYear(std::size_t length) noexcept {
  switch (length) {
    case 4:  // CCYY
      return CDateTime::dt_gYear;
    case 7:  // CCYY-MM
      return CDateTime::dt_gYearMonth;
    case 10:  // CCYY-MM-DD
      return CDateTime::dt_date;
    default:
      return CDateTime::dt_yearZero;
  }
}

}  // namespace

void CDateTime::ParseXSDDateTime(const WChar* text) {
  RequireText(text, u"Invalid DateTime (Null String)");
  ParseXSDDateTime(WStringView(text));
}

// date "T" time
void CDateTime::ParseXSDDateTime(WStringView text) {
  std::size_t separator = kDateLength;
  if (!SetUsualDate(text)) {
    separator = text.find(u'T');
    if (separator == WStringView::npos) {
      throw COvInvalidValueException(FormatString(u"Invalid XSD DateTime [%s].", text));
    }
    Clear();
    SetXSDDate(text.substr(0, separator));
  }
  if (m_type != dt_date) {
    throw COvInvalidValueException(FormatString(u"Invalid XSD DateTime [%s] expected CCYY-MM-DDThh:mm:ss[.ff]", text));
  }
  SetXSDTime(text.substr(separator + 1));
  m_type = dt_dateTime;
  ValidateDate();
}

// CCYY-MM-DDT: ten characters that make a date hold neither 'T' nor a zone, so nothing has to be searched.
bool CDateTime::SetUsualDate(WStringView text) noexcept {
  if (text.size() <= kDateLength || text[kDateLength] != u'T') return false;
  Clear();
  return SetDateFields(text.substr(0, kDateLength));
}

void CDateTime::ParseXSDDate(const WChar* text) {
  Clear();
  RequireText(text, u"Invalid Date (Null String)");
  ParseXSDDate(WStringView(text));
}

void CDateTime::ParseXSDDate(WStringView text) {
  Clear();
  SetXSDDate(text);
  ValidateDate();
}

void CDateTime::ParseXSDTime(const WChar* text) {
  Clear();
  RequireText(text, u"Invalid Time (Null String)");
  ParseXSDTime(WStringView(text));
}

void CDateTime::ParseXSDTime(WStringView text) {
  Clear();
  SetXSDTime(text);
}

// (["-"] CCYY ["-" MM ["-" DD]] | "--" MM ["--"] | "--" MM "-" DD | "---" DD) [zone]
void CDateTime::SetXSDDate(WStringView text) {
  if (text.empty()) throw COvInvalidValueException(u"Invalid Date (Empty String)");
  if (text.size() == kDateLength && SetDateFields(text)) return;
  const std::size_t zone = ZoneLengthOf(text);
  if (zone > text.size() || !SetDateFields(text.substr(0, text.size() - zone))) ThrowBadDate(text);
  if (zone != 0) SetZone(text.substr(text.size() - zone));
}

// The length tells the shape; a missing year or month leaves its hyphen. Nothing is stored when the text has another.
bool CDateTime::SetDateFields(WStringView text) noexcept {
  const bool isWithoutYear = text.starts_with(u"--");
  const bool isNegative = !isWithoutYear && text.starts_with(u'-');
  if (isNegative) text.remove_prefix(1);
  const DTType type = isWithoutYear ? TypeWithoutYear(text.size()) : TypeWithYear(text.size());
  if (type == dt_yearZero) return false;

  const unsigned fields = FieldsOf(type);
  unsigned year = 0, month = 0, day = 0;
  datetime::ShapeReader in(text);
  if ((fields & kYear) != 0) {
    year = in.Pair() * 100;
    year += in.Pair();
  } else {
    in.Expect(u'-');
  }
  if ((fields & (kMonth | kDay)) != 0) in.Expect(u'-');
  if ((fields & kMonth) != 0) month = in.Pair();
  if ((fields & kDay) != 0) {
    in.Expect(u'-');
    day = in.Pair();
  }
  // Deliberate: what stands in the place of the last two hyphens of --MM-- is not looked at.
  if (!in.IsGood()) return false;
  m_type = type;
  m_year = static_cast<std::int16_t>(isNegative ? 0u - year : year);
  m_month = static_cast<std::uint8_t>(month);
  m_day = static_cast<std::uint8_t>(day);
  return true;
}

// hh ":" mm ":" ss ["." digits] [zone]
void CDateTime::SetXSDTime(WStringView text) {
  constexpr std::size_t kLength = 8;  // of hh:mm:ss
  if (text.empty()) throw COvInvalidValueException(u"Invalid XSD Time (Empty String)");
  if (text.size() < kLength) ThrowBadTime(text);
  datetime::ShapeReader in(text);
  const unsigned hour = in.Pair();
  in.Expect(u':');
  const unsigned minute = in.Pair();
  in.Expect(u':');
  const unsigned second = in.Pair();
  if (!in.IsGood() || hour > 23 || minute > 59 || second > 59) ThrowBadTime(text);
  m_hour = static_cast<std::uint8_t>(hour);
  m_minute = static_cast<std::uint8_t>(minute);
  m_second = static_cast<std::uint8_t>(second);
  m_type = dt_time;
  WStringView rest = text.substr(kLength);
  if (rest.starts_with(u'.')) rest = SetFraction(rest.substr(1), text);
  if (!rest.empty()) SetZone(rest);
}

// Returns what stands behind the digits.
WStringView CDateTime::SetFraction(WStringView digits, WStringView text) {
  datetime::Fraction fraction;
  const std::size_t count = datetime::ReadFraction(digits, fraction);
  if (count > datetime::kMaxFractionDigits) {
    throw COvInvalidValueException(FormatString(u"Invalid XSD Time [%s] Fraction part too long", text));
  }
  m_milliSecond = fraction.milli;
  m_microSecond = fraction.micro;
  m_nanoSecond = fraction.nano;
  return digits.substr(count);
}

// "Z" | ("+" | "-") hh ":" mm
void CDateTime::SetZone(WStringView text) {
  if (text.front() == u'Z') return SetUTC();
  // Deliberate: text that begins otherwise is no zone and no error.
  if (text.front() != u'+' && text.front() != u'-') return;
  if (text.size() != 6) ThrowBadZone(text);
  datetime::ShapeReader in(text.substr(1));
  const unsigned hour = in.Pair();
  in.Expect(u':');
  const unsigned minute = in.Pair();
  if (!in.IsGood()) ThrowBadZone(text);
  // Deliberate: hour 24 reads as 0.
  const int offset = hour == 24 ? 0 : static_cast<int>(hour);
  SetTimeZone(static_cast<std::int16_t>(text.front() == u'-' ? -offset : offset), static_cast<std::uint8_t>(minute));
}

void CDateTime::AppendTo(WString& out) const {
  if (!IsSet()) {
    out += u"Error: Date Not Set";
    return;
  }
  WChar buffer[64];  // enough for what setters can store: -32768-255-255T255:255:255.655356553565535-23:59
  WChar* end = PutDate(buffer);
  if (m_type == dt_dateTime) *end++ = u'T';
  if ((FieldsOf(m_type) & kTime) != 0) end = PutTime(end);
  out.append(buffer, PutZone(end));
}

// ["-"] CCYY ["-" MM ["-" DD]], where a year or month that is missing ahead of others leaves its hyphen
WChar* CDateTime::PutDate(WChar* out) const noexcept {
  const unsigned fields = FieldsOf(m_type);
  if ((fields & kYear) != 0) {
    if (m_year < 0) *out++ = u'-';
    out = datetime::PutFour(out, static_cast<unsigned>(std::abs(m_year)));
  } else if ((fields & (kMonth | kDay)) != 0) {
    *out++ = u'-';
  }
  if ((fields & (kMonth | kDay)) != 0) *out++ = u'-';
  if ((fields & kMonth) != 0) out = datetime::PutTwo(out, m_month);
  if ((fields & kDay) == 0) return out;
  *out++ = u'-';
  return datetime::PutTwo(out, m_day);
}

// hh ":" mm ":" ss ["." digits]
WChar* CDateTime::PutTime(WChar* out) const noexcept {
  out = datetime::PutTwo(out, m_hour);
  *out++ = u':';
  out = datetime::PutTwo(out, m_minute);
  *out++ = u':';
  out = datetime::PutTwo(out, m_second);
  return datetime::PutFraction(out, {m_milliSecond, m_microSecond, m_nanoSecond});
}

// ["Z" | ("+" | "-") hh ":" mm]
WChar* CDateTime::PutZone(WChar* out) const noexcept {
  if (!m_hasTimeZone) {
    if (m_isUTC) *out++ = u'Z';
    return out;
  }
  *out++ = m_zoneHour < 0 ? u'-' : u'+';
  out = datetime::PutTwo(out, static_cast<unsigned>(std::abs(m_zoneHour)));
  *out++ = u':';
  return datetime::PutTwo(out, m_zoneMinute);
}

WString CDateTime::ToString(const WChar* format) const {
  const WStringView name = ViewOf(format);
  WString result;
  if (!IsSet() || name == u"s") {
    AppendTo(result);
  } else if (!name.empty() && name != u"G") {
    result = u"Unknown Format: ";
    result += name;
  }
  return result;
}

std::ostream& operator<<(std::ostream& out, const CDateTime& value) { return out << ToUtf8(value.ToString()); }

}  // namespace OvXmlLib16
