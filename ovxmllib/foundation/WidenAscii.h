// ASCII text to UTF-16, eight bytes at a time: wide enough that text runs at memory speed, small enough for short
// values.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::unicode {

/// The bytes that the functions below look at and widen at once.
inline constexpr std::size_t kStride = 8;

constexpr std::uint64_t EachByte(std::uint64_t byte) noexcept { return byte * 0x0101010101010101u; }

/// \name Tests of eight bytes at once
/// \{
constexpr bool IsAscii(std::uint64_t block) noexcept { return (block & EachByte(0x80)) == 0; }
/// ASCII of which none is U+000D: a zero byte of `block ^ CR` borrows into its top bit.
constexpr bool IsAsciiWithoutCr(std::uint64_t block) noexcept {
  const std::uint64_t differs = block ^ EachByte('\r');
  return ((block | (differs - EachByte(1))) & EachByte(0x80)) == 0;
}
/// \}

template <class Word>
Word LoadWord(const unsigned char* from) noexcept {
  Word word;
  std::memcpy(&word, from, sizeof word);
  return word;
}

/// Widens eight bytes, which compilers do not make of a loop over memory that may overlap.
inline void WidenBlock(const unsigned char* data, WChar* out) noexcept {
  using ByteBlock [[gnu::vector_size(kStride)]] = unsigned char;
  using UnitBlock [[gnu::vector_size(2 * kStride)]] = std::uint16_t;
  ByteBlock bytes;
  std::memcpy(&bytes, data, sizeof bytes);
  const UnitBlock units = __builtin_convertvector(bytes, UnitBlock);
  std::memcpy(out, &units, sizeof units);
}

/// Widens four bytes.
inline void WidenHalf(std::uint32_t bytes, WChar* out) noexcept {
  std::uint64_t units = (bytes | std::uint64_t{bytes} << 16) & 0x0000FFFF0000FFFFu;
  units = (units | units << 8) & 0x00FF00FF00FF00FFu;
  std::memcpy(out, &units, sizeof units);
}

/// Widens text all of whose bytes pass the test; false, with `out` half written, when one does not. `out` has room for
/// `length` units. The end of the text is done by one more step over its last bytes, which may go over some for the
/// second time. U+0020 passes every test.
template <bool (*kPasses)(std::uint64_t) noexcept>
bool WidenIf(const unsigned char* data, std::size_t length, WChar* out) noexcept {
  constexpr std::size_t kHalf = kStride / 2;
  if (length >= kStride) {
    for (std::size_t i = 0; length - i >= kStride; i += kStride) {
      if (!kPasses(LoadWord<std::uint64_t>(data + i))) return false;
      WidenBlock(data + i, out + i);
    }
    if (!kPasses(LoadWord<std::uint64_t>(data + length - kStride))) return false;
    WidenBlock(data + length - kStride, out + length - kStride);
    return true;
  }
  if (length >= kHalf) {
    const auto first = LoadWord<std::uint32_t>(data), last = LoadWord<std::uint32_t>(data + length - kHalf);
    if (!kPasses(first | std::uint64_t{last} << 32)) return false;
    WidenHalf(first, out);
    WidenHalf(last, out + length - kHalf);
    return true;
  }
  std::uint64_t all = EachByte(' ');
  for (std::size_t i = 0; i < length; ++i) {
    all = all << 8 | data[i];
    out[i] = data[i];
  }
  return kPasses(all);
}

/// The bytes that the next function goes by.
inline constexpr std::size_t kWideStride = 16;

/// `length` rounded up to whole strides.
constexpr std::size_t InWideStrides(std::size_t length) noexcept {
  return (length + kWideStride - 1) / kWideStride * kWideStride;
}

/// Widens text that is ASCII without controls; false, with `out` half written, when it is not. For text whose length
/// nobody can foresee: there is one branch to sixteen bytes. Both `data` and `out` have InWideStrides(length), not 0,
/// to read and to write; what is behind the text does not count.
inline bool WidenPlainByStrides(const unsigned char* data, std::size_t length, WChar* out) noexcept {
  using SignedBytes [[gnu::vector_size(kWideStride)]] = signed char;
  using ByteBlock [[gnu::vector_size(kWideStride)]] = unsigned char;
  using UnitBlock [[gnu::vector_size(2 * kWideStride)]] = std::uint16_t;
  using Halves [[gnu::vector_size(kWideStride)]] = std::uint64_t;
  // From a place in it on, as many bytes count as are left of the text.
  static constexpr auto kCounting = [] {
    std::array<unsigned char, 2 * kWideStride> flags{};
    std::fill_n(flags.begin(), kWideStride, static_cast<unsigned char>(0xFF));
    return flags;
  }();
  for (std::size_t i = 0;; i += kWideStride) {
    ByteBlock bytes, counts;
    const std::size_t left = length - i;
    std::memcpy(&bytes, data + i, sizeof bytes);
    std::memcpy(&counts, kCounting.data() + kWideStride - std::min(left, kWideStride), sizeof counts);
    const UnitBlock units = __builtin_convertvector(bytes, UnitBlock);
    std::memcpy(out + i, &units, sizeof units);
    // Above U+007F bytes are negative.
    const auto fails = reinterpret_cast<Halves>(reinterpret_cast<SignedBytes>(bytes) < SignedBytes{} + ' ') &
                       reinterpret_cast<Halves>(counts);
    if ((fails[0] | fails[1]) != 0) return false;
    if (left <= kWideStride) return true;
  }
}

}  // namespace OvXmlLib16::unicode
