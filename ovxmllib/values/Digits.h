// Decimal digits of machine words: how values of all types read and write them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::digits {

/// The most digits that a word surely holds, whichever they are.
inline constexpr std::size_t kSafe = 18;
/// The most digits that a word has.
inline constexpr std::size_t kMost = 20;

constexpr bool IsDigit(WChar c) noexcept { return c >= u'0' && c <= u'9'; }

/// 10^0 to 10^18.
inline constexpr auto kPowersOfTen = [] {
  std::array<std::uint64_t, kSafe + 1> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

/// Both digits of every number below 100.
inline constexpr auto kPairs = [] {
  std::array<std::array<WChar, 2>, 100> pairs{};
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    pairs[i] = {static_cast<WChar>(u'0' + i / 10), static_cast<WChar>(u'0' + i % 10)};
  }
  return pairs;
}();

/// Writes two digits, of a `value` below 100.
inline void PutPair(WChar* out, std::uint64_t value) noexcept {
  std::memcpy(out, kPairs[value].data(), sizeof kPairs[0]);
}

/// Writes the last `count` digits so that they end at `end`, and returns where they begin.
inline WChar* PutLast(WChar* end, std::uint64_t value, std::size_t count) noexcept {
  for (; count >= 2; count -= 2, value /= 100) PutPair(end -= 2, value % 100);
  if (count != 0) *--end = static_cast<WChar>(u'0' + value % 10);
  return end;
}

/// Writes the number without leading zeros, "0" for zero, so that it ends at `end`, and returns where it begins.
inline WChar* PutNumber(WChar* end, std::uint64_t value) noexcept {
  for (; value >= 100; value /= 100) PutPair(end -= 2, value % 100);
  if (value < 10) {
    *--end = static_cast<WChar>(u'0' + value);
  } else {
    PutPair(end -= 2, value);
  }
  return end;
}

/// The number that the digits from `at` on make, which is moved behind them. More than kSafe may wrap around.
inline std::uint64_t Take(const WChar*& at, const WChar* end) noexcept {
  std::uint64_t value = 0;
  for (; at != end; ++at) {
    const std::uint64_t digit = *at - std::uint64_t{u'0'};
    if (digit > 9) break;
    value = value * 10 + digit;
  }
  return value;
}

}  // namespace OvXmlLib16::digits
