#include "ovxmllib/fastinfoset/RestrictedAlphabet.h"

#include <bit>

#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16::fastinfoset {

namespace {

constexpr std::size_t kMaxAlphabet = std::size_t{1} << 20;

bool IsAlphabet(WStringView alphabet) noexcept { return alphabet.size() >= 2 && alphabet.size() <= kMaxAlphabet; }

// The least number of bits of which not all values are positions in the alphabet.
unsigned WidthOf(WStringView alphabet) noexcept { return static_cast<unsigned>(std::bit_width(alphabet.size())); }

unsigned PositionOf(WChar character, WStringView alphabet) {
  const std::size_t position = alphabet.find(character);
  if (position == WStringView::npos) {
    throw COvException(u"Failed to write FastInfoset. Invalid character not found for Restricted Alphabet.");
  }
  return static_cast<unsigned>(position);
}

unsigned char* EncodeNibbles(WStringView alphabet, WStringView text, unsigned char* out) {
  constexpr unsigned kEnd = 0xF;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const unsigned high = PositionOf(text[i], alphabet);
    const unsigned low = i + 1 < text.size() ? PositionOf(text[i + 1], alphabet) : kEnd;
    *out++ = static_cast<unsigned char>(high << 4 | low);
  }
  return out;
}

}  // namespace

std::size_t EncodeAlphabet(WStringView alphabet, WStringView text, unsigned char* out) {
  if (!IsAlphabet(alphabet)) {
    throw COvException(
        u"Failed to write FastInfoset. Invalid Restricted Alphabet. Alphabet must contain between 2 and 2^20 "
        u"characters.");
  }
  unsigned char* const start = out;
  switch (WidthOf(alphabet)) {
    case 4:
      out = EncodeNibbles(alphabet, text, out);
      break;
    case 8:
      for (const WChar character : text) *out++ = static_cast<unsigned char>(PositionOf(character, alphabet));
      break;
    default:
      throw COvException(u"Failed to write FastInfoset. Unsupported Feature in AppendRestrictedAlphabetString.");
  }
  return static_cast<std::size_t>(out - start);
}

void DecodeAlphabet(WStringView alphabet, std::span<const unsigned char> octets, WString& text) {
  if (!IsAlphabet(alphabet)) {
    throw COvException(
        u"Failed to parse FastInfoset. Invalid Encoding of Restricted Alphabet. Alphabet must contain between 2 and "
        u"2^20 characters.");
  }
  const unsigned width = WidthOf(alphabet);
  const std::uint32_t end = (std::uint32_t{1} << width) - 1;
  std::uint32_t bits = 0;  // those that wait, in the low `count` bits
  unsigned count = 0;
  for (const unsigned char octet : octets) {
    bits = bits << 8 | octet;
    for (count += 8; count >= width;) {
      const std::uint32_t position = bits >> (count -= width) & end;
      // With eight bits to a character nothing ends the string but its length.
      if (position == end && width != 8) return;
      if (position >= alphabet.size()) {
        throw COvException(u"Failed to parse FastInfoset. Invalid character position for Restricted Alphabet.");
      }
      text += alphabet[position];
    }
  }
}

}  // namespace OvXmlLib16::fastinfoset
