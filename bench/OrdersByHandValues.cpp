#include "bench/OrdersByHandValues.h"

#include <array>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <stdexcept>

namespace OvXmlLib16::bench::byhand {
namespace {

constexpr std::string_view kStatuses[] = {"open", "packed", "shipped", "cancelled"};

[[noreturn]] void Refuse(std::string_view text) {
  throw std::runtime_error('[' + std::string(text) + "] is no such value");
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kWhite = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kWhite);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhite) - first + 1);
}

template <std::integral T>
void ParseInteger(std::string_view text, T& value) {
  std::string_view digits = Trimmed(text);
  if (digits.starts_with('+')) digits.remove_prefix(1);
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error != std::errc() || end != digits.data() + digits.size() || text.find("+-") != text.npos) Refuse(text);
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Reads a date or time from left to right.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : m_whole(text), m_rest(Trimmed(text)) {}

  /// Exactly `count` digits, a number between `low` and `high`.
  int Number(std::size_t count, int low, int high) {
    int number = 0;
    if (m_rest.size() < count) Refuse(m_whole);
    for (const char c : m_rest.substr(0, count)) {
      if (!IsDigit(c)) Refuse(m_whole);
      number = number * 10 + (c - '0');
    }
    if (number < low || number > high) Refuse(m_whole);
    m_rest.remove_prefix(count);
    return number;
  }

  /// The next character, which must be `wanted`, and a number behind it.
  int NumberBehind(char wanted, std::size_t count, int low, int high) {
    if (!Take(wanted)) Refuse(m_whole);
    return Number(count, low, high);
  }

  /// The digits behind the point, as nanoseconds; those beyond the ninth do not count.
  std::uint32_t Fraction() {
    if (!Take('.')) return 0;
    if (m_rest.empty() || !IsDigit(m_rest.front())) Refuse(m_whole);
    std::uint32_t nanoseconds = 0;
    for (std::uint32_t unit = 100'000'000; !m_rest.empty() && IsDigit(m_rest.front()); unit /= 10) {
      nanoseconds += static_cast<std::uint32_t>(m_rest.front() - '0') * unit;
      m_rest.remove_prefix(1);
    }
    return nanoseconds;
  }

  /// The time zone that may stand at the end, and the end itself.
  Zone ZoneAtEnd() {
    Zone zone;
    if (Take('Z')) {
      zone = std::int16_t{0};
    } else if (!m_rest.empty()) {
      const int sign = m_rest.front() == '-' ? -1 : 1;
      if (!Take('-') && !Take('+')) Refuse(m_whole);
      const int hours = Number(2, 0, 14);
      zone = static_cast<std::int16_t>(sign * (hours * 60 + NumberBehind(':', 2, 0, 59)));
    }
    if (!m_rest.empty()) Refuse(m_whole);
    return zone;
  }

  bool Take(char wanted) {
    if (!m_rest.starts_with(wanted)) return false;
    m_rest.remove_prefix(1);
    return true;
  }

  void RefuseUnless(bool isSound) const {
    if (!isSound) Refuse(m_whole);
  }

 private:
  std::string_view m_whole, m_rest;
};

int DaysOf(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool isLeapYear = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && isLeapYear ? 29 : kDays[month - 1];
}

template <class T>
void ParseYearAndMonth(Cursor& cursor, T& value) {
  value.year = static_cast<std::int16_t>(cursor.Number(4, 1, 9999));
  value.month = static_cast<std::uint8_t>(cursor.NumberBehind('-', 2, 1, 12));
}

template <class T>
void ParseDay(Cursor& cursor, T& value) {
  ParseYearAndMonth(cursor, value);
  value.day = static_cast<std::uint8_t>(cursor.NumberBehind('-', 2, 1, DaysOf(value.year, value.month)));
}

/// `value` in at least `width` digits.
void AppendPadded(std::string& out, std::uint32_t value, int width) {
  char digits[10];
  char* first = std::end(digits);
  for (int count = 0; count < width || value != 0; ++count, value /= 10) *--first = static_cast<char>('0' + value % 10);
  out.append(first, std::end(digits));
}

void AppendYearAndMonth(std::string& out, std::int16_t year, std::uint8_t month) {
  AppendPadded(out, static_cast<std::uint32_t>(year), 4);
  out += '-';
  AppendPadded(out, month, 2);
}

