// The XML Schema type decimal: fixed-point numbers of any size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/BigInteger.h"

namespace OvXmlLib16 {

class DecimalParts;

/// A decimal number of any size, held as a whole part, a fraction and the number of decimal places of the fraction.
///
/// Sums and differences are exact. Reading, multiplying and dividing keep at most GetMaxDecimalPlaces() places behind
/// the point; what is cut off there rounds to the nearest, an exact half being dropped (0.25 to one place is 0.2, 0.26
/// is 0.3, both likewise when negative). ToString with a number of places rounds halves away from zero instead.
///
/// Both parts carry the sign, and zeros have one too (see CBigInteger). Equality passes over the sign of a zero; `<`,
/// `>`, `<=` and `>=` compare the whole parts, then the fractions, and see it: `CDecimal("-0") < CDecimal("0")` holds,
/// and so does `CDecimal("-5") < CDecimal(-5)`, since only a text gives its sign to the fraction zero.
///
/// Up to 18 digits on either side of the point need no memory of their own. Other operations may throw std::bad_alloc;
/// whatever throws leaves the object unchanged. Values are independent of each other: each may be used on a thread of
/// its own.
class OVXMLLIB_API CDecimal {
 public:
  /// Zero.
  CDecimal() noexcept = default;
  template <MachineInteger T>
  CDecimal(T value) noexcept : m_number{{CBigInteger::MagnitudeOf(value)}, 0, 1, SignOf(value < T{}), 1} {}
  template <CharacterOrBool T>
  CDecimal(T) = delete;
  CDecimal(const CBigInteger& value);
  /// The value rounded to thirteen places, which hides the binary error of doubles of ordinary size: 0.1 gives 0.1.
  /// Throws COvInvalidValueException for NaN and infinities.
  CDecimal(double value);
  /// Reads a number: digits with a point among them or none, then an exponent or none ("12", "-.5", "5.", "1.7E+308").
  ///
  /// White space is passed over, except behind the exponent sign; a sign may stand anywhere in front of the point and
  /// the last one counts; without digits the number is zero. So "1 2.3 4" is 12.34 and "1-2" is -12. Null counts as
  /// empty. The time it takes is in proportion to the text.
  ///
  /// Throws COvInvalidValueException, naming the position in code units from 0, at any other character, and at the
  /// digit by which the exponent leaves the range of -1000 to 1000.
  CDecimal(const WChar* text) { Parse(ViewOf(text)); }
  explicit CDecimal(WStringView text) { Parse(text); }
  CDecimal(const CDecimal& other) : m_number(other.m_number) {
    if (IsLong()) CopyLong();
  }
  /// Leaves zero behind.
  CDecimal(CDecimal&& other) noexcept : m_number(std::exchange(other.m_number, Number())) {}
  virtual ~CDecimal() {
    if (IsLong()) FreeLong();
  }

  CDecimal& operator=(const CDecimal& other) {
    if (IsLong() || other.IsLong()) return *this = CDecimal(other);
    m_number = other.m_number;
    return *this;
  }
  /// Leaves zero behind.
  CDecimal& operator=(CDecimal&& other) noexcept {
    CDecimal taken(std::move(other));
    std::swap(m_number, taken.m_number);
    return *this;
  }
  /// The number in UTF-8 text, read like wide text. Throws COvInvalidValueException for invalid UTF-8 too.
  static CDecimal FromUtf8(std::string_view text);

  /// All digits, without an exponent, "0" in front of the point where the whole part is zero, and without the point
  /// where the fraction is zero: "-0.5", "12.05", "12". A negative zero prints "0".
  WString ToString() const;
  std::string ToUtf8() const;
  /// Appends what ToString returns, without allocating when `out` has the room.
  void AppendTo(WString& out) const;

  /// Rounded to `places` decimal places, halves away from zero, and always with a point: half a unit of the last place
  /// is added and the sum cut off. So 1.5 in two places is "1.50" and 12.4 in none is "12.". Zeros at the end of the
  /// sum itself go first: 1.995 in two places is "2.0". The half is subject to GetMaxDecimalPlaces(): with as many
  /// places or more nothing is added, and the digits come as they are. A negative zero prints its sign. `places` below
  /// 0 count as 0; there is no upper limit, and the text is never longer than the digits that there are.
  WString ToString(std::int32_t places) const;
  /// Appends what ToString of so many places returns.
  void AppendTo(WString& out, std::int32_t places) const;

