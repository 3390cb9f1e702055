// The escaping of XML text (XML 1.0, sections 2.4 and 2.11).
#pragma once

#include <cstddef>
#include <cstdint>

#include "ovxmllib/foundation/TextStream.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// How characters go out in one kind of place. U+000D goes out nowhere; what XML 1.0 does not allow at all
/// (section 2.2) is refused.
struct EscapeRules {
  std::uint64_t special;  ///< a bit for each character below U+0040 that does not go out as it is
  WStringView lineFeed;   ///< what U+000A becomes
};

namespace escape_detail {

consteval std::uint64_t SpecialCharacters(WStringView escaped) {
  std::uint64_t mask = (std::uint64_t{1} << 0x20) - 1;
  mask &= ~(std::uint64_t{1} << u'\t');
  for (const WChar c : escaped) mask |= std::uint64_t{1} << c;
  return mask;
}

}  // namespace escape_detail

/// Character data and comments, for the two line ends.
inline constexpr EscapeRules kEscapeTextLf = {escape_detail::SpecialCharacters(u"&<>") & ~(std::uint64_t{1} << u'\n'),
                                              u"\n"};
inline constexpr EscapeRules kEscapeTextCrLf = {escape_detail::SpecialCharacters(u"&<>"), u"\r\n"};
/// Attribute values between double quotes. A line feed becomes a reference, since the parser would make it a blank.
inline constexpr EscapeRules kEscapeAttribute = {escape_detail::SpecialCharacters(u"&<>\""), u"&#xA;"};

/// Writes `text` by the rules, between markup that goes out as it is. Throws COvInvalidValueException at a character
/// that XML does not allow and at an unpaired surrogate; what stands before it may have been written.
void WriteEscaped(CTextStream& stream, WStringView before, WStringView text, WStringView after,
                  const EscapeRules& rules);

/// Copies the run that `text` begins with and that goes out as it is to `out`, which has room for all of `text`, and
/// returns its length. What stands behind it has to be escaped or refused.
std::size_t CopyUnescaped(WChar* out, WStringView text, const EscapeRules& rules);

/// Throws as WriteEscaped does, and writes nothing.
void CheckCharacters(WStringView text);

}  // namespace OvXmlLib16
