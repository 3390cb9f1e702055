#include "ovxmllib/document/NameHash.h"

#include <cstring>
#include <random>

namespace OvXmlLib16 {

namespace {

std::uint64_t ProcessSeed() {
  static const std::uint64_t seed = [] {
    std::random_device device;
    return (std::uint64_t{device()} << 32) | device();
  }();
  return seed;
}

// Folds the 128-bit product of two words: each bit of either reaches every bit of the result.
std::uint64_t Mix(std::uint64_t a, std::uint64_t b) noexcept {
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

std::uint64_t Load(const char* from, std::size_t bytes) noexcept {
  std::uint64_t word = 0;
  std::memcpy(&word, from, bytes);
  return word;
}

}  // namespace

std::uint64_t HashName(std::string_view name) {
  constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15u;  // 2^64 divided by the golden ratio
  const std::uint64_t seed = ProcessSeed();
  std::uint64_t hash = seed ^ name.size();
  const char* at = name.data();
  std::size_t left = name.size();
  for (; left >= 8; at += 8, left -= 8) hash = Mix(hash ^ Load(at, 8), kOdd);
  // A text of at least one word is ended by its last eight bytes, which a constant size makes one load.
  if (left == 0) return Mix(hash, seed | 1);
  const std::uint64_t tail = name.size() >= 8 ? Load(at + left - 8, 8) : Load(at, left);
  return Mix(Mix(hash ^ tail, kOdd), seed | 1);
}

}  // namespace OvXmlLib16
