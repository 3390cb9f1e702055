// Digits of dates and durations: reading them from text, writing them to a buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/Digits.h"

namespace OvXmlLib16::datetime {

using digits::IsDigit;

/// Walks over text of a fixed shape. A character that does not fit shows in IsGood at the end; that the text is long
/// enough is the caller's care.
class ShapeReader {
 public:
  explicit ShapeReader(WStringView text) noexcept : m_next(text.data()) {}

  /// Two digits.
  unsigned Pair() noexcept {
    const unsigned tens = *m_next++ - unsigned{u'0'}, ones = *m_next++ - unsigned{u'0'};
    m_isGood &= (tens <= 9) & (ones <= 9);
    return tens * 10 + ones;
  }
  void Expect(WChar c) noexcept { m_isGood &= *m_next++ == c; }
  bool IsGood() const noexcept { return m_isGood; }

 private:
  const WChar* m_next;
  bool m_isGood = true;
};

/// Milli-, micro- and nanoseconds beside each other.
struct Fraction {
  std::uint16_t milli = 0, micro = 0, nano = 0;
};

inline constexpr std::size_t kMaxFractionDigits = 9;

/// Reads the digits that `text` begins with and returns how many they are; kMaxFractionDigits + 1, with nothing stored,
/// for more than that.
inline std::size_t ReadFraction(WStringView text, Fraction& fraction) noexcept {
  std::uint32_t value = 0;
  std::size_t count = 0;
  for (; count < text.size() && IsDigit(text[count]); ++count) {
    if (count == kMaxFractionDigits) return count + 1;
    value = value * 10 + (text[count] - u'0');
  }
  constexpr std::uint32_t kPowers[] = {1'000'000'000, 100'000'000, 10'000'000, 1'000'000, 100'000,
                                       10'000,        1'000,       100,        10,        1};
  value *= kPowers[count];
  fraction.milli = static_cast<std::uint16_t>(value / 1'000'000);
  fraction.micro = static_cast<std::uint16_t>(value / 1000 % 1000);
  fraction.nano = static_cast<std::uint16_t>(value % 1000);
  return count;
}

// Each Put function writes at `out` and returns where it ended.

/// `value` below 100 in two digits.
inline WChar* PutPair(WChar* out, unsigned value) noexcept {
  digits::PutPair(out, value);
  return out + 2;
}

/// Without leading zeros; digits::kMost at most.
inline WChar* PutNumber(WChar* out, std::uint64_t value) noexcept {
  WChar number[digits::kMost];
  WChar* const end = number + digits::kMost;
  const WChar* const first = digits::PutNumber(end, value);
  const auto count = static_cast<std::size_t>(end - first);
  std::memcpy(out, first, count * sizeof(WChar));
  return out + count;
}

/// In at least two digits.
inline WChar* PutTwo(WChar* out, unsigned value) noexcept {
  return value < 100 ? PutPair(out, value) : PutNumber(out, value);
}

/// In at least three digits.
inline WChar* PutThree(WChar* out, unsigned value) noexcept {
  if (value >= 1000) return PutNumber(out, value);
  *out++ = static_cast<WChar>(u'0' + value / 100);
  return PutPair(out, value % 100);
}

/// In at least four digits.
inline WChar* PutFour(WChar* out, unsigned value) noexcept {
  return value < 10000 ? PutPair(PutPair(out, value / 100), value % 100) : PutNumber(out, value);
}

/// "." and the digits without zeros at the end; nothing when all are 0. 16 units at most.
inline WChar* PutFraction(WChar* out, const Fraction& fraction) noexcept {
  if ((fraction.milli | fraction.micro | fraction.nano) == 0) return out;
  *out++ = u'.';
  out = PutThree(out, fraction.milli);
  if ((fraction.micro | fraction.nano) != 0) out = PutThree(out, fraction.micro);
  if (fraction.nano != 0) out = PutThree(out, fraction.nano);
  while (out[-1] == u'0') --out;
  return out;
}

}  // namespace OvXmlLib16::datetime
