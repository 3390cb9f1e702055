#include "ovxmllib/values/BigInteger.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <ostream>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/WhitespaceUtils.h"
#include "ovxmllib/values/Decimal.h"

namespace OvXmlLib16 {

namespace {

constexpr bool IsDigit(WChar c) noexcept { return c >= u'0' && c <= u'9'; }
constexpr bool IsSign(WChar c) noexcept { return c == u'-' || c == u'+'; }
constexpr bool IsPlain(WChar c) noexcept { return IsDigit(c) || IsSign(c) || CWhitespaceUtils::IsWhiteSpace(c); }

// Decided: line ends and tabs behind the number count as little as spaces there; docs/decisions.md, Values.
WStringView WithoutTrailingWhitespace(WStringView text) noexcept {
  while (!text.empty() && CWhitespaceUtils::IsWhiteSpace(text.back())) text.remove_suffix(1);
  return text;
}

WStringView WithoutLeadingSpaces(WStringView text) noexcept {
  return text.substr(std::min(text.find_first_not_of(u' '), text.size()));
}

WStringView LastRunOfDigits(WStringView text) noexcept {
  const auto end = std::find_if_not(text.rbegin(), text.rend(), IsDigit);
  return text.substr(static_cast<std::size_t>(text.rend() - end));
}

[[noreturn]] void Throw(const WChar* message) { throw COvInvalidValueException(message); }

// 17 followed by 307 zeros, eighteen digits to a limb.
constexpr auto kDoubleBound = [] {
  std::array<DecimalLimbs::Limb, 18> limbs{};
  limbs[17] = 170;
  return limbs;
}();

constexpr double kExactBound = 9007199254740992.0;  // 2^53

// The digits of a whole double, most significant first, by repeated division in double arithmetic.
// Deliberate: the quotients above 2^53 are rounded, and the digits of the interface are those that this gives.
WString DigitsByDivision(double value) {
  WString digits;
  for (; value > 0.0; value = std::trunc(value / 10.0)) {
    digits += static_cast<WChar>(u'0' + static_cast<int>(std::fmod(value, 10.0)));
  }
  std::reverse(digits.begin(), digits.end());
  return digits;
}

}  // namespace

// Constants, so that they are there before any code runs.
constinit const CBigInteger CBigInteger::MAX_LONG{std::numeric_limits<std::int32_t>::max()};
constinit const CBigInteger CBigInteger::MIN_LONG{std::numeric_limits<std::int32_t>::min()};
constinit const CBigInteger CBigInteger::MAX_LONGLONG{std::numeric_limits<std::int64_t>::max()};
constinit const CBigInteger CBigInteger::MIN_LONGLONG{std::numeric_limits<std::int64_t>::min()};
constinit const CBigInteger CBigInteger::MAX_DOUBLE{kDoubleBound, 1};
constinit const CBigInteger CBigInteger::MIN_DOUBLE{kDoubleBound, -1};

CBigInteger::CBigInteger(double value) : m_sign(value < 0.0 ? -1 : 1) {
  if (!std::isfinite(value)) Throw(u"A Big Integer can not be made of a double that is not finite.");
  const double magnitude = std::ceil(std::fabs(value) - 0.5);
  if (magnitude < kExactBound) {
    m_magnitude = DecimalLimbs(static_cast<std::uint64_t>(magnitude));
  } else {
    m_magnitude.AssignDigits(DigitsByDivision(magnitude));
  }
}

CBigInteger::CBigInteger(const CDecimal& value) : CBigInteger(value.ToBigInteger()) {}

void CBigInteger::Parse(WStringView text) {
  const bool isNegative = text.starts_with(u'-');
  if (const WStringView digits = text.substr(isNegative ? 1 : 0); !digits.empty() && m_magnitude.AssignShort(digits)) {
    m_sign = isNegative ? -1 : 1;
    return;
  }
  const WStringView number = WithoutLeadingSpaces(WithoutTrailingWhitespace(text));
  const bool isPlain = std::all_of(number.begin(), number.end(), IsPlain);
  // Decided: there are no digits in front of a sign at the end, and CDecimal reads "12-"; docs/decisions.md, Values.
  if (!isPlain || (!number.empty() && IsSign(number.back()))) {
    *this = CDecimal(text).ToBigInteger();
    return;
  }
  m_magnitude.AssignDigits(LastRunOfDigits(number));
  m_sign = number.starts_with(u'-') ? -1 : 1;
}

CBigInteger CBigInteger::FromUtf8(std::string_view text) { return CBigInteger(ToWide(text)); }

WString CBigInteger::ToString() const {
  WString text;
  AppendTo(text);
  return text;
}

std::string CBigInteger::ToUtf8() const { return OvXmlLib16::ToUtf8(ToString()); }

void CBigInteger::AppendTo(WString& out) const {
  if (m_sign < 0 && !IsZero()) out += u'-';
  m_magnitude.AppendTo(out);
}

CBigInteger CBigInteger::GetAbs() const { return {m_magnitude, 1}; }

CBigInteger CBigInteger::GetNegative() const { return {m_magnitude, -m_sign}; }

CBigInteger& CBigInteger::operator-() noexcept {
  Negate();
  return *this;
}

bool CBigInteger::IsBelow(const CBigInteger& other) const noexcept {
  if (m_sign != other.m_sign) return m_sign < 0;
  const int order = m_magnitude.Compare(other.m_magnitude);
  return m_sign > 0 ? order < 0 : order > 0;
}

CBigInteger& CBigInteger::Add(const CBigInteger& other, std::int32_t sign) {
  if (m_sign == sign) {
    m_magnitude.Add(other.m_magnitude);
    return *this;
  }
  const int order = m_magnitude.Compare(other.m_magnitude);
  if (order == 0) {
    *this = CBigInteger();
  } else if (order > 0) {
    m_magnitude.Subtract(other.m_magnitude);
  } else {
    m_magnitude.SubtractFrom(other.m_magnitude);
    m_sign = sign;
  }
  return *this;
}

CBigInteger& CBigInteger::operator*=(const CBigInteger& other) {
  m_magnitude = DecimalLimbs::Multiply(m_magnitude, other.m_magnitude);
  m_sign *= other.m_sign;
  return *this;
}

CBigInteger CBigInteger::Divide(const CBigInteger& divisor) {
  if (IsZero()) return *this = CBigInteger();
  const std::int32_t sign = m_sign * divisor.m_sign;
  CBigInteger rest(m_magnitude.DivideBy(divisor.m_magnitude), m_sign);
  m_sign = sign;
  return rest;
}

CBigInteger& CBigInteger::operator/=(const CBigInteger& other) {
  if (other.IsZero()) Throw(u"ERROR: Overflow in operator /=.");
  Divide(other);
  return *this;
}

CBigInteger& CBigInteger::operator%=(const CBigInteger& other) {
  if (other.IsZero()) Throw(u"ERROR: Overflow in operator%=.");
  return *this = CBigInteger(*this).Divide(other);
}

CBigInteger operator/(const CBigInteger& a, const CBigInteger& b) {
  if (b.IsZero()) Throw(u"ERROR: Overflow in operator/.");
  CBigInteger quotient(a);
  quotient.Divide(b);
  return quotient;
}

CBigInteger operator%(const CBigInteger& a, const CBigInteger& b) {
  if (b.IsZero()) Throw(u"ERROR: Overflow in operator%.");
  return CBigInteger(a).Divide(b);
}

CBigInteger::operator int() const {
  if (*this < MIN_LONG || *this > MAX_LONG) Throw(u"ERROR: Value out of bound of int.");
  return static_cast<int>(static_cast<long long>(*this));
}

CBigInteger::operator long long() const {
  if (*this < MIN_LONGLONG || *this > MAX_LONGLONG) Throw(u"ERROR: Value out of bound of LONGLONG.");
  const std::uint64_t word = m_magnitude.ToWord();
  return static_cast<long long>(m_sign < 0 ? std::uint64_t{0} - word : word);
}

// Newton's iteration from a power of ten above the root: it falls until it has reached the floor of the root.
CBigInteger CBigInteger::SquareRoot() const {
  if (m_sign < 0) Throw(u"ERROR: Negative Number in function SquareRoot().");
  // Deliberate: for zero the estimates would fall to zero, and the interface reports the division by it.
  if (IsZero()) Throw(u"ERROR: Overflow in operator/.");
  CBigInteger estimate(DecimalLimbs::PowerOfTen((m_magnitude.DigitCount() + 1) / 2), 1);
  for (;;) {
    CBigInteger next = (estimate + *this / estimate) / 2;
    if (next >= estimate) return estimate;
    estimate = std::move(next);
  }
}

CBigInteger CBigInteger::Pow10(unsigned int exponent) { return {DecimalLimbs::PowerOfTen(exponent), 1}; }

std::ostream& operator<<(std::ostream& out, const CBigInteger& value) { return out << value.ToUtf8(); }

}  // namespace OvXmlLib16
