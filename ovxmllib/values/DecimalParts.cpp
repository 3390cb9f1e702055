#include "ovxmllib/values/DecimalParts.h"

#include <algorithm>
#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/WhitespaceUtils.h"
#include "ovxmllib/values/Decimal.h"
#include "ovxmllib/values/Digits.h"

namespace OvXmlLib16 {

namespace {

// Decided: places outside this range make no sense and, unchecked, would overflow; docs/decisions.md, Values.
constexpr std::int32_t kMostPlaces = 1'000'000;

std::int64_t PlacesKept() noexcept { return std::clamp(CDecimal::GetMaxDecimalPlaces(), std::int32_t{0}, kMostPlaces); }

// Decided: the digits grow with the exponent, so a few characters could ask for any amount of memory;
// docs/decisions.md, Values.
constexpr unsigned kMaxExponent = 1000;

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

}  // namespace

DecimalParts::DecimalParts(WStringView text) {
  const DecimalText parts(text);
  integerPart.m_magnitude.AssignDigits(parts.whole);
  fractionPart.m_magnitude.AssignDigits(parts.fraction);
  divider = std::max(parts.places, std::int64_t{1});
  if (parts.isNegative) Negate();
  if (parts.hasExponent) Scale(parts.isExponentNegative, parts.exponent);
  Tidy();
}

// What multiplying by the power of ten gives, or dividing by it, done by moving digits.
void DecimalParts::Scale(bool isNegative, std::size_t exponent) {
  CBigInteger units = ToUnits(divider);
  std::int64_t places = divider + 1;
  if (!isNegative) {
    units.m_magnitude.ShiftLeft(exponent + 1);
  } else {
    places = PlacesKept() + 2;
    const std::int64_t shift = places - divider - static_cast<std::int64_t>(exponent);
    if (shift >= 0) {
      units.m_magnitude.ShiftLeft(static_cast<std::size_t>(shift));
    } else {
      units.m_magnitude.ShiftRight(static_cast<std::size_t>(-shift));
    }
  }
  *this = FromUnits(std::move(units), places);
  Tidy();
}

DecimalParts DecimalParts::FromUnits(CBigInteger units, std::int64_t places) {
  if (units.IsZero()) units.Abs();
  CBigInteger fraction(units);
  fraction.m_magnitude.KeepLast(static_cast<std::size_t>(places));
  units.m_magnitude.ShiftRight(static_cast<std::size_t>(places));
  return {std::move(units), std::move(fraction), places};
}

CBigInteger DecimalParts::ToUnits(std::int64_t places, std::int64_t zeros) const {
  CBigInteger units(integerPart);
  units.m_magnitude.ShiftLeft(static_cast<std::size_t>(places));
  units += GetFraction(places);
  units.m_magnitude.ShiftLeft(static_cast<std::size_t>(zeros));
  return units;
}

CBigInteger DecimalParts::GetFraction(std::int64_t places) const {
  CBigInteger fraction(fractionPart);
  fraction.m_magnitude.ShiftLeft(static_cast<std::size_t>(places - divider));
  return fraction;
}

void DecimalParts::Rationalise() {
  if (divider <= 1) return;
  std::int64_t zeros = divider - 1;
  if (fractionPart.IsZero()) {
    // Deliberate: the fraction zero loses its sign where places are dropped, and only there.
    fractionPart.Abs();
  } else {
    zeros = std::min(zeros, static_cast<std::int64_t>(fractionPart.m_magnitude.TrailingZeros()));
    fractionPart.m_magnitude.ShiftRight(static_cast<std::size_t>(zeros));
  }
  divider -= zeros;
}

void DecimalParts::ChangeFractionalDivider(std::int64_t places) {
  const auto dropped = static_cast<std::size_t>(divider - places);
  const bool roundsUp = fractionPart.m_magnitude.EndsAboveHalf(dropped);
  const std::int32_t sign = fractionPart.m_sign;
  if (fractionPart.IsZero()) fractionPart.Abs();
  fractionPart.m_magnitude.ShiftRight(dropped);
  divider = places;
  if (!roundsUp) return;
  if (places == 0) {
    integerPart += sign;
    return;
  }
  fractionPart += sign;
  Carry();
}

void DecimalParts::Carry() {
  const auto places = static_cast<std::size_t>(divider);
  CBigInteger &whole = integerPart, &fraction = fractionPart;
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

void DecimalParts::Tidy() {
  Rationalise();
  Round();
}

void DecimalParts::Round() {
  const std::int64_t kept = PlacesKept();
  if (divider > kept) ChangeFractionalDivider(kept);
}

void DecimalParts::Negate() noexcept {
  integerPart.Negate();
  fractionPart.Negate();
}

DecimalParts operator+(const DecimalParts& a, const DecimalParts& b) {
  const std::int64_t places = std::max(a.divider, b.divider);
  DecimalParts sum(a.integerPart + b.integerPart, a.GetFraction(places) + b.GetFraction(places), places);
  sum.Carry();
  sum.Rationalise();
  return sum;
}

DecimalParts operator*(const DecimalParts& a, const DecimalParts& b) {
  const std::int64_t places = std::max(a.divider, b.divider);
  DecimalParts product = DecimalParts::FromUnits(a.ToUnits(places) * b.ToUnits(places), 2 * places);
  product.Tidy();
  return product;
}

DecimalParts operator/(const DecimalParts& a, const DecimalParts& b) {
  const std::int64_t places = std::max(a.divider, b.divider), kept = PlacesKept() + 2;
  DecimalParts quotient = DecimalParts::FromUnits(a.ToUnits(places, kept) / b.ToUnits(places), kept);
  quotient.Tidy();
  return quotient;
}

void DecimalParts::AppendTo(WString& out) const {
  if (fractionPart.IsZero()) return integerPart.AppendTo(out);
  if (IsNegative()) out += u'-';
  integerPart.m_magnitude.AppendTo(out);
  out += u'.';
  fractionPart.m_magnitude.AppendTo(out, static_cast<std::size_t>(divider));
}

void DecimalParts::AppendTo(WString& out, std::int32_t places) const {
  const std::int64_t kept = places;
  // There is nothing to round, and the places that rounding works with would be enough.
  if (divider <= kept && kept < CDecimal::GetMaxDecimalPlaces()) {
    AppendCut(out, static_cast<std::size_t>(kept));
    out.resize(out.rfind(u'.') + 1 + static_cast<std::size_t>(kept), u'0');
    return;
  }
  DecimalParts half(CBigInteger(), CBigInteger(5), kept + 1);
  if (IsNegative()) half.Negate();
  half.Tidy();
  (half + *this).AppendCut(out, static_cast<std::size_t>(kept));
}

void DecimalParts::AppendCut(WString& out, std::size_t places) const {
  if (IsNegative()) out += u'-';
  integerPart.m_magnitude.AppendTo(out);
  out += u'.';
  const std::size_t start = out.size();
  fractionPart.m_magnitude.AppendTo(out, static_cast<std::size_t>(divider));
  out.resize(start + std::min(places, out.size() - start));
}

}  // namespace OvXmlLib16
