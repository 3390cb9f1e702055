#include "ovxmllib/values/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <string>
#include <type_traits>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/values/Digits.h"

namespace OvXmlLib16 {

namespace {

using Message = FormatLiteral<WStringView>;

// How an integer type is read: the type that reads the text for it, and what it says.
template <class T>
struct IntegerForm;

template <>
struct IntegerForm<std::int8_t> {
  using Reader = std::int32_t;
  static constexpr Message kTooLarge = u"The value [%s] is to large to fit in a i1";
};
template <>
struct IntegerForm<std::int16_t> {
  using Reader = std::int32_t;
  static constexpr Message kTooLarge = u"The value [%s] is to large to fit in a i2";
};
template <>
struct IntegerForm<std::int32_t> {
  using Reader = std::int32_t;
  static constexpr Message kTooLarge = u"The value [%s] is to large to fit in a i4";
  static constexpr Message kNoNumber = u"The value [%s] can not be converted to a i4";
};
template <>
struct IntegerForm<std::int64_t> {
  using Reader = std::int64_t;
  static constexpr Message kTooLarge = u"The value [%s] is to large to fit in a i8";
  static constexpr Message kNoNumber = u"The value [%s] can not be converted to a i8";
};
template <>
struct IntegerForm<std::uint8_t> {
  using Reader = std::uint32_t;
  static constexpr Message kTooLarge = u"The value [%s] is to large to fit in a ui1";
};
template <>
struct IntegerForm<std::uint16_t> {
  using Reader = std::uint32_t;
  static constexpr Message kTooLarge = u"The value [%s] is to large to fit in a ui2";
};
template <>
struct IntegerForm<std::uint32_t> {
  using Reader = std::uint32_t;
  static constexpr Message kTooLarge = u"The value [%s] is to large to fit in a ui4";
  static constexpr Message kNoNumber = u"The value [%s] can not be converted to a ui4";
};
template <>
struct IntegerForm<std::uint64_t> {
  using Reader = std::uint64_t;
  static constexpr Message kTooLarge = u"The value [%s] is to large to fit in a ui8";
  static constexpr Message kNoNumber = u"The value [%s] can not be converted to a ui8";
};

template <class T>
struct RealForm;

template <>
struct RealForm<float> {
  static constexpr int kDigits = 7;
  static constexpr Message kNoNumber = u"The value [%s] can not be converted to a r4";
};
template <>
struct RealForm<double> {
  static constexpr int kDigits = 16;
  static constexpr Message kNoNumber = u"The value [%s] can not be converted to a r8";
};

[[noreturn]] void Throw(Message message, WStringView text) {
  throw COvInvalidValueException(FormatString(message, text));
}

using digits::IsDigit;

// White space of the C library in its own locale.
WStringView SkipWhiteSpace(WStringView text) noexcept {
  while (!text.empty() && (text.front() == u' ' || (text.front() >= u'\t' && text.front() <= u'\r'))) {
    text.remove_prefix(1);
  }
  return text;
}

// Takes a sign from the front; true for a minus.
bool TakeSign(WStringView& text) noexcept {
  if (text.empty() || (text.front() != u'-' && text.front() != u'+')) return false;
  const bool isNegative = text.front() == u'-';
  text.remove_prefix(1);
  return isNegative;
}

// Takes digits from the front; `fits` tells whether their number is not above `limit`.
std::uint64_t TakeDigits(WStringView& text, std::uint64_t limit, bool& fits) noexcept {
  const WChar *at = text.data(), *const end = at + text.size();
  std::uint64_t value = digits::Take(at, at + std::min(text.size(), digits::kSafe));
  fits = value <= limit;
  for (; at != end && IsDigit(*at); ++at) {
    const auto digit = static_cast<std::uint64_t>(*at - u'0');
    if (value > (limit - digit) / 10) fits = false;
    value = value * 10 + digit;
  }
  text.remove_prefix(text.size() - static_cast<std::size_t>(end - at));
  return value;
}

// The magnitudes that a type takes: as C's strtol and strtoul, unsigned types take the same ones behind a minus.
template <class T>
constexpr std::uint64_t GreatestMagnitude(bool isNegative) noexcept {
  constexpr auto kMax = static_cast<std::uint64_t>(std::numeric_limits<T>::max());
  return std::is_signed_v<T> && isNegative ? kMax + 1 : kMax;
}

// The text in ASCII for std::from_chars, with "?" for what is not, which no number has.
class NarrowText {
 public:
  explicit NarrowText(WStringView text) {
    char* out = m_short.data();
    if (text.size() > m_short.size()) {
      m_long.resize(text.size());
      out = m_long.data();
    }
    for (std::size_t i = 0; i < text.size(); ++i) out[i] = text[i] < 0x80 ? static_cast<char>(text[i]) : '?';
    m_text = {out, text.size()};
  }
  NarrowText(const NarrowText&) = delete;
  NarrowText& operator=(const NarrowText&) = delete;

  std::string_view View() const noexcept { return m_text; }

