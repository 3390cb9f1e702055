// Copying of text that mostly goes out as it is.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::plainrun {

/// Eight code units. As signed numbers, those from U+8000 on are below all others.
using Block [[gnu::vector_size(16)]] = std::int16_t;
inline constexpr std::size_t kBlock = sizeof(Block) / sizeof(WChar);

constexpr Block Each(std::int16_t c) noexcept { return Block{c, c, c, c, c, c, c, c}; }

/// Whether no unit is marked in the result of comparisons.
inline bool IsNone(const Block& found) noexcept {
  const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(found);
  return (halves[0] | halves[1]) == 0;
}

namespace detail {

template <class IsPlain>
bool CopyBlock(WChar* out, const WChar* from, const IsPlain& isPlain) noexcept {
  Block units;
  std::memcpy(&units, from, sizeof units);
  if (!isPlain(units)) return false;
  std::memcpy(out, &units, sizeof units);
  return true;
}

// Four to seven units: the first four and the last four, which may overlap, make one block.
template <class IsPlain>
bool CopyShort(WChar* out, WStringView text, const IsPlain& isPlain) noexcept {
  using Halves [[gnu::vector_size(16)]] = std::uint64_t;
  const std::size_t tail = text.size() - kBlock / 2;
  std::uint64_t first, last;
  std::memcpy(&first, text.data(), sizeof first);
  std::memcpy(&last, text.data() + tail, sizeof last);
  // Put together in a register: through memory, the load would have to wait for both stores.
  if (!isPlain(std::bit_cast<Block>(Halves{first, last}))) return false;
  std::memcpy(out, &first, sizeof first);
  std::memcpy(out + tail, &last, sizeof last);
  return true;
}

}  // namespace detail

/// Copies the blocks that `text` begins with and for which `isPlain` is true, and returns their length, which is that
/// of the text when its end is plain too. Nothing is copied of a text of less than four units. `out` has room for all.
template <class IsPlain>
std::size_t CopyBlocks(WChar* out, WStringView text, const IsPlain& isPlain) noexcept {
  const std::size_t length = text.size();
  const WChar* const from = text.data();
  if (length < kBlock) return length >= kBlock / 2 && detail::CopyShort(out, text, isPlain) ? length : 0;
  std::size_t i = 0;
  while (length - i >= kBlock && detail::CopyBlock(out + i, from + i, isPlain)) i += kBlock;
  // The end by one more step over the last units, which may go over some for the second time.
  const std::size_t last = length - kBlock;
  return length - i < kBlock && detail::CopyBlock(out + last, from + last, isPlain) ? length : i;
}

}  // namespace OvXmlLib16::plainrun
