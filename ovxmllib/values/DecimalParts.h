// A decimal number of any size taken apart: the arithmetic behind CDecimal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/BigInteger.h"

namespace OvXmlLib16 {

/// The whole part, the fraction in units of ten to the power -divider, and that number of decimal places. What the
/// operations do and throw is told at CDecimal, which makes one of these where two words are too small for a number or
/// for what is to be done with it.
class DecimalParts {
 public:
  DecimalParts(CBigInteger whole, CBigInteger fraction, std::int64_t places) noexcept
      : integerPart(std::move(whole)), fractionPart(std::move(fraction)), divider(places) {}
  /// Reads any text that CDecimal reads.
  explicit DecimalParts(WStringView text);

  bool IsNegative() const noexcept { return integerPart.m_sign < 0; }
  void Negate() noexcept;

  friend DecimalParts operator+(const DecimalParts& a, const DecimalParts& b);
  friend DecimalParts operator*(const DecimalParts& a, const DecimalParts& b);
  friend DecimalParts operator/(const DecimalParts& a, const DecimalParts& b);

  /// Whether the whole parts are equal and the fractions, in the same units, pass the test.
  template <class Test>
  static bool TestFractions(const DecimalParts& a, const DecimalParts& b, Test test);

  /// Drops zeros at the end of the fraction, but not its first place.
  void Rationalise();
  /// Rounds to `places`, which are not more than there are; an exact half is dropped.
  void ChangeFractionalDivider(std::int64_t places);
  /// Not more places than are kept.
  void Round();

  void AppendTo(WString& out) const;
  /// `places` is not negative.
  void AppendTo(WString& out, std::int32_t places) const;

  CBigInteger integerPart;
  CBigInteger fractionPart;  // below ten to the power divider
  std::int64_t divider = 1;  // wide enough for any text until Tidy

 private:
  // Applies an exponent of ten.
  void Scale(bool isNegative, std::size_t exponent);

  // `units` times ten to the power -places. Both parts get the sign of `units`, but zero becomes positive.
  static DecimalParts FromUnits(CBigInteger units, std::int64_t places);
  // The number in units of ten to the power -places, of which it has no more, with further zeros behind it.
  CBigInteger ToUnits(std::int64_t places, std::int64_t zeros = 0) const;
  // The fraction in units of ten to the power -places, of which it has no more.
  CBigInteger GetFraction(std::int64_t places) const;

  // Brings the fraction below one, and both parts to one sign.
  void Carry();
  // The same as Round, and without zeros at the end.
  void Tidy();

  void AppendCut(WString& out, std::size_t places) const;
};

template <class Test>
bool DecimalParts::TestFractions(const DecimalParts& a, const DecimalParts& b, Test test) {
  if (a.integerPart != b.integerPart) return false;
  const std::int64_t places = a.divider < b.divider ? b.divider : a.divider;
  return test(a.GetFraction(places), b.GetFraction(places));
}

}  // namespace OvXmlLib16
