// The fixed-width integers and the reals of the schema as text.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/Digits.h"

namespace OvXmlLib16 {

/// Reads an optional sign and base-10 digits behind optional white space, all of the text, for the eight types with
/// 8 to 64 bits. An unsigned type takes a minus sign: the value wraps around, for 8 and 16 bits within 32 bits, where
/// it is too large then. Nothing depends on the locale. Throws COvInvalidValueException, and of a text that is both too
/// large and followed by something else says that it is too large.
template <class T>
T ParseInteger(WStringView text);

/// Reads what most such texts are: nothing but digits, so few that they fit whatever they are. Returns false for
/// others, of which ParseInteger has to judge.
template <class T>
bool ReadShortInteger(WStringView text, T& value) noexcept {
  constexpr std::size_t kMost = std::min<std::size_t>(std::numeric_limits<T>::digits10, digits::kSafe);
  if (text.empty() || text.size() > kMost) return false;
  const WChar *at = text.data(), *const end = at + text.size();
  value = static_cast<T>(digits::Take(at, end));
  return at == end;
}

/// Reads "NaN", "INF", "-INF", two other spellings of NaN ("1.#QNAN", "-NAN"), or a decimal number behind optional
/// white space: sign, digits with a point among them or none, exponent or none. What overflows is infinite, what is too
/// small zero. A float is the nearest to the double that was read. Nothing depends on the locale; hexadecimal digits
/// and the other texts of the C library's strtod are refused. Throws COvInvalidValueException.
template <class T>
T ParseReal(WStringView text);

/// Append the shortest base-10 form. Without sign for unsigned types.
void AppendInteger(std::int64_t value, WString& out);
void AppendInteger(std::uint64_t value, WString& out);
/// Appends the base-10 form with leading zeros up to two digits.
void AppendTwoDigits(std::uint8_t value, WString& out);

/// Appends "NaN", "INF", "-INF" or the number as printf writes it by "%.7g" or "%.16g", whatever the locale.
void AppendReal(float value, WString& out);
void AppendReal(double value, WString& out);

/// Appends text in ASCII.
void AppendAscii(std::string_view text, WString& out);

}  // namespace OvXmlLib16