void AppendDay(std::string& out, std::int16_t year, std::uint8_t month, std::uint8_t day) {
  AppendYearAndMonth(out, year, month);
  out += '-';
  AppendPadded(out, day, 2);
}

void AppendFraction(std::string& out, std::uint32_t nanoseconds) {
  if (nanoseconds == 0) return;
  out += '.';
  AppendPadded(out, nanoseconds, 9);
  out.erase(out.find_last_not_of('0') + 1);
}

void AppendZone(std::string& out, const Zone& zone) {
  if (!zone) return;
  if (*zone == 0) return void(out += 'Z');
  out += *zone < 0 ? '-' : '+';
  const auto minutes = static_cast<std::uint32_t>(std::abs(*zone));
  AppendPadded(out, minutes / 60, 2);
  out += ':';
  AppendPadded(out, minutes % 60, 2);
}

}  // namespace

void Parse(std::string_view text, std::int32_t& value) { ParseInteger(text, value); }

void Parse(std::string_view text, std::uint64_t& value) { ParseInteger(text, value); }

// [+-]? digits ('.' digits)?, with digits on at least one side of the point
void Parse(std::string_view text, Amount& value) {
  std::string_view rest = Trimmed(text);
  const bool isNegative = rest.starts_with('-');
  if (isNegative || rest.starts_with('+')) rest.remove_prefix(1);
  const std::size_t point = rest.find('.');
  const std::size_t places = point == rest.npos ? 0 : rest.size() - point - 1;
  if (rest.size() == (point == rest.npos ? 0U : 1U) || rest.size() > 18) Refuse(text);
  value = {0, static_cast<std::uint8_t>(places)};
  for (std::size_t i = 0; i < rest.size(); ++i) {
    if (i == point) continue;
    if (!IsDigit(rest[i])) Refuse(text);
    value.digits = value.digits * 10 + (rest[i] - '0');
  }
  if (isNegative) value.digits = -value.digits;
}

void Parse(std::string_view text, Date& value) {
  Cursor cursor(text);
  ParseDay(cursor, value);
  value.zone = cursor.ZoneAtEnd();
}

void Parse(std::string_view text, DateTime& value) {
  Cursor cursor(text);
  ParseDay(cursor, value);
  value.hour = static_cast<std::uint8_t>(cursor.NumberBehind('T', 2, 0, 23));
  value.minute = static_cast<std::uint8_t>(cursor.NumberBehind(':', 2, 0, 59));
  value.second = static_cast<std::uint8_t>(cursor.NumberBehind(':', 2, 0, 59));
  value.nanoseconds = cursor.Fraction();
  value.zone = cursor.ZoneAtEnd();
}

void Parse(std::string_view text, YearMonth& value) {
  Cursor cursor(text);
  ParseYearAndMonth(cursor, value);
  value.zone = cursor.ZoneAtEnd();
}

void Parse(std::string_view text, Status& value) {
  for (std::size_t i = 0; i < std::size(kStatuses); ++i) {
    if (text == kStatuses[i]) return void(value = static_cast<Status>(i));
  }
  Refuse(text);
}

void Append(std::string& out, const Amount& value) {
  if (value.digits < 0) out += '-';
  const std::size_t start = out.size();
  Append(out, static_cast<std::uint64_t>(std::abs(value.digits)));
  if (value.places == 0) return;
  if (const std::size_t length = out.size() - start; length <= value.places) {
    out.insert(start, value.places + 1 - length, '0');
  }
  out.insert(out.size() - value.places, 1, '.');
}

void Append(std::string& out, const Date& value) {
  AppendDay(out, value.year, value.month, value.day);
  AppendZone(out, value.zone);
}

void Append(std::string& out, const DateTime& value) {
  AppendDay(out, value.year, value.month, value.day);
  out += 'T';
  AppendPadded(out, value.hour, 2);
  out += ':';
  AppendPadded(out, value.minute, 2);
  out += ':';
  AppendPadded(out, value.second, 2);
  AppendFraction(out, value.nanoseconds);
  AppendZone(out, value.zone);
}

void Append(std::string& out, const YearMonth& value) {
  AppendYearAndMonth(out, value.year, value.month);
  AppendZone(out, value.zone);
}

void Append(std::string& out, Status value) { out += kStatuses[static_cast<std::size_t>(value)]; }

}  // namespace OvXmlLib16::bench::byhand
