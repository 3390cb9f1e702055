#include "ovxmllib/document/XmlEscape.h"

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16 {

namespace {

// The control characters that XML does not have.
constexpr std::uint64_t kNeverAllowed =
    kEscapeTextLf.special & ((std::uint64_t{1} << 0x20) - 1) & ~(std::uint64_t{1} << u'\r');

bool IsNeverAllowed(WChar c) noexcept { return c < 0x40 && ((kNeverAllowed >> c) & 1) != 0; }

// The units of the character at `i`, which is U+D800 or above; 0 if it is none that XML allows.
std::size_t UnitsOfHighCharacter(WStringView text, std::size_t i) noexcept {
  if (!unicode::IsSurrogate(text[i])) return text[i] < 0xFFFE ? 1 : 0;
  const bool isPair = unicode::IsHighSurrogate(text[i]) && i + 1 < text.size() && unicode::IsLowSurrogate(text[i + 1]);
  return isPair ? 2 : 0;
}

}  // namespace

void EscapeRules::Refuse(WStringView text, std::size_t i) const {
  const WChar c = text[i];
  if (c == 0 || unicode::IsSurrogate(c)) unicode::ThrowUnwritable(text, i);
  throw COvInvalidValueException(
      FormatString(u"The text holds the character U+%04X at position %d, which XML does not allow.", c, i));
}

WStringView EscapeRules::Replace(WStringView text, std::size_t i) const {
  switch (text[i]) {
    case u'&':
      return u"&amp;";
    case u'<':
      return u"&lt;";
    case u'>':
      return u"&gt;";
    case u'"':
      return u"&quot;";
    case u'\n':
      return lineFeed;
    case u'\r':
      return {};
    default:
      Refuse(text, i);
  }
}

void CheckCharacters(WStringView text) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t units = IsNeverAllowed(text[i]) ? 0 : text[i] < 0xD800 ? 1 : UnitsOfHighCharacter(text, i);
    if (units == 0) kEscapeTextLf.Refuse(text, i);
    i += units;
  }
}

}  // namespace OvXmlLib16
