#include "ovxmllib/values/Decimal.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <iterator>
#include <ostream>
#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/WhitespaceUtils.h"
#include "ovxmllib/values/Digits.h"

namespace OvXmlLib16 {

namespace {

constinit std::atomic<std::int32_t> g_maxDivider{30};

// Decided: places outside this range make no sense and, unchecked, would overflow; docs/decisions.md, Values.
constexpr std::int32_t kMostPlaces = 1'000'000;

std::int64_t PlacesKept() noexcept {
  return std::clamp(g_maxDivider.load(std::memory_order_relaxed), std::int32_t{0}, kMostPlaces);
}

// Decided: the digits grow with the exponent, so a few characters could ask for any amount of memory;
// docs/decisions.md, Values.
constexpr unsigned kMaxExponent = 1000;

constexpr int kPlacesOfDouble = 13;
constexpr std::size_t kDigitsOfDouble = 309;

// On either side of the point, for what works with a word each.
constexpr std::ptrdiff_t kShortDigits = digits::kSafe;

using digits::IsDigit;
constexpr bool IsSign(WChar c) noexcept { return c == u'-' || c == u'+'; }

[[noreturn]] void ThrowInvalidCharacter(std::size_t position, WStringView text) {
  throw COvInvalidValueException(FormatString(
      u"The string representing a Decimal, contained an invalid char at position %d [%s].", position, text));
}

// Takes the text of a decimal apart:
//
//   *(digit / sign / white) [ "." *(digit / white) ] [ ("e" / "E") *(sign / white) *digit ]
struct DecimalText {
  explicit DecimalText(WStringView source) : text(source) {
    TakeWhole();
    if (Next() == u'.') TakeFraction();
    if (Next() == u'e' || Next() == u'E') TakeExponent();
    if (at != text.size()) ThrowInvalidCharacter(at, text);
  }

  WChar Next() const noexcept { return at < text.size() ? text[at] : u'\0'; }

  void TakeWhole() {
    for (; at < text.size(); ++at) {
      const WChar c = text[at];
      if (c == u'.' || c == u'e' || c == u'E') break;
      if (IsSign(c)) {
        isNegative = c == u'-';
      } else if (!IsDigit(c) && !CWhitespaceUtils::IsWhiteSpace(c)) {
        ThrowInvalidCharacter(at, text);
      }
    }
    whole = text.substr(0, at);
  }

  void TakeFraction() {
    const std::size_t start = ++at;
    for (; IsDigit(Next()) || CWhitespaceUtils::IsWhiteSpace(Next()); ++at) places += IsDigit(Next()) ? 1 : 0;
    fraction = text.substr(start, at - start);
  }

  void TakeExponent() {
    for (++at; IsSign(Next()) || CWhitespaceUtils::IsWhiteSpace(Next()); ++at) {
      if (IsSign(Next())) isExponentNegative = Next() == u'-';
    }
    hasExponent = IsDigit(Next());
    for (; IsDigit(Next()); ++at) {
      exponent = exponent * 10 + static_cast<unsigned>(Next() - u'0');
      if (exponent > kMaxExponent) ThrowInvalidCharacter(at, text);
    }
  }

  WStringView text;
  std::size_t at = 0;

