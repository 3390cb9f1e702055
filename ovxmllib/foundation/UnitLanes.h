// Four UTF-16 code units in a word, looked at lane by lane.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::lanes {

inline constexpr std::size_t kLanes = 4;
inline constexpr std::uint64_t kOnes = 0x0001'0001'0001'0001, kTops = kOnes << 15;

inline std::uint64_t Load(const WChar* text) noexcept {
  std::uint64_t units;
  std::memcpy(&units, text, sizeof units);
  return units;
}

/// Not 0 when one of the units is below `limit`, which is at most 0x8000: a subtraction borrows from the top bit of a
/// lane that is too small ("Bit Twiddling Hacks", Determine if a word has a byte less than n).
constexpr std::uint64_t Below(std::uint64_t units, WChar limit) noexcept {
  return (units - kOnes * limit) & ~units & kTops;
}

/// What `find`, which looks at kLanes places from the one it is given, finds at the first `count` places, at least
/// kLanes. The last of them may be looked at twice.
template <class Find>
std::uint64_t FindInWords(std::size_t count, const Find& find) noexcept {
  std::uint64_t found = find(count - kLanes);
  for (std::size_t i = 0; i + kLanes < count; i += kLanes) found |= find(i);
  return found;
}

}  // namespace OvXmlLib16::lanes
