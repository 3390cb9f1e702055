#include "ovxmllib/values/Decimal.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <functional>
#include <iterator>
#include <ostream>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/values/DecimalParts.h"
#include "ovxmllib/values/Digits.h"
#include "ovxmllib/values/NumberText.h"

namespace OvXmlLib16 {

namespace {

constinit std::atomic<std::int32_t> g_maxDivider{30};

constexpr int kPlacesOfDouble = 13;
constexpr std::size_t kDigitsOfDouble = 309;

// On either side of the point, for what works with a word each.
constexpr std::ptrdiff_t kShortDigits = digits::kSafe;

[[noreturn]] void ThrowOverFlow(const WChar* message) { throw COvOverFlowException(message); }

}  // namespace

std::int32_t CDecimal::GetMaxDecimalPlaces() noexcept { return g_maxDivider.load(std::memory_order_relaxed); }

void CDecimal::SetMaxDecimalPlaces(std::int32_t places) noexcept {
  g_maxDivider.store(places, std::memory_order_relaxed);
}

CDecimal::CDecimal(DecimalParts&& parts) {
  const DecimalLimbs &whole = parts.integerPart.m_magnitude, &fraction = parts.fractionPart.m_magnitude;
  if (!whole.IsLimb() || !fraction.IsLimb() || parts.divider > kShortDigits) {
    m_number.parts = new DecimalParts(std::move(parts));
    m_number.places = kLong;
    return;
  }
  m_number = {{whole.ToLimb()},
              fraction.ToLimb(),
              static_cast<std::int32_t>(parts.divider),
              SignOf(parts.integerPart.m_sign < 0),
              SignOf(parts.fractionPart.m_sign < 0)};
}

CDecimal::CDecimal(const CBigInteger& value) : CDecimal(DecimalParts(value, CBigInteger(), 1)) {}

CDecimal::CDecimal(double value) {
  // Sign, digits, point, places, line feed.
  std::array<char, 1 + kDigitsOfDouble + 1 + kPlacesOfDouble + 1> text;
  char* end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, kPlacesOfDouble).ptr;
  *end++ = '\n';  // which the message for a value that is not finite shows
  std::array<WChar, text.size()> wide;
  std::copy(text.data(), end, wide.data());
  Parse({wide.data(), static_cast<std::size_t>(end - text.data())});
}

void CDecimal::CopyLong() { m_number.parts = new DecimalParts(*m_number.parts); }

void CDecimal::FreeLong() noexcept { delete m_number.parts; }

DecimalParts CDecimal::ToParts() const {
  if (IsLong()) return *m_number.parts;
  DecimalParts parts(CBigInteger(m_number.whole), CBigInteger(m_number.fraction), m_number.places);
  parts.integerPart.m_sign = m_number.wholeSign;
  parts.fractionPart.m_sign = m_number.fractionSign;
  return parts;
}

CBigInteger CDecimal::GetIntegerPart() const { return ToParts().integerPart; }
CBigInteger CDecimal::GetFractionPart() const { return ToParts().fractionPart; }
std::int32_t CDecimal::GetFractionDivider() const noexcept {
  return IsLong() ? static_cast<std::int32_t>(m_number.parts->divider) : m_number.places;
}

void CDecimal::Parse(WStringView text) {
  if (IsLong()) return void(*this = CDecimal(text));
  if (!ParseShort(text)) *this = CDecimal(DecimalParts(text));
}

// Reads what most texts are; returns false for others, with nothing changed:
//
//   ["-"] *18digit [ "." *18digit ]
bool CDecimal::ParseShort(WStringView text) noexcept {
  const WChar *at = text.data(), *const end = at + text.size();
  const bool isNegative = at != end && *at == u'-';
  const WChar* start = at += isNegative ? 1 : 0;
  const std::uint64_t whole = digits::Take(at, end);
  if (at - start > kShortDigits) return false;

  std::uint64_t fraction = 0;
  std::ptrdiff_t places = 1;
  bool dropsPlaces = false;
  if (at != end && *at == u'.') {
    start = ++at;
    fraction = digits::Take(at, end);
    places = std::max(at - start, std::ptrdiff_t{1});
    if (places > kShortDigits) return false;
    for (; places > 1 && start[places - 1] == u'0'; --places, dropsPlaces = true) fraction /= 10;
  }
  if (at != end || places > GetMaxDecimalPlaces()) return false;

  // The fraction zero loses its sign where places are dropped.
  m_number = {{whole},
              fraction,
              static_cast<std::int32_t>(places),
              SignOf(isNegative),
              SignOf(isNegative && !(dropsPlaces && fraction == 0))};
  return true;
}

CDecimal CDecimal::FromUtf8(std::string_view text) { return CDecimal(ToWide(text)); }

void CDecimal::Negate() noexcept {
  if (IsLong()) return m_number.parts->Negate();
  m_number.wholeSign = SignOf(m_number.wholeSign > 0);
  m_number.fractionSign = SignOf(m_number.fractionSign > 0);
}

CDecimal CDecimal::GetNegative() const {
  CDecimal result(*this);
  result.Negate();
  return result;
}

