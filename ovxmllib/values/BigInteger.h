// The XML Schema type integer: whole numbers of any size.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/DecimalLimbs.h"

namespace OvXmlLib16 {

class CDecimal;
class DecimalParts;

/// The types of characters, and bool: no numbers, though the language converts them silently.
template <class T>
concept CharacterOrBool = std::same_as<T, bool> || std::same_as<T, char> || std::same_as<T, wchar_t> ||
    std::same_as<T, char8_t> || std::same_as<T, char16_t> || std::same_as<T, char32_t>;

/// Every signed and unsigned integer type of the language, from `signed char` to `unsigned long long`.
template <class T>
concept MachineInteger =
    std::integral<T> && !CharacterOrBool<std::remove_cv_t<T>> && sizeof(T) <= sizeof(std::uint64_t);

/// A whole number of any size, exact in all it does.
///
/// A zero has a sign too: "-0" reads as negative zero, and products, quotients and remainders that are zero can be
/// negative. Both zeros print "0", equal each other and have one hash, but `<`, `>`, `<=` and `>=` look at the signs
/// first, so negative zero is less than zero and anything positive. A result that only rounds to zero keeps its sign
/// for CDecimal, whose whole part it may become.
///
/// Numbers of up to 36 digits need no memory of their own. Other operations may throw std::bad_alloc; whatever throws
/// leaves the object unchanged. Values are independent of each other: each may be used on a thread of its own.
class OVXMLLIB_API CBigInteger {
 public:
  static const CBigInteger MAX_LONG;      ///< 2147483647, the greatest value of the schema type i4
  static const CBigInteger MIN_LONG;      ///< -2147483648, the least value of i4
  static const CBigInteger MAX_LONGLONG;  ///< 9223372036854775807, the greatest value of i8
  static const CBigInteger MIN_LONGLONG;  ///< -9223372036854775808, the least value of i8
  static const CBigInteger MAX_DOUBLE;    ///< 17 followed by 307 zeros: a round bound below the greatest double
  static const CBigInteger MIN_DOUBLE;    ///< the same, negative

  /// Zero.
  CBigInteger() noexcept = default;
  template <MachineInteger T>
  constexpr CBigInteger(T value) noexcept : m_magnitude(MagnitudeOf(value)), m_sign(value < T{} ? -1 : 1) {}
  template <CharacterOrBool T>
  CBigInteger(T) = delete;
  /// The nearest whole number, a half being dropped: 2.5 and -2.5 give 2 and -2. Doubles above 2^53 are taken apart by
  /// repeated division by 10 in double arithmetic, so that the digits behind the first sixteen may differ from those of
  /// the double's exact value. Throws COvInvalidValueException for NaN and infinities.
  explicit CBigInteger(double value);
  /// What Parse reads; null counts as empty.
  CBigInteger(const WChar* text) { Parse(ViewOf(text)); }
  explicit CBigInteger(WStringView text) { Parse(text); }
  /// The nearest whole number, a half being dropped: 1.5 gives 1, 1.6 gives 2.
  explicit CBigInteger(const CDecimal& value);
  CBigInteger(const CBigInteger& other) = default;
  /// Leaves zero behind.
  CBigInteger(CBigInteger&& other) noexcept
      : m_magnitude(std::move(other.m_magnitude)), m_sign(std::exchange(other.m_sign, 1)) {}
  virtual ~CBigInteger() = default;

  CBigInteger& operator=(const CBigInteger& other) = default;
  /// Leaves zero behind.
  CBigInteger& operator=(CBigInteger&& other) noexcept {
    m_magnitude = std::move(other.m_magnitude);
    m_sign = this == &other ? m_sign : std::exchange(other.m_sign, 1);
    return *this;
  }

  /// Reads a number.
  ///
  /// Text of digits, signs and white space only: spaces in front and white space behind are passed over; a first
  /// character "-" makes the number negative; its digits are the last unbroken run of them, so that "+12" is 12 and
  /// "12 3" is 3. No text, and text of white space alone, is zero. Any other text, and one that ends in a sign, is read
  /// by CDecimal and rounded as in the constructor from one: "1e3" is 1000, "12-" is -12.
  ///
  /// Throws COvInvalidValueException where CDecimal does, naming the place.
  void Parse(const WChar* text) { Parse(ViewOf(text)); }
  void Parse(WStringView text);
  /// The number in UTF-8 text, read like wide text. Throws COvInvalidValueException for invalid UTF-8 too.
  static CBigInteger FromUtf8(std::string_view text);

  /// The digits without leading zeros, with "-" in front of a negative number other than zero.
  WString ToString() const;
  std::string ToUtf8() const;
  /// Appends what ToString returns, without allocating when `out` has the room.
  void AppendTo(WString& out) const;