  /// The nearest whole number, an exact half being dropped. Throw COvOverFlowException where that does not fit.
  std::int32_t ToLong() const;
  std::int64_t ToLongLong() const;
  /// The nearest double; throws COvOverFlowException when the whole part is beyond CBigInteger::MAX_DOUBLE or
  /// MIN_DOUBLE.
  double ToDouble() const;
  /// The nearest whole number, an exact half being dropped.
  CBigInteger ToBigInteger() const;

  /// What stands in front of the point, with the number's sign, which a zero keeps.
  CBigInteger GetIntegerPart() const;
  /// The fraction in units of ten to the power -GetFractionDivider(): 5 for 12.05, of which the divider is 2.
  CBigInteger GetFractionPart() const;
  /// The number of decimal places; 1 for a whole number.
  std::int32_t GetFractionDivider() const noexcept;

  /// Changes the sign of both parts, zeros among them.
  void Negate() noexcept;
  CDecimal GetNegative() const;

  CDecimal& operator+=(const CDecimal& other) { return *this = *this + other; }
  CDecimal& operator-=(const CDecimal& other) { return *this = *this - other; }
  CDecimal& operator*=(const CDecimal& other) { return *this = *this * other; }
  CDecimal& operator/=(const CDecimal& other) { return *this = *this / other; }
  CDecimal& operator++() { return *this += 1; }
  CDecimal& operator--() { return *this -= 1; }
  CDecimal operator++(int);
  CDecimal operator--(int);

  friend OVXMLLIB_API CDecimal operator+(const CDecimal& a, const CDecimal& b);
  friend OVXMLLIB_API CDecimal operator-(const CDecimal& a, const CDecimal& b);
  friend OVXMLLIB_API CDecimal operator*(const CDecimal& a, const CDecimal& b);
  /// The quotient is cut off two places behind the last that is kept, then rounded. Throws COvInvalidValueException
  /// when `b` is zero.
  friend OVXMLLIB_API CDecimal operator/(const CDecimal& a, const CDecimal& b);

  friend OVXMLLIB_API bool operator==(const CDecimal& a, const CDecimal& b);
  friend OVXMLLIB_API bool operator<(const CDecimal& a, const CDecimal& b);
  friend OVXMLLIB_API bool operator<=(const CDecimal& a, const CDecimal& b);
  friend bool operator>(const CDecimal& a, const CDecimal& b) { return b < a; }
  friend bool operator>=(const CDecimal& a, const CDecimal& b) { return b <= a; }

  /// The most decimal places that reading, multiplying and dividing keep, in the whole process; 30 unless set.
  /// Arithmetic takes a number below 0 as 0 and one above 1,000,000 as that. May be called on any thread.
  static std::int32_t GetMaxDecimalPlaces() noexcept;
  static void SetMaxDecimalPlaces(std::int32_t places) noexcept;

  /// Prints the number in ASCII.
  friend OVXMLLIB_API std::ostream& operator<<(std::ostream& out, const CDecimal& value);

 private:
  friend struct std::hash<CDecimal>;
  friend struct OvVariant;

  // Most numbers are two words; others lie on the heap.
  struct Number {
    union {
      std::uint64_t whole = 0;
      DecimalParts* parts;  // owned
    };
    std::uint64_t fraction = 0;  // below ten to the power `places`
    std::int32_t places = 1;     // at most 18; kLong where there are parts
    std::int8_t wholeSign = 1, fractionSign = 1;
  };
  static constexpr std::int32_t kLong = -1;

  explicit CDecimal(DecimalParts&& parts);

  static constexpr std::int8_t SignOf(bool isNegative) noexcept { return isNegative ? -1 : 1; }
  bool IsLong() const noexcept { return m_number.places == kLong; }
  void CopyLong();
  void FreeLong() noexcept;
  DecimalParts ToParts() const;

  void Parse(WStringView text);
  bool ParseShort(WStringView text) noexcept;
  bool AppendShort(WString& out, std::int32_t places) const;
  std::size_t Hash() const;

  Number m_number;
};

}  // namespace OvXmlLib16

/// Equal numbers have equal hashes.
template <>
struct std::hash<OvXmlLib16::CDecimal> {
  std::size_t operator()(const OvXmlLib16::CDecimal& value) const { return value.Hash(); }
};