  bool isNegative = false;
  WStringView whole, fraction;  // the digits, with what may stand between them
  std::int64_t places = 0;
  bool hasExponent = false;
  bool isExponentNegative = false;
  unsigned exponent = 0;
};

[[noreturn]] void ThrowOverFlow(const WChar* message) { throw COvOverFlowException(message); }

}  // namespace

std::int32_t CDecimal::GetMaxDecimalPlaces() noexcept { return g_maxDivider.load(std::memory_order_relaxed); }

void CDecimal::SetMaxDecimalPlaces(std::int32_t places) noexcept {
  g_maxDivider.store(places, std::memory_order_relaxed);
}

CDecimal::CDecimal(CBigInteger whole, CBigInteger fraction, std::int64_t divider) noexcept
    : m_integerPart(std::move(whole)), m_fractionPart(std::move(fraction)), m_fractionDivider(divider) {}

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

CDecimal& CDecimal::operator=(const CDecimal& other) {
  if (!IsInPlace() || !other.IsInPlace()) return *this = CDecimal(other);
  m_integerPart = other.m_integerPart;
  m_fractionPart = other.m_fractionPart;
  m_fractionDivider = other.m_fractionDivider;
  return *this;
}

void CDecimal::Parse(WStringView text) {
  if (ParseShort(text)) return Round();
  const DecimalText parts(text);
  m_integerPart.m_magnitude.AssignDigits(parts.whole);
  m_fractionPart.m_magnitude.AssignDigits(parts.fraction);
  m_fractionDivider = std::max(parts.places, std::int64_t{1});
  if (parts.isNegative) Negate();
  if (parts.hasExponent) Scale(parts.isExponentNegative, parts.exponent);
  Tidy();
}

// Reads what most texts are, without zeros at the end of the fraction; returns false for others, with nothing changed:
//
//   ["-"] *18digit [ "." *18digit ]
bool CDecimal::ParseShort(WStringView text) noexcept {
  const WChar *at = text.data(), *const end = at + text.size();
  const bool isNegative = at != end && *at == u'-';
  const WChar* start = at += isNegative ? 1 : 0;
  const DecimalLimbs::Limb whole = digits::Take(at, end);
  if (at - start > kShortDigits) return false;

  DecimalLimbs::Limb fraction = 0;
  std::ptrdiff_t places = 1;
  bool dropsPlaces = false;
  if (at != end && *at == u'.') {
    start = ++at;
    fraction = digits::Take(at, end);
    places = std::max(at - start, std::ptrdiff_t{1});
    if (places > kShortDigits) return false;
    for (; places > 1 && start[places - 1] == u'0'; --places, dropsPlaces = true) fraction /= 10;
  }
  if (at != end) return false;

  m_integerPart.m_magnitude.AssignLimb(whole);
  m_fractionPart.m_magnitude.AssignLimb(fraction);
  m_fractionDivider = places;
  if (isNegative) Negate();
  if (dropsPlaces && fraction == 0) m_fractionPart.Abs();  // as Rationalise does
  return true;
}

// What multiplying by the power of ten gives, or dividing by it, done by moving digits.
void CDecimal::Scale(bool isNegative, std::size_t exponent) {
  CBigInteger units = ToUnits(m_fractionDivider);
  std::int64_t places = m_fractionDivider + 1;
  if (!isNegative) {
    units.m_magnitude.ShiftLeft(exponent + 1);
  } else {
    places = PlacesKept() + 2;
    const std::int64_t shift = places - m_fractionDivider - static_cast<std::int64_t>(exponent);
    if (shift >= 0) {
      units.m_magnitude.ShiftLeft(static_cast<std::size_t>(shift));
    } else {
      units.m_magnitude.ShiftRight(static_cast<std::size_t>(-shift));
    }
  }
  *this = FromUnits(std::move(units), places);
  Tidy();
}

CDecimal CDecimal::FromUtf8(std::string_view text) { return CDecimal(ToWide(text)); }

CDecimal CDecimal::FromUnits(CBigInteger units, std::int64_t places) {
  if (units.IsZero()) units.Abs();
  CBigInteger fraction(units);
  fraction.m_magnitude.KeepLast(static_cast<std::size_t>(places));
  units.m_magnitude.ShiftRight(static_cast<std::size_t>(places));
  return {std::move(units), std::move(fraction), places};
}

CBigInteger CDecimal::ToUnits(std::int64_t places, std::int64_t zeros) const {
  CBigInteger units(m_integerPart);
  units.m_magnitude.ShiftLeft(static_cast<std::size_t>(places));
  units += GetFraction(places);
  units.m_magnitude.ShiftLeft(static_cast<std::size_t>(zeros));
  return units;
}

CBigInteger CDecimal::GetFraction(std::int64_t places) const {
  CBigInteger fraction(m_fractionPart);
  fraction.m_magnitude.ShiftLeft(static_cast<std::size_t>(places - m_fractionDivider));
  return fraction;
}

void CDecimal::Rationalise() {
  if (m_fractionDivider <= 1) return;
  std::int64_t zeros = m_fractionDivider - 1;
  if (m_fractionPart.IsZero()) {
    // Deliberate: the fraction zero loses its sign where places are dropped, and only there.
    m_fractionPart.Abs();
  } else {
    zeros = std::min(zeros, static_cast<std::int64_t>(m_fractionPart.m_magnitude.TrailingZeros()));
    m_fractionPart.m_magnitude.ShiftRight(static_cast<std::size_t>(zeros));
  }
  m_fractionDivider -= zeros;
}

void CDecimal::ChangeFractionalDivider(std::int64_t places) {
  const auto dropped = static_cast<std::size_t>(m_fractionDivider - places);
  const bool roundsUp = m_fractionPart.m_magnitude.EndsAboveHalf(dropped);
  const std::int32_t sign = m_fractionPart.m_sign;
  if (m_fractionPart.IsZero()) m_fractionPart.Abs();
  m_fractionPart.m_magnitude.ShiftRight(dropped);
  m_fractionDivider = places;
  if (!roundsUp) return;
  if (places == 0) {
    m_integerPart += sign;
    return;
  }
  m_fractionPart += sign;
  Carry();
}

void CDecimal::Carry() {
  const auto places = static_cast<std::size_t>(m_fractionDivider);
  CBigInteger &whole = m_integerPart, &fraction = m_fractionPart;
  if (fraction.m_magnitude.DigitCount() > places) {
    whole += fraction.m_sign;
    fraction.m_magnitude.KeepLast(places);
    if (fraction.IsZero()) fraction.Abs();
  }
  if (fraction.IsZero()) {
    // Decided: a negative zero borrows nothing from the whole part, it gives up its sign; docs/decisions.md, Values.
    if (whole > 0) fraction.Abs();
  } else if (whole.m_sign != fraction.m_sign && !whole.IsZero()) {
    fraction.Add(CBigInteger(DecimalLimbs::PowerOfTen(places), 1), whole.m_sign);
    whole -= whole.m_sign;
  }
  if (whole.IsZero()) whole.m_sign = fraction.m_sign;
}

void CDecimal::Tidy() {
  Rationalise();
  Round();
}

void CDecimal::Round() {
  const std::int64_t kept = PlacesKept();
  if (m_fractionDivider > kept) ChangeFractionalDivider(kept);
}

void CDecimal::Negate() noexcept {
  m_integerPart.Negate();
  m_fractionPart.Negate();
}

CDecimal CDecimal::GetNegative() const {
  CDecimal result(*this);
  result.Negate();
  return result;
}

CDecimal CDecimal::operator++(int) { return std::exchange(*this, *this + 1); }

CDecimal CDecimal::operator--(int) { return std::exchange(*this, *this - 1); }

CDecimal operator+(const CDecimal& a, const CDecimal& b) {
  const std::int64_t places = std::max(a.m_fractionDivider, b.m_fractionDivider);
  CDecimal sum(a.m_integerPart + b.m_integerPart, a.GetFraction(places) + b.GetFraction(places), places);
  sum.Carry();
  sum.Rationalise();
  return sum;
}

CDecimal operator-(const CDecimal& a, const CDecimal& b) { return a + b.GetNegative(); }

CDecimal operator*(const CDecimal& a, const CDecimal& b) {
  const std::int64_t places = std::max(a.m_fractionDivider, b.m_fractionDivider);
  CDecimal product = CDecimal::FromUnits(a.ToUnits(places) * b.ToUnits(places), 2 * places);
  product.Tidy();
  return product;
}

CDecimal operator/(const CDecimal& a, const CDecimal& b) {
  const std::int64_t places = std::max(a.m_fractionDivider, b.m_fractionDivider), kept = PlacesKept() + 2;
  CDecimal quotient = CDecimal::FromUnits(a.ToUnits(places, kept) / b.ToUnits(places), kept);
  quotient.Tidy();
  return quotient;
}

// Whether the whole parts are equal and the fractions, in the same units, pass the test.
template <class Test>
bool CDecimal::TestFractions(const CDecimal& a, const CDecimal& b, Test test) {
  if (a.m_integerPart != b.m_integerPart) return false;
  const std::int64_t places = std::max(a.m_fractionDivider, b.m_fractionDivider);
  return test(a.GetFraction(places), b.GetFraction(places));
}

bool operator==(const CDecimal& a, const CDecimal& b) { return CDecimal::TestFractions(a, b, std::equal_to<>()); }

// Deliberate: zeros that are equal may be less than each other too, as whole parts and as fractions.
bool operator<(const CDecimal& a, const CDecimal& b) {
  return a.m_integerPart < b.m_integerPart || CDecimal::TestFractions(a, b, std::less<>());
}

bool operator<=(const CDecimal& a, const CDecimal& b) {
  return a.m_integerPart < b.m_integerPart || CDecimal::TestFractions(a, b, std::less_equal<>());
}

WString CDecimal::ToString() const {
  WString text;
  AppendTo(text);
  return text;
}

std::string CDecimal::ToUtf8() const { return OvXmlLib16::ToUtf8(ToString()); }

void CDecimal::AppendTo(WString& out) const {
  if (m_fractionPart.IsZero()) {
    m_integerPart.AppendTo(out);
    return;
  }
  if (AppendShort(out, m_fractionDivider)) return;
  if (IsNegative()) out += u'-';
  m_integerPart.m_magnitude.AppendTo(out);
  out += u'.';
  m_fractionPart.m_magnitude.AppendTo(out, static_cast<std::size_t>(m_fractionDivider));
}

WString CDecimal::ToString(std::int32_t places) const {
  WString text;
  AppendTo(text, places);
  return text;
}

void CDecimal::AppendTo(WString& out, std::int32_t places) const {
  // Decided: fewer places than none are none; docs/decisions.md, Values.
  const std::int64_t kept = std::max(places, 0);
  // There is nothing to round, and the places that rounding works with would be enough.
  if (m_fractionDivider <= kept && kept < GetMaxDecimalPlaces()) {
    if (AppendShort(out, kept)) return;
    AppendCut(out, static_cast<std::size_t>(kept));
    out.resize(out.rfind(u'.') + 1 + static_cast<std::size_t>(kept), u'0');
    return;
  }
  CDecimal half(CBigInteger(), CBigInteger(5), kept + 1);
  if (IsNegative()) half.Negate();
  half.Tidy();
  (half + *this).AppendCut(out, static_cast<std::size_t>(kept));
}

// Appends all digits, and zeros up to `places`, of which the number has no more, where both parts fit a word each;
// returns false where they do not.
bool CDecimal::AppendShort(WString& out, std::int64_t places) const {
  const DecimalLimbs &whole = m_integerPart.m_magnitude, &fraction = m_fractionPart.m_magnitude;
  if (!whole.IsLimb() || !fraction.IsLimb() || places > kShortDigits) return false;
  WChar text[1 + kShortDigits + 1 + kShortDigits];
  WChar* const end = std::end(text);
  const auto zeros = static_cast<std::size_t>(places - m_fractionDivider);
  WChar* first =
      digits::PutLast(end, fraction.ToLimb() * digits::kPowersOfTen[zeros], static_cast<std::size_t>(places));
  *--first = u'.';
  first = digits::PutNumber(first, whole.ToLimb());
  if (IsNegative()) *--first = u'-';
  out.append(first, static_cast<std::size_t>(end - first));
  return true;
}

void CDecimal::AppendCut(WString& out, std::size_t places) const {
  if (IsNegative()) out += u'-';
  m_integerPart.m_magnitude.AppendTo(out);
  out += u'.';
  const std::size_t start = out.size();
  m_fractionPart.m_magnitude.AppendTo(out, static_cast<std::size_t>(m_fractionDivider));
  out.resize(start + std::min(places, out.size() - start));
}

CBigInteger CDecimal::ToBigInteger() const {
  CDecimal rounded(*this);
  rounded.ChangeFractionalDivider(0);
  return std::move(rounded.m_integerPart);
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
  if (m_integerPart > CBigInteger::MAX_DOUBLE || m_integerPart < CBigInteger::MIN_DOUBLE) {
    ThrowOverFlow(u"The Decimal value if to large to fit into a Double");
  }
  const std::string text = ToUtf8();
  double value = 0;  // also what a fraction gives that is nearer to zero than any double
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::size_t CDecimal::Hash() const {
  CDecimal canonical(*this);
  canonical.Rationalise();
  const std::size_t whole = std::hash<CBigInteger>()(m_integerPart);
  const std::size_t fraction = std::hash<CBigInteger>()(canonical.m_fractionPart);
  return whole * 31 + fraction + static_cast<std::size_t>(canonical.m_fractionDivider);
}

std::ostream& operator<<(std::ostream& out, const CDecimal& value) { return out << value.ToUtf8(); }

}  // namespace OvXmlLib16
