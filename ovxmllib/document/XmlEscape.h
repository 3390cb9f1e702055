// The escaping of XML text (XML 1.0, sections 2.4 and 2.11).
#pragma once

#include <cstddef>
#include <cstdint>

#include "ovxmllib/foundation/PlainRun.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// How characters go out in one kind of place, for MarkupRun and WriteEscaped. U+000D goes out nowhere; what XML 1.0
/// does not allow at all (section 2.2), and an unpaired surrogate, throws COvInvalidValueException; what stands before
/// it may have been written.
struct EscapeRules {
  std::uint64_t special;  ///< a bit for each character below U+0040 that does not go out as it is
  WStringView lineFeed;   ///< what U+000A becomes

  /// \name What plainrun::PutEscaped asks
  /// \{
  // One bit makes a quotation mark an ampersand, and one makes `<` a `>`.
  template <class Units>
  Units FindOdd(const Units& units) const noexcept {
    using plainrun::Each;
    return (units < Each<Units>(0x20)) | ((units | Each<Units>('"' ^ '&')) == Each<Units>('&')) |
           ((units | Each<Units>('<' ^ '>')) == Each<Units>('>'));
  }
  bool IsPlain(WChar c) const noexcept { return c >= 0x40 || ((special >> c) & 1) == 0; }
  WStringView Replace(WStringView text, std::size_t i) const;
  bool IsAllowed(WChar c) const noexcept { return c < 0xFFFE; }
  [[noreturn]] void Refuse(WStringView text, std::size_t i) const;
  /// \}
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

/// For formats that escape nothing: what XML does not allow is refused as above.
struct CharacterRules {
  template <class Units>
  Units FindOdd(const Units& units) const noexcept {
    return units < plainrun::Each<Units>(0x20);
  }
  bool IsPlain(WChar c) const noexcept { return c >= 0x20 || c == u'\t' || c == u'\n' || c == u'\r'; }
  WStringView Replace(WStringView text, std::size_t i) const { Refuse(text, i); }
  bool IsAllowed(WChar c) const noexcept { return c < 0xFFFE; }
  [[noreturn]] void Refuse(WStringView text, std::size_t i) const { kEscapeTextLf.Refuse(text, i); }
};

/// Throws as the rules do, and writes nothing.
void CheckCharacters(WStringView text);

}  // namespace OvXmlLib16
