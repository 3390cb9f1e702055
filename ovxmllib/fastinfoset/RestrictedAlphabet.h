// Strings over few characters, stored in a few bits each (ITU-T Rec. X.891, clauses 8.2, 9 and C.19.3.4).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::fastinfoset {

/// The alphabets that every vocabulary begins with. The value 15 stays free and ends a string.
inline constexpr WStringView kNumericAlphabet = u"0123456789-+.e ";      ///< index 1, clause 9.1
inline constexpr WStringView kDateAndTimeAlphabet = u"0123456789-:TZ ";  ///< index 2, clause 9.2
inline constexpr std::size_t kBuiltInAlphabets = 2;

/// Writes the octets of `text`, at most one for each code unit, each character as its position in the alphabet, and
/// returns their number: two characters an octet for an alphabet of 8 to 15 characters, one for 128 to 255. Throws
/// COvException for an alphabet of another size and for a character outside the alphabet.
std::size_t EncodeAlphabet(WStringView alphabet, WStringView text, unsigned char* out);

/// Appends the characters. An alphabet may have 2 to 2^20 characters; the position with all bits set ends the string.
/// Throws COvException for an alphabet of another size and for a position outside the alphabet.
void DecodeAlphabet(WStringView alphabet, std::span<const unsigned char> octets, WString& text);

}  // namespace OvXmlLib16::fastinfoset
