// Finds what ends a run of JSON text.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::json_scan {

/// Whether a unit of a string does not stand for itself: the quotation mark, the backslash, and the line feed, which
/// drops out.
template <class Unit>
constexpr bool EndsRun(Unit unit) noexcept {
  return unit == '"' || unit == '\\' || unit == '\n';
}

/// The first unit from `at` on at which EndsRun, or `end`.
inline const WChar* FindRunEnd(const WChar* at, const WChar* end) noexcept {
  while (at != end && !EndsRun(*at)) ++at;
  return at;
}

/// The same for UTF-8, sixteen bytes at a time.
inline const char* FindRunEnd(const char* at, const char* end) noexcept {
  using Block [[gnu::vector_size(16)]] = signed char;
  using Halves [[gnu::vector_size(16)]] = std::uint64_t;
  constexpr std::ptrdiff_t kBlock = sizeof(Block);
  for (; end - at >= kBlock; at += kBlock) {
    Block bytes;
    std::memcpy(&bytes, at, sizeof bytes);
    const auto found = std::bit_cast<Halves>((bytes == '"') | (bytes == '\\') | (bytes == '\n'));
    if (found[0] != 0) return at + std::countr_zero(found[0]) / 8;
    if (found[1] != 0) return at + kBlock / 2 + std::countr_zero(found[1]) / 8;
  }
  while (at != end && !EndsRun(*at)) ++at;
  return at;
}

/// Whether UTF-8 text may hold a control character or a character from U+F000 to U+FFFF; true for few others.
inline bool MayHoldUnusual(std::string_view text) noexcept {
  constexpr auto each = [](std::uint64_t byte) { return byte * 0x0101010101010101u; };
  std::uint64_t found = 0;
  std::size_t i = 0;
  for (; text.size() - i >= sizeof found; i += sizeof found) {
    std::uint64_t word;
    std::memcpy(&word, text.data() + i, sizeof word);
    const std::uint64_t other = word ^ each(0xEF);
    // A byte that is less borrows into its top bit ("Bit Twiddling Hacks", Determine if a word has a byte less than n).
    found |= ((word - each(' ')) & ~word) | ((other - each(1)) & ~other);
  }
  bool holds = (found & each(0x80)) != 0;
  for (; i < text.size(); ++i) holds |= static_cast<unsigned char>(text[i]) < ' ' || text[i] == '\xEF';
  return holds;
}

}  // namespace OvXmlLib16::json_scan
