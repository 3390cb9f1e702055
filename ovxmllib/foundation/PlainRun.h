// Copying of text that mostly goes out as it is, as UTF-16 or as UTF-8.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "ovxmllib/foundation/Unicode.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::plainrun {

/// Eight code units. As signed numbers, those from U+8000 on are below all others.
using Block [[gnu::vector_size(16)]] = std::int16_t;
inline constexpr std::size_t kBlock = sizeof(Block) / sizeof(WChar);
/// Sixteen bytes of UTF-8. As signed numbers, those of characters from U+0080 on are below all others.
using Bytes [[gnu::vector_size(16)]] = std::int8_t;

/// The same character in all places of a Block or of Bytes.
template <class Units>
Units Each(char c) noexcept {
  return Units{} + static_cast<std::remove_reference_t<decltype(Units{}[0])>>(c);
}

/// Whether nothing is marked in the result of comparisons.
template <class Units>
bool IsNone(const Units& found) noexcept {
  using Words [[gnu::vector_size(16)]] = std::uint64_t;
  const auto words = std::bit_cast<Words>(found);
  return (words[0] | words[1]) == 0;
}

/// What PutEscaped asks of its rules. A unit that FindOdd does not mark, or for which IsPlain is true, goes out as it
/// is. FindOdd is asked of Blocks and of Bytes, and marks negative numbers.
///
///     Units FindOdd(const Units&) const;                     marks the units that do not simply go out
///     bool IsPlain(WChar) const;                             the same for one unit below U+0080
///     WStringView Replace(WStringView text, size_t i) const  what such a unit becomes, ASCII, or throws
///     bool IsAllowed(WChar) const;                           of a unit from U+0080 on that is no surrogate
///     void Refuse(WStringView text, size_t i) const          throws for one that is not, and for half a pair
///
/// What one unit becomes has at most this many, bytes or units.
inline constexpr std::size_t kMostPerUnit = 6;