  /// Makes the number positive.
  void Abs() noexcept { m_sign = 1; }
  CBigInteger GetAbs() const;
  /// Changes the sign, that of a zero too.
  void Negate() noexcept { m_sign = -m_sign; }
  CBigInteger GetNegative() const;
  /// Negates this object and returns it: `-x` changes x. GetNegative does not.
  // Deliberate: the interface has it in place.
  CBigInteger& operator-() noexcept;

  CBigInteger& operator+=(const CBigInteger& other) { return Add(other, other.m_sign); }
  CBigInteger& operator-=(const CBigInteger& other) { return Add(other, -other.m_sign); }
  CBigInteger& operator*=(const CBigInteger& other);
  /// Truncates towards zero. Throws COvInvalidValueException when `other` is zero.
  CBigInteger& operator/=(const CBigInteger& other);
  /// The remainder of the truncating division, with the sign of the dividend: -7 % 2 is -1, 7 % -2 is 1. Throws
  /// COvInvalidValueException when `other` is zero.
  CBigInteger& operator%=(const CBigInteger& other);

  friend CBigInteger operator+(CBigInteger a, const CBigInteger& b) { return std::move(a += b); }
  friend CBigInteger operator-(CBigInteger a, const CBigInteger& b) { return std::move(a -= b); }
  friend CBigInteger operator*(CBigInteger a, const CBigInteger& b) { return std::move(a *= b); }
  friend OVXMLLIB_API CBigInteger operator/(const CBigInteger& a, const CBigInteger& b);
  friend OVXMLLIB_API CBigInteger operator%(const CBigInteger& a, const CBigInteger& b);

  friend bool operator==(const CBigInteger& a, const CBigInteger& b) noexcept {
    return a.m_magnitude.Compare(b.m_magnitude) == 0 && (a.m_sign == b.m_sign || a.m_magnitude.IsZero());
  }
  /// The sign decides first, that of a zero too.
  friend bool operator<(const CBigInteger& a, const CBigInteger& b) noexcept { return a.IsBelow(b); }
  friend bool operator>(const CBigInteger& a, const CBigInteger& b) noexcept { return b.IsBelow(a); }
  friend bool operator<=(const CBigInteger& a, const CBigInteger& b) noexcept { return !b.IsBelow(a); }
  friend bool operator>=(const CBigInteger& a, const CBigInteger& b) noexcept { return !a.IsBelow(b); }

  /// Throws COvInvalidValueException where the value does not fit.
  explicit operator int() const;
  explicit operator long long() const;

  /// The greatest number whose square is not above this one. Throws COvInvalidValueException for a negative number
  /// and, as the interface has it, for zero.
  CBigInteger SquareRoot() const;

  /// Ten to the power of `exponent`.
  static CBigInteger Pow10(unsigned int exponent);

  /// Prints the number in ASCII.
  friend OVXMLLIB_API std::ostream& operator<<(std::ostream& out, const CBigInteger& value);

 private:
  friend class CDecimal;
  friend class DecimalParts;  // works on the halves of a number at a time
  friend struct std::hash<CBigInteger>;

  CBigInteger(DecimalLimbs magnitude, std::int32_t sign) noexcept : m_magnitude(std::move(magnitude)), m_sign(sign) {}
  constexpr CBigInteger(std::span<const DecimalLimbs::Limb> lasting, std::int32_t sign) noexcept
      : m_magnitude(lasting), m_sign(sign) {}

  // Negating the word, not the number, suits the least value of the type too.
  template <class T>
  static constexpr std::uint64_t MagnitudeOf(T value) noexcept {
    const auto word = static_cast<std::uint64_t>(value);
    return value < T{} ? std::uint64_t{0} - word : word;
  }

  bool IsZero() const noexcept { return m_magnitude.IsZero(); }
  bool IsBelow(const CBigInteger& other) const noexcept;
  // Adds the other with the sign given.
  CBigInteger& Add(const CBigInteger& other, std::int32_t sign);
  // Divides by a divisor other than zero; the remainder is returned.
  CBigInteger Divide(const CBigInteger& divisor);

  DecimalLimbs m_magnitude;
  std::int32_t m_sign = 1;  // or -1
};

}  // namespace OvXmlLib16

/// Equal numbers, both zeros among them, have equal hashes.
template <>
struct std::hash<OvXmlLib16::CBigInteger> {
  std::size_t operator()(const OvXmlLib16::CBigInteger& value) const noexcept {
    const std::size_t ofMagnitude = value.m_magnitude.Hash();
    return value.m_sign > 0 || value.IsZero() ? ofMagnitude : ~ofMagnitude;
  }
};
