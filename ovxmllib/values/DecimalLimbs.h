// The magnitude of a number of any size: what CBigInteger and CDecimal keep their digits in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// A natural number of any size, as decimal digits of which eighteen stand in a word. An implementation detail of
/// CBigInteger and CDecimal, public only because they hold it by value.
///
/// Up to 36 digits need no memory of their own. Reading, printing, shifting by digits, adding and comparing cost time
/// in proportion to the digits. Whatever needs memory may throw std::bad_alloc and then leaves the number unchanged,
/// unless said otherwise.
class OVXMLLIB_API DecimalLimbs {
 public:
  /// A word of digits, below 10^18.
  using Limb = std::uint64_t;

  /// Zero.
  constexpr DecimalLimbs() noexcept : DecimalLimbs(std::uint64_t{0}) {}
  /// The value of a machine word.
  constexpr explicit DecimalLimbs(std::uint64_t value) noexcept
      : m_inline{value % kBase, value / kBase},
        m_size(value == 0      ? 0u
               : value < kBase ? 1u
                               : 2u),
        m_capacity(kInlineLimbs) {}
  /// A number whose limbs, least significant first and the last one not zero, stand elsewhere and outlive the object.
  /// For constants, which must exist before anything else runs and never change.
  constexpr explicit DecimalLimbs(std::span<const Limb> lasting) noexcept
      : m_heap(const_cast<Limb*>(lasting.data())),
        m_size(static_cast<std::uint32_t>(lasting.size())),
        m_capacity(kBorrowed) {}
  DecimalLimbs(const DecimalLimbs& other) : m_size(other.m_size), m_capacity(kInlineLimbs) {
    if (other.m_capacity == kInlineLimbs) {
      std::memcpy(m_inline, other.m_inline, sizeof m_inline);
    } else {
      CopyLarge(other);
    }
  }
  /// Leaves zero behind.
  DecimalLimbs(DecimalLimbs&& other) noexcept { TakeFrom(other); }
  DecimalLimbs& operator=(const DecimalLimbs& other) {
    if (!IsInPlace() || !other.IsInPlace()) return AssignLarge(other);
    std::memcpy(m_inline, other.m_inline, sizeof m_inline);
    m_size = other.m_size;
    return *this;
  }
  DecimalLimbs& operator=(DecimalLimbs&& other) noexcept {
    if (this != &other) {
      Free();
      TakeFrom(other);
    }
    return *this;
  }
  ~DecimalLimbs() { Free(); }

  /// Ten to the given power.
  static DecimalLimbs PowerOfTen(std::size_t exponent);

  /// The number that the digits in `text` make, most significant first; whatever else stands there is passed over.
  void AssignDigits(WStringView text);
  /// The same for a text that is nothing but digits, a limb's at most. Returns false, and changes nothing, for others.
  bool AssignShort(WStringView text) noexcept;
  /// A number that fits a limb.
  void AssignLimb(Limb limb) noexcept {
    Free();
    m_inline[0] = limb;
    m_size = limb == 0 ? 0 : 1;
    m_capacity = kInlineLimbs;
  }
  /// Appends the digits, filled up with zeros in front to `width`; zero is "0" at least.
  void AppendTo(WString& out, std::size_t width = 1) const;

  bool IsZero() const noexcept { return m_size == 0; }
  /// Whether the digits stand in the object itself; copying one such number to another cannot fail.
  bool IsInPlace() const noexcept { return m_capacity == kInlineLimbs; }
  /// Whether the number fits a limb, and that limb.
  bool IsLimb() const noexcept { return m_size <= 1; }
  Limb ToLimb() const noexcept { return m_size == 0 ? 0 : Data()[0]; }
  /// The number of digits; 0 for zero.
  std::size_t DigitCount() const noexcept;
  /// How many zeros the number ends in; 0 for zero.
  std::size_t TrailingZeros() const noexcept;
  /// Whether the last `digits` digits, taken as a number, are more than half of ten to their number.
  bool EndsAboveHalf(std::size_t digits) const noexcept;
  /// The value modulo 2^64.
  std::uint64_t ToWord() const noexcept;
  /// For equal numbers the same.
  std::size_t Hash() const noexcept;
  /// Less than, equal to or greater than 0 as this number is to `other`.
  int Compare(const DecimalLimbs& other) const noexcept;

  void Add(const DecimalLimbs& other);
  /// `other` must not be greater.
  void Subtract(const DecimalLimbs& other) noexcept;
  /// `other` minus this number, which must not be greater.
  void SubtractFrom(const DecimalLimbs& other);
  static DecimalLimbs Multiply(const DecimalLimbs& a, const DecimalLimbs& b);
  /// Divides by `divisor`, which must not be zero, and returns the remainder.
  DecimalLimbs DivideBy(const DecimalLimbs& divisor);

  /// Times ten to the power of `digits`.
  void ShiftLeft(std::size_t digits);
  /// Drops the last `digits` digits.
  void ShiftRight(std::size_t digits) noexcept;
  /// Keeps only the last `digits` digits.
  void KeepLast(std::size_t digits) noexcept;

 private:
  static constexpr Limb kBase = 1'000'000'000'000'000'000;
  static constexpr std::uint32_t kInlineLimbs = 2;
  static constexpr std::uint32_t kBorrowed = 0;

  const Limb* Data() const noexcept { return m_capacity == kInlineLimbs ? m_inline : m_heap; }
  Limb* Data() noexcept { return m_capacity == kInlineLimbs ? m_inline : m_heap; }
  std::span<const Limb> View() const noexcept { return {Data(), m_size}; }
  std::span<Limb> Run() noexcept { return {Data(), m_size}; }

  // Makes `size` limbs of it, of which the first keep their values and the others are zero.
  void Extend(std::size_t size);
  // Makes `size` limbs of it, with undefined values.
  void Renew(std::size_t size);
  // Takes the zeros off the high end.
  void Trim() noexcept;

  // For a divisor of several limbs.
  DecimalLimbs DivideByLonger(const DecimalLimbs& divisor);

  void Free() noexcept {
    if (m_capacity > kInlineLimbs) delete[] m_heap;
  }
  DecimalLimbs& AssignLarge(const DecimalLimbs& other);
  // For a new object.
  void CopyLarge(const DecimalLimbs& other);
  // Whatever memory this object had is no longer its own.
  void TakeFrom(DecimalLimbs& other) noexcept {
    std::memcpy(m_inline, other.m_inline, sizeof m_inline);  // whichever member it is
    m_size = std::exchange(other.m_size, 0u);
    m_capacity = std::exchange(other.m_capacity, kInlineLimbs);
  }

  union {
    Limb m_inline[kInlineLimbs];
    Limb* m_heap;  // owned unless m_capacity is kBorrowed
  };
  std::uint32_t m_size;      // the top limb is not zero
  std::uint32_t m_capacity;  // in limbs
};

}  // namespace OvXmlLib16
