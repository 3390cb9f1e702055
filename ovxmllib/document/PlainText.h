// What the bytes of XML text in UTF-8 are, and where runs of ordinary ones end.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace OvXmlLib16::plaintext {

/// A position in the text, or its end.
using Position = const char*;

/// What a byte can be; several at once.
enum ByteClass : unsigned char { kSpace = 1, kNameStart = 2, kNameByte = 4, kCharacter = 8 };

/// XML 1.0, productions 2 to 4a, of ASCII alone: no byte of a longer sequence is of any class, nor is a colon part of a
/// name (Namespaces in XML 1.0, production 4).
inline constexpr std::array<unsigned char, 256> kByteClasses = [] {
  std::array<unsigned char, 256> classes{};
  for (int c = 0x20; c < 0x80; ++c) classes[static_cast<std::size_t>(c)] = kCharacter;
  for (const char c : {' ', '\t', '\n', '\r'}) classes[static_cast<std::size_t>(c)] = kSpace | kCharacter;
  for (unsigned char c = 'a'; c <= 'z'; ++c) classes[c] |= kNameStart | kNameByte;
  for (unsigned char c = 'A'; c <= 'Z'; ++c) classes[c] |= kNameStart | kNameByte;
  for (unsigned char c = '0'; c <= '9'; ++c) classes[c] |= kNameByte;
  for (const char c : {'-', '.'}) classes[static_cast<std::size_t>(c)] |= kNameByte;
  classes['_'] |= kNameStart | kNameByte;
  return classes;
}();

constexpr bool Is(ByteClass wanted, char byte) noexcept {
  return (kByteClasses[static_cast<unsigned char>(byte)] & wanted) != 0;
}

constexpr bool IsAscii(char byte) noexcept { return static_cast<unsigned char>(byte) < 0x80; }

/// Sixteen bytes; those of longer sequences count as negative.
using Block [[gnu::vector_size(16)]] = signed char;

constexpr Block Each(char c) noexcept {
  const auto b = static_cast<signed char>(c);
  return Block{b, b, b, b, b, b, b, b, b, b, b, b, b, b, b, b};
}

/// The position of the first byte of `found` that is not 0, or 16.
inline std::size_t FirstOf(const Block& found) noexcept {
  const auto first = [](std::uint64_t word) {
    const int bits = std::endian::native == std::endian::little ? std::countr_zero(word) : std::countl_zero(word);
    return static_cast<std::size_t>(bits) / 8;
  };
  const auto words = std::bit_cast<std::array<std::uint64_t, 2>>(found);
  return words[0] != 0 ? first(words[0]) : 8 + first(words[1]);
}

/// The end of the run from `at` of bytes that `stops`, a function from Block to Block, does not mark.
template <class Stops>
Position FindStop(Position at, Position end, const Stops& stops) noexcept {
  Block block;
  for (; static_cast<std::size_t>(end - at) >= sizeof block; at += sizeof block) {
    std::memcpy(&block, at, sizeof block);
    const std::size_t first = FirstOf(stops(block));
    if (first != sizeof block) return at + first;
  }
  if (at == end) return end;
  // Behind the end stands what stops every run.
  block = Block{};
  std::memcpy(&block, at, static_cast<std::size_t>(end - at));
  return at + FirstOf(stops(block));
}

/// Where character data stops being ordinary: at markup, a `]`, a carriage return, and what is not ASCII text.
inline Position FindTextStop(Position at, Position end) noexcept {
  return FindStop(at, end, [](const Block& bytes) {
    const Block control = (bytes < Each(' ')) & (bytes != Each('\n')) & (bytes != Each('\t'));
    return control | (bytes == Each('<')) | (bytes == Each('&')) | (bytes == Each(']'));
  });
}

/// The same for an attribute value in such quotation marks, where white space other than a blank stops as well.
inline Position FindValueStop(Position at, Position end, char quote) noexcept {
  return FindStop(at, end, [quotes = Each(quote)](const Block& bytes) {
    return (bytes < Each(' ')) | (bytes == Each('<')) | (bytes == Each('&')) | (bytes == quotes);
  });
}

/// The end of the characters above U+007F that begin at `at`, or null when one of them is not allowed (XML 1.0,
/// production 2) or no legal UTF-8.
Position SkipHighCharacters(Position at, Position end) noexcept;

/// A character that a reference stands for, and where the text goes on; null when the reference is not one of the five
/// names of XML 1.0, section 4.6, nor the number of an allowed character (section 4.1).
struct Referred {
  Position next;
  std::array<char, 4> bytes;
  std::size_t length;

  std::string_view View() const noexcept { return {bytes.data(), length}; }
};

/// Reads the reference whose `&` stands at `at`.
Referred ReadReference(Position at, Position end) noexcept;

}  // namespace OvXmlLib16::plaintext
