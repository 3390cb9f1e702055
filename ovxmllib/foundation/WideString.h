// The text types of the whole library, and the way between them and UTF-8.
//
// Text is a string of 16-bit UTF-16 code units. On Linux `wchar_t` has four bytes, and UTF-16 in it would look right
// and be wrong at the first supplementary character; so the library's character is `char16_t` and its literals are
// written u"...". Nothing but this header spells that choice.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "ovxmllib/binding/Export.h"

namespace OvXmlLib16 {

/// One UTF-16 code unit.
using WChar = char16_t;
/// Text as UTF-16 code units.
using WString = std::u16string;
/// A view of text as UTF-16 code units; not necessarily terminated.
using WStringView = std::u16string_view;

/// The UTF-8 form of `text`. U+0000 is kept.
/// Throws COvInvalidValueException at an unpaired surrogate, naming its position in code units.
OVXMLLIB_API std::string ToUtf8(WStringView text);

/// The UTF-16 form of UTF-8 `text`. U+0000 is kept.
/// Throws COvInvalidValueException at an illegal or cut off sequence, naming its position in bytes.
OVXMLLIB_API WString ToWide(std::string_view text);

/// A terminated text as a view; a null pointer counts as the empty text.
constexpr WStringView ViewOf(const WChar* text) noexcept { return text == nullptr ? WStringView() : WStringView(text); }

/// Whether two texts have the same code units. Other than their operator==, which compares unit by unit; made for
/// names, which are short, and for texts that are one text, as the namespaces of a document's elements are.
inline bool AreSame(WStringView a, WStringView b) noexcept {
  using Block [[gnu::vector_size(16)]] = std::uint64_t;
  constexpr std::size_t kBlock = sizeof(Block) / sizeof(WChar);
  constexpr std::size_t kHalf = kBlock / 2;
  constexpr std::size_t kShort = 64;  // from there on a call costs less
  const std::size_t length = a.size();
  if (length != b.size()) return false;
  if (a.data() == b.data()) return true;
  if (length > kShort) return std::memcmp(a.data(), b.data(), length * sizeof(WChar)) == 0;
  const auto differ = [&]<class Units>(Units, std::size_t at) {
    Units ofA, ofB;
    std::memcpy(&ofA, a.data() + at, sizeof ofA);
    std::memcpy(&ofB, b.data() + at, sizeof ofB);
    return ofA ^ ofB;
  };
  // The last step may overlap the one before.
  if (length >= kBlock) {
    Block difference = differ(Block{}, length - kBlock);
    for (std::size_t i = 0; i + kBlock < length; i += kBlock) difference |= differ(Block{}, i);
    return (difference[0] | difference[1]) == 0;
  }
  if (length >= kHalf) return (differ(std::uint64_t{}, 0) | differ(std::uint64_t{}, length - kHalf)) == 0;
  for (std::size_t i = 0; i < length; ++i) {
    if (a[i] != b[i]) return false;
  }
  return true;
}

}  // namespace OvXmlLib16