 private:
  std::array<char, 64> m_short;
  std::string m_long;
  std::string_view m_text;
};

// Whether a number that no double can hold is too large, not too small: where its first digit other than 0 stands
// tells.
bool IsHuge(std::string_view number) noexcept {
  const std::size_t mantissaEnd = std::min(number.find_first_of("eE"), number.size());
  const std::string_view mantissa = number.substr(0, mantissaEnd);
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t first = mantissa.find_first_not_of("0.");
  long long exponent = 0;
  std::string_view digits = number.substr(std::min(mantissaEnd + 1, number.size()));
  if (digits.starts_with('+')) digits.remove_prefix(1);
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
  if (read.ec == std::errc::result_out_of_range) return !digits.starts_with('-');
  return exponent > static_cast<long long>(first) - static_cast<long long>(point);
}

// Reads an unsigned decimal number that is all of the text; false when it is none.
bool ReadDecimal(std::string_view number, double& value) noexcept {
  if (number.empty() || (number.front() != '.' && !IsDigit(static_cast<WChar>(number.front())))) return false;
  const char* const end = number.data() + number.size();
  const auto [stop, error] = std::from_chars(number.data(), end, value);
  if (stop != end || error == std::errc::invalid_argument) return false;
  if (error == std::errc::result_out_of_range) value = IsHuge(number) ? HUGE_VAL : 0.0;
  return true;
}

template <class T>
void AppendFinite(T value, WString& out) {
  std::array<char, 32> buffer;
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), static_cast<double>(value),
                                          std::chars_format::general, RealForm<T>::kDigits);
  AppendAscii({buffer.data(), static_cast<std::size_t>(end - buffer.data())}, out);
}

template <class T>
void AppendAnyReal(T value, WString& out) {
  if (std::isnan(value)) return AppendAscii("NaN", out);
  if (std::isinf(value)) return AppendAscii(value < 0 ? "-INF" : "INF", out);
  AppendFinite(value, out);
}

}  // namespace

template <class T>
T ParseInteger(WStringView text) {
  using Form = IntegerForm<T>;
  if constexpr (std::is_same_v<T, typename Form::Reader>) {
    if (T value = 0; ReadShortInteger(text, value)) return value;
    WStringView rest = SkipWhiteSpace(text);
    const bool isNegative = TakeSign(rest);
    const bool hasDigits = !rest.empty() && IsDigit(rest.front());
    bool fits = false;
    const std::uint64_t magnitude = TakeDigits(rest, GreatestMagnitude<T>(isNegative), fits);
    if (!fits) Throw(Form::kTooLarge, text);
    if (!hasDigits || !rest.empty()) Throw(Form::kNoNumber, text);
    return static_cast<T>(isNegative ? 0 - magnitude : magnitude);
  } else {
    const auto value = ParseInteger<typename Form::Reader>(text);
    if (value < std::numeric_limits<T>::min() || value > std::numeric_limits<T>::max()) Throw(Form::kTooLarge, text);
    return static_cast<T>(value);
  }
}

template std::int8_t ParseInteger(WStringView);
template std::int16_t ParseInteger(WStringView);
template std::int32_t ParseInteger(WStringView);
template std::int64_t ParseInteger(WStringView);
template std::uint8_t ParseInteger(WStringView);
template std::uint16_t ParseInteger(WStringView);
template std::uint32_t ParseInteger(WStringView);
template std::uint64_t ParseInteger(WStringView);

template <class T>
T ParseReal(WStringView text) {
  WStringView rest = SkipWhiteSpace(text);
  const bool isNegative = TakeSign(rest);
  double magnitude = 0;
  if (ReadDecimal(NarrowText(rest).View(), magnitude)) return static_cast<T>(isNegative ? -magnitude : magnitude);
  if (text == u"NaN" || text == u"1.#QNAN" || text == u"-NAN") return std::numeric_limits<T>::quiet_NaN();
  if (text == u"INF") return std::numeric_limits<T>::infinity();
  if (text == u"-INF") return -std::numeric_limits<T>::infinity();
  Throw(RealForm<T>::kNoNumber, text);
}

template float ParseReal(WStringView);
template double ParseReal(WStringView);

void AppendInteger(std::int64_t value, WString& out) {
  WChar text[1 + digits::kMost];
  WChar* const end = std::end(text);
  const auto word = static_cast<std::uint64_t>(value);
  WChar* first = digits::PutNumber(end, value < 0 ? 0 - word : word);
  if (value < 0) *--first = u'-';
  out.append(first, static_cast<std::size_t>(end - first));
}

void AppendInteger(std::uint64_t value, WString& out) {
  WChar text[digits::kMost];
  WChar* const end = std::end(text);
  const WChar* const first = digits::PutNumber(end, value);
  out.append(first, static_cast<std::size_t>(end - first));
}

void AppendTwoDigits(std::uint8_t value, WString& out) {
  if (value < 10) out += u'0';
  AppendInteger(std::uint64_t{value}, out);
}

void AppendReal(float value, WString& out) { AppendAnyReal(value, out); }
void AppendReal(double value, WString& out) { AppendAnyReal(value, out); }

void AppendAscii(std::string_view text, WString& out) {
  const std::size_t before = out.size();
  out.resize(before + text.size());
  for (std::size_t i = 0; i < text.size(); ++i) out[before + i] = static_cast<unsigned char>(text[i]);
}

}  // namespace OvXmlLib16
