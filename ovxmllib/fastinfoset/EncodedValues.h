// Typed values as octets (ITU-T Rec. X.891, clause 10: the built-in encoding algorithms).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::fastinfoset {

/// The built-in table of algorithms, by index.
enum Algorithm : std::uint32_t {
  kHexadecimal = 1,
  kBase64 = 2,
  kShort = 3,    ///< 2 octets a value, big-endian, as all numbers
  kInt = 4,      ///< 4 octets
  kLong = 5,     ///< 8 octets
  kBoolean = 6,  ///< a bit, behind the count of unused bits at the end
  kFloat = 7,    ///< 4 octets, IEEE 754
  kDouble = 8,   ///< 8 octets, IEEE 754
  kUuid = 9,     ///< 16 octets
  kCData = 10,   ///< text in UTF-8
};

/// Room for the octets of a text of `units` code units, whatever the algorithm.
constexpr std::size_t GetEncodedRoom(std::size_t units) noexcept { return 3 * units + 8; }

/// Writes the octets of the one value that `text` stands for, and returns their number, which may be 0. White space
/// around numbers and booleans does not count. Throws COvException "Unknown byte encoding." for another algorithm, and
/// what the type's conversion throws.
std::size_t EncodeValue(std::uint32_t algorithm, WStringView text, unsigned char* out);

/// Appends the text of the values, with a blank between them; nothing for no octets. Throws COvException for a number
/// of octets that makes no whole values, and "Unknown byte encoding." for another algorithm than 1 to 9.
void DecodeValues(std::uint32_t algorithm, std::span<const unsigned char> octets, WString& text);

}  // namespace OvXmlLib16::fastinfoset
