// A look at octets, ahead of a closer one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace OvXmlLib16::fastinfoset {

namespace detail {

template <class Word>
Word LoadWord(const unsigned char* from) noexcept {
  Word word;
  std::memcpy(&word, from, sizeof word);
  return word;
}

// True for eight bytes from U+0020 to U+007F: a smaller one borrows into its top bit.
constexpr bool IsPlainWord(std::uint64_t word) noexcept {
  constexpr std::uint64_t kEach = 0x0101010101010101u;
  return ((word | (word - kEach * 0x20)) & kEach * 0x80) == 0;
}

}  // namespace detail

/// Whether text in UTF-8 is ASCII without control characters, and so needs no further check. The end of the text is
/// looked at in one step that may see some of it for the second time.
inline bool IsPlain(const unsigned char* text, std::size_t length) noexcept {
  using namespace detail;
  constexpr std::size_t kWord = 8, kHalf = 4;
  if (length >= kWord) {
    for (std::size_t i = 0; length - i >= kWord; i += kWord) {
      if (!IsPlainWord(LoadWord<std::uint64_t>(text + i))) return false;
    }
    return IsPlainWord(LoadWord<std::uint64_t>(text + length - kWord));
  }
  if (length >= kHalf) {
    const std::uint64_t first = LoadWord<std::uint32_t>(text), last = LoadWord<std::uint32_t>(text + length - kHalf);
    return IsPlainWord(first | last << 32);
  }
  for (std::size_t i = 0; i < length; ++i) {
    if (text[i] < 0x20 || text[i] >= 0x80) return false;
  }
  return true;
}

}  // namespace OvXmlLib16::fastinfoset