namespace detail {

inline Block Load(const WChar* from) noexcept {
  Block units;
  std::memcpy(&units, from, sizeof units);
  return units;
}

// Four units and four units make one block. Put together in a register: through memory, the load would have to wait for
// both stores.
inline Block LoadHalves(const WChar* first, const WChar* second) noexcept {
  using Halves [[gnu::vector_size(16)]] = std::uint64_t;
  std::uint64_t ofFirst, ofSecond;
  std::memcpy(&ofFirst, first, sizeof ofFirst);
  std::memcpy(&ofSecond, second, sizeof ofSecond);
  return std::bit_cast<Block>(Halves{ofFirst, ofSecond});
}

template <class Part, class Units>
void StorePart(void* out, const Units& units, std::size_t index) noexcept {
  using Parts [[gnu::vector_size(16)]] = Part;
  const Part part = std::bit_cast<Parts>(units)[index];
  std::memcpy(out, &part, sizeof part);
}

// The low byte of each unit.
inline Bytes Narrowed(const Block& a, const Block& b) noexcept {
  const auto ofA = std::bit_cast<Bytes>(a), ofB = std::bit_cast<Bytes>(b);
  if constexpr (std::endian::native == std::endian::little) {
    return __builtin_shufflevector(ofA, ofB, 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30);
  } else {
    return __builtin_shufflevector(ofA, ofB, 1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23, 25, 27, 29, 31);
  }
}

// Whether all sixteen units go out as they are, and then as which bytes.
template <class Rules>
bool IsPlain(const Block& a, const Block& b, const Rules& rules, Bytes& bytes) noexcept {
  const auto notAscii = std::bit_cast<Bytes>((a | b) & std::int16_t{-0x80});
  bytes = Narrowed(a, b);
  return IsNone(rules.FindOdd(bytes) | notAscii);
}

template <class Rules>
bool IsPlain(const Block& units, const Rules& rules) noexcept {
  return IsNone(rules.FindOdd(units));
}

// Each of the next copies the plain units that a text begins with, and returns their number, which is that of the text
// when its end is plain too; in steps, of which one that fails copies nothing, and of which the last may go over some
// units for the second time.

template <class Unit, class Rules>
std::size_t CopyFew(Unit* out, const WChar* from, std::size_t length, const Rules& rules) noexcept {
  std::size_t i = 0;
  for (; i < length && from[i] < 0x80 && rules.IsPlain(from[i]); ++i) out[i] = static_cast<Unit>(from[i]);
  return i;
}

template <class Rules>
inline std::size_t CopyPlain(WChar* out, const WChar* from, std::size_t length, const Rules& rules) noexcept {
  constexpr std::size_t kHalf = kBlock / 2;
  if (length < kBlock) {
    if (length < kHalf) return CopyFew(out, from, length, rules);
    const Block units = LoadHalves(from, from + length - kHalf);
    if (!IsPlain(units, rules)) return 0;
    StorePart<std::uint64_t>(out, units, 0);
    StorePart<std::uint64_t>(out + length - kHalf, units, 1);
    return length;
  }
  const auto copyBlock = [&](std::size_t at) {
    const Block units = Load(from + at);
    if (!IsPlain(units, rules)) return false;
    std::memcpy(out + at, &units, sizeof units);
    return true;
  };
  std::size_t i = 0;
  while (length - i >= kBlock && copyBlock(i)) i += kBlock;
  return length - i < kBlock && copyBlock(length - kBlock) ? length : i;
}

template <class Rules>
[[gnu::always_inline]] inline std::size_t CopyPlain(char* out, const WChar* from, std::size_t length,
                                                    const Rules& rules) noexcept {
  constexpr std::size_t kHalf = kBlock / 2;
  constexpr std::size_t kTwo = 2 * kBlock;
  Bytes bytes;
  if (length < kBlock) {
    if (length < kHalf) return CopyFew(out, from, length, rules);
    const Block units = LoadHalves(from, from + length - kHalf);
    if (!IsPlain(units, units, rules, bytes)) return 0;
    StorePart<std::uint32_t>(out, bytes, 0);
    StorePart<std::uint32_t>(out + length - kHalf, bytes, 1);
    return length;
  }
  if (length < kTwo) {
    if (!IsPlain(Load(from), Load(from + length - kBlock), rules, bytes)) return 0;
    StorePart<std::uint64_t>(out, bytes, 0);
    StorePart<std::uint64_t>(out + length - kBlock, bytes, 1);
    return length;
  }
  const auto copyTwo = [&](std::size_t at) {
    if (!IsPlain(Load(from + at), Load(from + at + kBlock), rules, bytes)) return false;
    std::memcpy(out + at, &bytes, sizeof bytes);
    return true;
  };
  std::size_t i = 0;
  while (length - i >= kTwo && copyTwo(i)) i += kTwo;
  return length - i < kTwo && copyTwo(length - kTwo) ? length : i;
}

inline WChar* PutPoint(WChar* out, WStringView units) noexcept { return std::copy(units.begin(), units.end(), out); }

inline char* PutPoint(char* out, WStringView units) noexcept {
  const WChar c = units.front();
  if (units.size() == 2) return out + unicode::WideToUtf8(units, reinterpret_cast<unsigned char*>(out)).written;
  if (c >= 0x800) *out++ = static_cast<char>(0xE0 | (c >> 12));
  *out++ = static_cast<char>(c >= 0x800 ? 0x80 | ((c >> 6) & 0x3F) : 0xC0 | (c >> 6));
  *out++ = static_cast<char>(0x80 | (c & 0x3F));
  return out;
}

// Writes the character at `i`, which is not plain ASCII, and moves on behind it.
template <class Unit, class Rules>
Unit* PutCharacter(Unit* out, WStringView text, std::size_t& i, const Rules& rules) {
  const WChar c = text[i];
  if (c < 0x80) {
    for (const WChar unit : rules.Replace(text, i)) *out++ = static_cast<Unit>(unit);
    ++i;
    return out;
  }
  const std::size_t units = unicode::IsSurrogate(c) ? 2 : 1;
  const bool isSound = units == 1
                           ? rules.IsAllowed(c)
                           : unicode::IsHighSurrogate(c) && i + 1 < text.size() && unicode::IsLowSurrogate(text[i + 1]);
  if (!isSound) rules.Refuse(text, i);
  out = PutPoint(out, text.substr(i, units));
  i += units;
  return out;
}

// Where plain units have ended. Out of line, so that texts which are plain as a whole do not pay for its registers.
template <class Unit, class Rules>
[[gnu::noinline]] Unit* PutRest(Unit* out, WStringView text, std::size_t i, std::size_t end, const Rules& rules) {
  while (true) {
    for (const std::size_t next = std::min(end, i + 2 * kBlock); i < next;) {
      const WChar c = text[i];
      if (c < 0x80 && rules.IsPlain(c)) {
        *out++ = static_cast<Unit>(c);
        ++i;
      } else {
        out = PutCharacter(out, text, i, rules);
      }
    }
    const std::size_t copied = CopyPlain(out, text.data() + i, end - i, rules);
    out += copied;
    i += copied;
    if (i == end) return out;
  }
}

}  // namespace detail

/// Writes the part of `text` from `begin` to `end`, which cuts no pair of surrogates, by the rules to `out`, which has
/// room for kMostPerUnit times its length, and returns the end of that. What the rules throw leaves.
template <class Unit, class Rules>
Unit* PutEscaped(Unit* out, WStringView text, std::size_t begin, std::size_t end, const Rules& rules) {
  const std::size_t copied = detail::CopyPlain(out, text.data() + begin, end - begin, rules);
  if (copied == end - begin) return out + copied;
  return detail::PutRest(out + copied, text, begin + copied, end, rules);
}

/// The end of the piece of `text` from `begin` on that has `wanted` units, or one less so that no pair is cut.
inline std::size_t EndOfPiece(WStringView text, std::size_t begin, std::size_t wanted) noexcept {
  if (text.size() - begin <= wanted) return text.size();
  return begin + wanted - (unicode::IsHighSurrogate(text[begin + wanted - 1]) ? 1 : 0);
}

}  // namespace OvXmlLib16::plainrun
