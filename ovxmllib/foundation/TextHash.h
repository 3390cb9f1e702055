// The hash of the tables that are filled from documents.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace OvXmlLib16 {

namespace hash_detail {

// Folds the 128-bit product of two words: each bit of either reaches every bit of the result.
inline std::uint64_t Mix(std::uint64_t a, std::uint64_t b) noexcept {
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

inline std::uint64_t Load(const char* from, std::size_t bytes) noexcept {
  std::uint64_t word = 0;
  std::memcpy(&word, from, bytes);
  return word;
}

}  // namespace hash_detail

/// A number that is drawn once for the process. With it in the hash no document can be made to collide.
std::uint64_t GetHashSeed();

/// The hash of `length` bytes. Results are good for this process only.
inline std::uint64_t HashBytes(const void* bytes, std::size_t length, std::uint64_t seed) noexcept {
  using namespace hash_detail;
  constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15u;  // 2^64 divided by the golden ratio
  std::uint64_t hash = seed ^ length;
  const char* at = static_cast<const char*>(bytes);
  std::size_t left = length;
  for (; left >= 8; at += 8, left -= 8) hash = Mix(hash ^ Load(at, 8), kOdd);
  // A text of at least one word is ended by its last eight bytes, which a constant size makes one load.
  if (left == 0) return Mix(hash, seed | 1);
  const std::uint64_t tail = length >= 8 ? Load(at + left - 8, 8) : Load(at, left);
  return Mix(Mix(hash ^ tail, kOdd), seed | 1);
}

/// For standard containers.
struct TextHash {
  std::size_t operator()(std::string_view text) const { return HashBytes(text.data(), text.size(), GetHashSeed()); }
};

}  // namespace OvXmlLib16