CDecimal CDecimal::operator++(int) { return std::exchange(*this, *this + 1); }

CDecimal CDecimal::operator--(int) { return std::exchange(*this, *this - 1); }

CDecimal operator+(const CDecimal& a, const CDecimal& b) { return CDecimal(a.ToParts() + b.ToParts()); }

CDecimal operator-(const CDecimal& a, const CDecimal& b) { return a + b.GetNegative(); }

CDecimal operator*(const CDecimal& a, const CDecimal& b) { return CDecimal(a.ToParts() * b.ToParts()); }

CDecimal operator/(const CDecimal& a, const CDecimal& b) { return CDecimal(a.ToParts() / b.ToParts()); }

bool operator==(const CDecimal& a, const CDecimal& b) {
  return DecimalParts::TestFractions(a.ToParts(), b.ToParts(), std::equal_to<>());
}

namespace {

// Deliberate: zeros that are equal may be less than each other too, as whole parts and as fractions.
template <class Test>
bool TestOrder(const DecimalParts& a, const DecimalParts& b, Test test) {
  return a.integerPart < b.integerPart || DecimalParts::TestFractions(a, b, test);
}

}  // namespace

bool operator<(const CDecimal& a, const CDecimal& b) { return TestOrder(a.ToParts(), b.ToParts(), std::less<>()); }

bool operator<=(const CDecimal& a, const CDecimal& b) {
  return TestOrder(a.ToParts(), b.ToParts(), std::less_equal<>());
}

WString CDecimal::ToString() const {
  WString text;
  AppendTo(text);
  return text;
}

std::string CDecimal::ToUtf8() const { return OvXmlLib16::ToUtf8(ToString()); }

void CDecimal::AppendTo(WString& out) const {
  if (IsLong()) return m_number.parts->AppendTo(out);
  if (m_number.fraction != 0) return void(AppendShort(out, m_number.places));
  if (m_number.wholeSign < 0 && m_number.whole != 0) out += u'-';
  AppendInteger(m_number.whole, out);
}

WString CDecimal::ToString(std::int32_t places) const {
  WString text;
  AppendTo(text, places);
  return text;
}

void CDecimal::AppendTo(WString& out, std::int32_t places) const {
  // Decided: fewer places than none are none; docs/decisions.md, Values.
  const std::int32_t kept = std::max(places, 0);
  // There is nothing to round, and the places that rounding works with would be enough.
  if (!IsLong() && m_number.places <= kept && kept < GetMaxDecimalPlaces() && AppendShort(out, kept)) return;
  ToParts().AppendTo(out, kept);
}

// Appends all digits of a number of two words, and zeros up to `places`, of which it has no more; returns false where
// they are too many.
bool CDecimal::AppendShort(WString& out, std::int32_t places) const {
  if (places > kShortDigits) return false;
  WChar text[1 + digits::kMost + 1 + kShortDigits];
  WChar* const end = std::end(text);
  const auto zeros = static_cast<std::size_t>(places - m_number.places);
  WChar* first =
      digits::PutLast(end, m_number.fraction * digits::kPowersOfTen[zeros], static_cast<std::size_t>(places));
  *--first = u'.';
  first = digits::PutNumber(first, m_number.whole);
  if (m_number.wholeSign < 0) *--first = u'-';
  out.append(first, static_cast<std::size_t>(end - first));
  return true;
}

CBigInteger CDecimal::ToBigInteger() const {
  DecimalParts rounded = ToParts();
  rounded.ChangeFractionalDivider(0);
  return std::move(rounded.integerPart);
}

std::int64_t CDecimal::ToLongLong() const {
  const CBigInteger rounded = ToBigInteger();
  if (rounded > CBigInteger::MAX_LONGLONG || rounded < CBigInteger::MIN_LONGLONG) {
    ThrowOverFlow(u"The Decimal value if to large to fit into a LONGLONG");
  }
  return static_cast<long long>(rounded);
}

std::int32_t CDecimal::ToLong() const {
  const CBigInteger rounded = ToBigInteger();
  if (rounded > CBigInteger::MAX_LONG || rounded < CBigInteger::MIN_LONG) {
    ThrowOverFlow(u"The Decimal value if to large to fit into a LONG");
  }
  return static_cast<int>(rounded);
}

double CDecimal::ToDouble() const {
  const CBigInteger whole = GetIntegerPart();
  if (whole > CBigInteger::MAX_DOUBLE || whole < CBigInteger::MIN_DOUBLE) {
    ThrowOverFlow(u"The Decimal value if to large to fit into a Double");
  }
  const std::string text = ToUtf8();
  double value = 0;  // also what a fraction gives that is nearer to zero than any double
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::size_t CDecimal::Hash() const {
  DecimalParts canonical = ToParts();
  canonical.Rationalise();
  const std::size_t whole = std::hash<CBigInteger>()(canonical.integerPart);
  const std::size_t fraction = std::hash<CBigInteger>()(canonical.fractionPart);
  return whole * 31 + fraction + static_cast<std::size_t>(canonical.divider);
}

std::ostream& operator<<(std::ostream& out, const CDecimal& value) { return out << value.ToUtf8(); }

}  // namespace OvXmlLib16
